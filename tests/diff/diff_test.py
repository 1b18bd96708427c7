#!/usr/bin/env python3
"""Compares command files as a user and as git does.

    diff_test.py KCF CONVERTER EXAMPLES CASES
"""
import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

KCF, CONVERTER, EXAMPLES, CASES = (Path(p).resolve() for p in sys.argv[1:5])
REGION = "DOMAIN/KESTPLANE_2D[floodplain]"

# What is replaced in the setup, and the lines that tell it.
CHANGES = [
    ("nothing", [], []),
    ("looks", [("default_friction = 25", "default_friction = 2.5e1  // the same"), ("( 1 0 0 )", "( 1.0\n 0 0 )"),
               ("type = strickler", "type   =   strickler")], []),
    ("a default given", [("max_time_level = 8\n", "max_time_level = 8\n      packet_size = 1000\n")], []),
    ("a number", [("default_friction = 25", "default_friction = 26")],
     [f"~ {REGION}/HYDRAULICS/FRICTION/default_friction: 25 -> 26 [s/m^(1/3)] Manning, [m^(1/3)/s] Strickler, "
      "[m] equivalent sand roughness."]),
    ("a default left out", [("      max_time_level = 8\n", "")],
     ["~ DOMAIN/COUPLINGS/PARAMETER/max_time_level: 8 -> 32 (default)"]),
    ("an item of a list", [("( 99.0 101.0 )", "( 99.0 102 )")],
     ["~ DOMAIN/CONTROLLER[level_control]/MANIPULATED_VARIABLE[main_weir_crest]/range: ( 99.0 101.0 ) -> ( 99.0 102 ) [m rel.], "
      "from item 2 on"]),
    ("an optional tag", [("      material_index = ( 1 2 )\n", "")], ["- DOMAIN/KESTSUB[ground]/BOUNDARY[surface]/material_index: ( 1 2 )"]),
    ("a block", [("    BOUNDARY {\n      name = intake\n      type = discharge\n    }\n", "")],
     ["- DOMAIN/KEST_EXTERN[power_plant]/BOUNDARY[intake]", "- DOMAIN/KEST_EXTERN[power_plant]/BOUNDARY[intake]/name: intake",
      "- DOMAIN/KEST_EXTERN[power_plant]/BOUNDARY[intake]/type: discharge"]),
    ("a nameless block in front of its like", [("  COUPLINGS {\n", "  COUPLINGS {\n    COUPLING {\n      type = sequential\n    }\n")],
     ["+ DOMAIN/COUPLINGS/COUPLING[1]", "+ DOMAIN/COUPLINGS/COUPLING[1]/type: sequential"]),
    ("named blocks in another order", [("ZONE {\n        name = gravel\n        type = default\n        inactive = no\n      }\n      ", ""),
                                       ("mesh_direction = below\n      }\n", "mesh_direction = below\n      }\n      ZONE {\n name = gravel\n type = default\n inactive = no\n }\n")], []),
    ("another name of a list", [("main_weir_crest:(", "other_crest:(")],
     ["- DOMAIN/CONTROLLER[level_control]/MONITORED_VARIABLE[forebay_level]/coefficients[main_weir_crest]: main_weir_crest:( 0.5 0.01 0.0 )",
      "+ DOMAIN/CONTROLLER[level_control]/MONITORED_VARIABLE[forebay_level]/coefficients[other_crest]: other_crest:( 0.5 0.01 0.0 )"]),
    ("a file that holds the same", [("file = inflow.txt", "file = same.txt")], []),
    ("a file that holds something else", [("file = inflow.txt", "file = head.txt")],
     ["~ DOMAIN/KESTCHAIN_1D[river]/HYDRAULICS/BOUNDARY[river_inflow]/file: inflow.txt -> head.txt, which holds something else"]),
    ("a file that is not there", [("file = inflow.txt", "file = none.txt")],
     ["~ DOMAIN/KESTCHAIN_1D[river]/HYDRAULICS/BOUNDARY[river_inflow]/file: inflow.txt -> none.txt"]),
]

# What cannot be compared, and why.
UNCLEAR = [
    (b"PROJECT {\n", b"kcf: new.kcf:1:1: "),
    (b"PROJECT {\n titel = a\n}\n", b"kcf: new.kcf:2:2: there is no tag 'titel' in 'PROJECT'; kcf check tells all\n"),
    (b"DOMAIN {\n PHYSICAL_PROPERTIES {\n  gravity = x\n }\n}\n", b"kcf: new.kcf:3:13: "),
    (b"\x7fELF\0\1", b"kcf: new.kcf:1:1: "),
]


class Diff(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name) / "linked"
        shutil.copytree(EXAMPLES / "linked-regions", self.folder)
        shutil.copy(self.folder / "inflow.txt", self.folder / "same.txt")
        self.text = (self.folder / "setup.kcf").read_text()
        self.new = self.folder / "new.kcf"

    def diff(self, *arguments, **options):
        return subprocess.run([KCF, "diff", *arguments], cwd=self.folder, capture_output=True, timeout=60, check=False, **options)

    def test_tells_what_differs_in_meaning(self):
        for name, replaced, expected in CHANGES:
            text = self.text
            for old, new in replaced:
                text = text.replace(old, new)
            self.assertEqual(text != self.text, bool(replaced), name)
            self.new.write_text(text)
            done = self.diff("setup.kcf", "new.kcf")
            self.assertEqual((done.stdout.decode().splitlines(), done.stderr), (expected, b""), name)
            self.assertEqual(done.returncode, 1 if expected else 0, name)
            told = json.loads(self.diff("--format", "json", "setup.kcf", "new.kcf").stdout)
            signs = {"changed": "~", "added": "+", "removed": "-"}
            self.assertEqual([f"{signs[d['kind']]} {d['path']}" for d in told["differences"]],
                             [line.split(":")[0] for line in expected], name)

    def test_json_has_values_and_units(self):
        self.new.write_text(self.text.replace("width = 14", "width = 15").replace("inflow.txt", "head.txt"))
        told = json.loads(self.diff("--format", "json", "setup.kcf", "new.kcf").stdout)
        path = "DOMAIN/KESTCHAIN_1D[river]/HYDRAULICS/BOUNDARY"
        self.assertEqual(told, {"old": "setup.kcf", "new": "new.kcf", "differences": [
            {"kind": "changed", "what": "tag", "path": f"{path}[river_inflow]/file", "old": "inflow.txt", "new": "head.txt",
             "oldIsDefault": False, "newIsDefault": False, "unit": "", "contentsDiffer": True},
            {"kind": "changed", "what": "tag", "path": f"{path}[main_weir]/width", "old": 14.0, "new": 15.0,
             "oldIsDefault": False, "newIsDefault": False, "unit": "[m]"}]})

    def test_layers_mean_their_order(self):
        layers = ["LAYER {\n bottom_elevation = -1\n mixture = a\n}\n", "LAYER {\n bottom_elevation = -2\n mixture = b\n}\n"]
        frame = "DOMAIN {\n KESTCHAIN_1D {\n MORPHOLOGY {\n BEDMATERIAL {\n SOIL_DEF {\n name = s\n%s}\n}\n}\n}\n}\n"
        self.new.write_text(frame % "".join(layers))
        done = self.diff("new.kcf", "-", input=(frame % "".join(reversed(layers))).encode())
        self.assertEqual((done.returncode, done.stdout),
                         (1, b"~ DOMAIN/KESTCHAIN_1D/MORPHOLOGY/BEDMATERIAL/SOIL_DEF[s]/LAYER: the order of these blocks\n"))

    def test_cannot_tell(self):
        for text, told in UNCLEAR:
            self.new.write_bytes(text)
            done = self.diff("setup.kcf", "new.kcf")
            self.assertEqual((done.returncode, done.stdout), (2, b""), text)
            self.assertTrue(done.stderr.startswith(told) and done.stderr.count(b"\n") == 1, done.stderr)
        done = self.diff("none.kcf", "setup.kcf")
        self.assertEqual((done.returncode, done.stderr), (2, b"kcf: 'none.kcf' does not exist\n"))
        self.assertEqual(self.diff("-", "-", input=b"").returncode, 2)
        self.assertEqual(self.diff("setup.kcf").returncode, 2)

    def test_files_in_other_folders_are_compared_by_content(self):
        other = self.folder / "other"
        shutil.copytree(EXAMPLES / "linked-regions", other)
        self.assertEqual(self.diff("setup.kcf", "other/setup.kcf").returncode, 0)
        (other / "head.txt").write_text("0 1\n1 2\n")
        self.assertEqual(self.diff("setup.kcf", "other/setup.kcf").stdout,
                         b"~ DOMAIN/KESTSUB[ground]/BOUNDARY[1]/file: head.txt, which holds something else\n")

    def test_git_shows_it(self):
        environment = {**os.environ, "HOME": str(self.folder), "PATH": f"{KCF.parent}:{os.environ['PATH']}"}

        def git(*arguments):
            return subprocess.run(["git", "-c", "user.name=a", "-c", "user.email=a@b", *arguments], cwd=self.folder, env=environment,
                                  capture_output=True, check=True).stdout.decode()

        git("init", "-q")
        git("config", "difftool.kcf.cmd", 'kcf diff "$LOCAL" "$REMOTE"')
        git("config", "diff.kcf.textconv", 'f() { kcf format - < "$1" 2> /dev/null || cat "$1"; }; f')
        (self.folder / ".gitattributes").write_text("*.kcf diff=kcf\n")
        git("add", ".")
        git("commit", "-qm", "a")
        (self.folder / "setup.kcf").write_text(self.text.replace("width = 14", "width = 15").replace("    ", "\t"))
        self.assertEqual(git("difftool", "-y", "-t", "kcf", "setup.kcf"),
                         "~ DOMAIN/KESTCHAIN_1D[river]/HYDRAULICS/BOUNDARY[main_weir]/width: 14 -> 15 [m]\n")
        changed = [line for line in git("diff", "-U0", "setup.kcf").splitlines() if line[0] in "+-" and line[:3] not in ("+++", "---")]
        self.assertEqual(changed, ["-        width = 14", "+        width = 15"])

    def test_the_converter_agrees(self):
        """Setups that are said to mean the same give the same document, and each means what it means in the one style."""
        documents, setups = {}, []
        for folder in (EXAMPLES, CASES):
            copy = self.folder / folder.name
            shutil.copytree(folder, copy)
            for setup in sorted(copy.rglob("*.kcf")):
                target = setup.with_suffix(".json")
                subprocess.run([CONVERTER, setup.name, "-o", target.name], cwd=setup.parent, capture_output=True, timeout=60, check=False)
                if target.exists():
                    documents[setup] = target.read_bytes()
                    setups.append(setup)
        self.assertGreater(len(setups), 50)
        for one, other in zip(setups, setups[1:] + setups[:1]):
            if one.parent == other.parent:
                done = self.diff(one, other)
                self.assertIn(done.returncode, (0, 1), (one, done.stderr))
                self.assertLessEqual(done.returncode == 0, documents[one] == documents[other], (one, other))
            tidy = subprocess.run([KCF, "format", "-"], input=one.read_bytes(), capture_output=True, check=True).stdout
            done = subprocess.run([KCF, "diff", one.name, "-"], input=tidy, cwd=one.parent, capture_output=True, timeout=60, check=False)
            self.assertEqual((done.returncode, done.stdout), (0, b""), (one, done.stderr))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
