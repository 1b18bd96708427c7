#!/usr/bin/env python3
"""Makes command files of documents, and documents of these.

    from_json_test.py KCF CONVERTER EXAMPLES CASES
"""
import copy
import json
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

KCF, CONVERTER, EXAMPLES, CASES = (Path(p).resolve() for p in sys.argv[1:5])

# Cases whose documents no command file gives: rules took values back out of the range of their tags.
REPAIRED = {
    "rules-repair-fractions-and-an-armour-that-is-too-small.kcf":
        "/SETUP/KESTMD/KESTPLANE_2D/0/MORPHOLOGY/BEDMATERIAL/SOIL_DEF/0/d90_armored_layer",
}

REGION = "/SETUP/KESTMD/KESTPLANE_2D/0"
MISSING = object()

# A pointer, what stands there instead, and the pointer and the reason that are told.
REFUSED = [
    ("", 3, "/", "there must be an object, not number"),
    ("/SETUP", MISSING, "/", "the key 'SETUP' is missing: this is no document of a setup"),
    ("/MORE", 1, "/MORE", "a document has the key 'SETUP' alone"),
    ("/SETUP/KESTMD", MISSING, "/SETUP", "the key 'KESTMD' is missing"),
    ("/SETUP/simulation_name", 3, "/SETUP/simulation_name", "there must be a text, not 3"),
    ("/SETUP/simulation_name", "a // b", "/SETUP/simulation_name", 'no command file can spell "a // b"'),
    ("/SETUP/simulation_name", "a\nb", "/SETUP/simulation_name", 'no command file can spell "a\\nb"'),
    ("/SETUP/simulation_name", " a", "/SETUP/simulation_name", 'no command file can spell " a"'),
    ("/SETUP/KESTMD/PARALLEL", {}, "/SETUP/KESTMD/PARALLEL", "a document does not carry this block"),
    (f"{REGION}/HYDRAULIC", {}, f"{REGION}/HYDRAULIC",
     "KESTPLANE_2D has no tag and no block of that name. Did you mean 'HYDRAULICS'?"),
    (f"{REGION}/a~1b", 1, f"{REGION}/a~1b", "KESTPLANE_2D has no tag and no block of that name"),
    (f"{REGION}/HYDRAULICS", [], f"{REGION}/HYDRAULICS", "there must be an object, not array"),
    (f"{REGION}/HYDRAULICS/BOUNDARY", {}, f"{REGION}/HYDRAULICS/BOUNDARY", "there must be a list with at least one item"),
    (f"{REGION}/HYDRAULICS/FRICTION/default_friction", "30", f"{REGION}/HYDRAULICS/FRICTION/default_friction",
     'there must be a number, not "30"'),
    (f"{REGION}/HYDRAULICS/FRICTION/default_friction", -1, f"{REGION}/HYDRAULICS/FRICTION/default_friction",
     "'default_friction' is -1, but must be at least 0"),
    (f"{REGION}/HYDRAULICS/FRICTION/type", "maning", f"{REGION}/HYDRAULICS/FRICTION/type", None),
    (f"{REGION}/HYDRAULICS/FRICTION/type", MISSING, f"{REGION}/HYDRAULICS/FRICTION", "'FRICTION' lacks the tag 'type'"),
    (f"{REGION}/GEOMETRY", MISSING, REGION, "'KESTPLANE_2D' lacks the block 'GEOMETRY'"),
    ("/SETUP/KESTMD/CONTROLLER/0/output_time_step", MISSING, "/SETUP/KESTMD/CONTROLLER/0", None),
    ("/SETUP/KESTMD/COUPLINGS/COUPLING/1/iter_exchange", 1.5, "/SETUP/KESTMD/COUPLINGS/COUPLING/1/iter_exchange",
     "there must be a whole number, not 1.5"),
    ("/SETUP/KESTMD/COUPLINGS/COUPLING/1/iter_exchange", 5e9, "/SETUP/KESTMD/COUPLINGS/COUPLING/1/iter_exchange",
     "5000000000.0 is too large for a whole number"),
    ("/SETUP/KESTMD/COUPLINGS/PARAMETER/packet_size", MISSING, "/SETUP/KESTMD/COUPLINGS/PARAMETER/packet_size",
     "the key is missing; a setup has it, by default 1000"),
    ("/SETUP/KESTMD/CONTROLLER/0/MONITORED_VARIABLE/0/coefficients/0", [1], "/SETUP/KESTMD/CONTROLLER/0/MONITORED_VARIABLE/0/coefficients/0",
     "there must be an object with the keys list, tag, not [1]"),
    (f"{REGION}/OUTPUT/SPECIAL_OUTPUT/0/values/1/value", "w se", f"{REGION}/OUTPUT/SPECIAL_OUTPUT/0/values",
     'no command file can spell "w se" as an item of a list'),
    ("/SETUP/KESTMD/KESTSUB/0/GEOMETRY/base_vector_i/1", "x", "/SETUP/KESTMD/KESTSUB/0/GEOMETRY/base_vector_i/1",
     'there must be a number, not "x"'),
]


def run(*arguments, cwd=None, **options):
    return subprocess.run([KCF, "from-json", *arguments], cwd=cwd, capture_output=True, timeout=60, check=False, **options)


def convert(setup):
    target = setup.with_suffix(".json")
    target.unlink(missing_ok=True)
    subprocess.run([CONVERTER, setup.name, "-o", target.name], cwd=setup.parent, capture_output=True, timeout=60, check=False)
    return target.read_bytes() if target.exists() else None


def changed(document, pointer, value):
    """The document with something else at a pointer."""
    if not pointer:
        return value
    document = copy.deepcopy(document)
    at, *keys = [document, *(key.replace("~1", "/") for key in pointer.split("/")[1:])]
    for key in keys[:-1]:
        at = at[int(key)] if isinstance(at, list) else at[key]
    last = int(keys[-1]) if isinstance(at, list) else keys[-1]
    if value is MISSING:
        del at[last]
    else:
        at[last] = value
    return document


class FromJson(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def test_each_setup_goes_there_and_back(self):
        counted = {"checked": 0, "refused": 0}
        for folder in (EXAMPLES, CASES):
            root = self.folder / folder.name
            shutil.copytree(folder, root)
            for setup in sorted(root.rglob("*.kcf")):
                printed = convert(setup)
                if printed is None:
                    continue
                source = setup.with_name("source.json")
                source.write_bytes(printed)
                for extra in ([], ["--minimal"]):
                    back = setup.with_name("back.kcf")
                    back.unlink(missing_ok=True)
                    done = run(source.name, "-o", back.name, *extra, cwd=setup.parent)
                    if setup.name in REPAIRED:
                        counted["refused"] += 1
                        self.assertEqual((done.returncode, back.exists()), (1, False), setup)
                        self.assertIn(f"source.json: {REPAIRED[setup.name]}: ", done.stderr.decode(), setup)
                        continue
                    self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""), (setup, extra))
                    self.assertEqual(convert(back), printed, (setup, extra))
                    tidy = subprocess.run([KCF, "format", "--check", back.name], cwd=setup.parent, capture_output=True, check=False)
                    self.assertEqual(tidy.returncode, 0, setup)
                    counted["checked"] += 1
        self.assertGreater(counted["checked"], 100)
        self.assertEqual(counted["refused"], 2 * len(REPAIRED))

    def test_minimal_has_no_defaults_and_says_what_a_document_lacks(self):
        setup = self.folder / "s.kcf"
        shutil.copytree(EXAMPLES / "first-region", self.folder, dirs_exist_ok=True)
        shutil.copy(self.folder / "setup.kcf", setup)
        (self.folder / "s.json").write_bytes(convert(setup))
        done = run("--minimal", "s.json", cwd=self.folder)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        text = done.stdout.decode()
        self.assertIn("  // A document does not carry author, date", text)
        self.assertIn("  // A document does not carry the block PARALLEL.\n", text)
        code = [line.split("//")[0].strip() for line in text.splitlines()]
        own = [line.split("//")[0].strip() for line in setup.read_text().splitlines()]
        self.assertLessEqual({line for line in code if line}, {" ".join(line.split()) for line in own} | {"}"})
        whole = run("s.json", cwd=self.folder).stdout.decode()
        self.assertGreater(len(whole.splitlines()), len(text.splitlines()) + 10)

    def test_refuses_with_pointer_and_reason(self):
        shutil.copytree(EXAMPLES / "linked-regions", self.folder, dirs_exist_ok=True)
        document = json.loads(convert(self.folder / "setup.kcf"))
        document["$schema"] = "kestrix.schema.json"
        good = self.folder / "good.json"
        good.write_text(json.dumps(document))
        self.assertEqual(run("good.json", cwd=self.folder).returncode, 0)
        for pointer, value, at, reason in REFUSED:
            (self.folder / "d.json").write_text(json.dumps(changed(document, pointer, value)))
            done = run("d.json", "-o", "out.kcf", cwd=self.folder)
            self.assertEqual((done.returncode, (self.folder / "out.kcf").exists()), (1, False), (pointer, value))
            told = done.stderr.decode()
            self.assertTrue(told.startswith(f"kcf: d.json: {at}"), (pointer, value, told))
            if reason is not None:
                self.assertIn(f": {reason}", told)
            self.assertEqual(told.count("\n"), 1, told)

    def test_files_that_are_not_there_are_told(self):
        shutil.copytree(EXAMPLES / "linked-regions", self.folder, dirs_exist_ok=True)
        printed = convert(self.folder / "setup.kcf")
        for name, there in (("alone", ()), ("beside", ("channel.kgf", "floodplain.2dm", "head.txt", "inflow.txt", "connections.txt"))):
            (self.folder / name).mkdir()
            for file in there:
                shutil.copy(self.folder / file, self.folder / name)
            done = run("-", "-o", f"{name}/setup.kcf", cwd=self.folder, input=printed)
            self.assertEqual(done.returncode, 0, done.stderr)
            self.assertTrue(done.stderr.startswith(b"The files that the setup names could not be looked into with it: "), done.stderr)
            shutil.copy(self.folder / name / "setup.kcf", self.folder / f"{name}.kcf")
            self.assertEqual(convert(self.folder / f"{name}.kcf"), printed)

    def test_bad_input(self):
        for text, told in ((b"{", b"kcf: '-' is no JSON: "), (b"[" * 200000, b"kcf: '-' is no JSON: "), (b"\xff\xfe\0", b"kcf: '-' is no JSON: "),
                           (b'{"SETUP": {"KESTMD": {}, "simulation_name": 1e999}}', b"kcf: '-' is no JSON: "),
                           (b"[" * 100000 + b"]" * 100000, b"kcf: -: /: there must be an object, not array\n")):
            done = run("-", input=text)
            self.assertEqual((done.returncode, done.stdout), (1, b""))
            self.assertTrue(done.stderr.startswith(told) and done.stderr.count(b"\n") == 1, done.stderr)
        self.assertEqual(run("none.json").stderr, b"kcf: 'none.json' does not exist\n")
        target = self.folder / "there.kcf"
        target.write_text("mine")
        shutil.copytree(EXAMPLES / "first-region", self.folder, dirs_exist_ok=True)
        printed = convert(self.folder / "setup.kcf")
        self.assertEqual(run("-", "-o", target, input=printed).stderr.decode(), f"kcf: '{target}' is there already; --force replaces it\n")
        self.assertEqual(target.read_text(), "mine")
        self.assertEqual(run("-", "-o", target, "--force", input=printed).returncode, 0)
        self.assertEqual(convert(target), printed)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
