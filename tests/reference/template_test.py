#!/usr/bin/env python3
"""Fills in the skeletons that kcf-reference prints and converts them.

    template_test.py KCF-REFERENCE CONVERTER
"""
import json
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

REFERENCE, CONVERTER = (Path(p).resolve() for p in sys.argv[1:3])
# What a user would fill in, by the name of the tag; the others get the first word or a number.
VALUES = {"file": "mesh.2dm", "ref_coordinates": "( 0 0 0 )", "base_vector_i": "( 1 0 0 )", "base_vector_j": "( 0 1 0 )",
          "cross_section_order": "( a b )", "precision": "0.1"}


def reference(*arguments):
    return subprocess.run([REFERENCE, *arguments], capture_output=True, text=True, check=False)


def filled(skeleton):
    lines = []
    boundaries = 0
    for line in skeleton.split("\n"):
        name = line.split("=")[0].strip()
        if "= ?" in line and not line.lstrip().startswith("//"):
            remark = line.split("//")[1]
            words = remark.split("one of ")[1].split("'")[1::2] if "one of " in remark else []
            if name == "string":
                boundaries += 1
            value = VALUES.get(name) or (words[0] if words else "1" if "real" in remark or "integer" in remark else "name")
            line = line.replace("= ?", f"= {value}")
        lines.append(line)
    return "\n".join(lines)


class Template(unittest.TestCase):
    def convert(self, text):
        with tempfile.TemporaryDirectory() as folder:
            (Path(folder) / "mesh.2dm").write_text("MESH2D\n")
            (Path(folder) / "setup.kcf").write_text(text)
            return subprocess.run([CONVERTER, "setup.kcf"], cwd=folder, capture_output=True, text=True, check=False)

    def expect_document(self, text):
        done = self.convert(text)
        self.assertEqual(done.returncode, 0, done.stderr)
        return json.loads(done.stdout)["SETUP"]["KESTMD"]

    def test_minimal_setups_convert_once_they_are_filled_in(self):
        for region in ("KESTPLANE_2D", "KESTSUB"):
            text = filled(reference("template", "/PROJECT", f"/DOMAIN/{region}").stdout)
            if region == "KESTSUB":
                text = text.replace("// zone = ?", "zone = z").replace(
                    "kf = 1", "kf = 1\nRETENTION_MODEL {\ntype = van_genuchten\nn = 2\nalpha = 8\n}").replace(
                    "no_cells_k = 1", "no_cells_k = 1\nZONE {\nname = z\ntype = default\n}")
            self.assertEqual(self.expect_document(text)[region][0]["region_name"], "name")

    def test_a_channel_needs_its_second_boundary(self):
        text = filled(reference("template", "/PROJECT", "/DOMAIN/KESTCHAIN_1D").stdout)
        text = text.replace("    // precision", "    precision").replace("precision = ?", "precision = 0.1")
        # A hydrograph is the first type; a wall needs nothing more.
        text = text.replace("type = hydrograph", "type = wall")
        other = text[text.index("      BOUNDARY {"):text.index("      INITIAL {")]
        text = text.replace(other, other + other.replace("string = upstream", "string = downstream"))
        document = self.expect_document(text)
        self.assertEqual(len(document["KESTCHAIN_1D"][0]["HYDRAULICS"]["BOUNDARY"]), 2)

    def test_named_blocks_stand_in_their_frames(self):
        text = reference("template", "/DOMAIN/CONTROLLER/MANIPULATED_VARIABLE", "/DOMAIN/PARALLEL/").stdout
        self.assertEqual([line.strip() for line in text.split("\n") if line.endswith(("{", "}"))],
                         ["DOMAIN {", "PARALLEL {", "}", "CONTROLLER {", "MANIPULATED_VARIABLE {", "}", "}", "}"])
        self.assertNotIn("multiregion", text)

    def test_statuses(self):
        done = reference("template", "/DOMAIN/KESTPLAN_2D")
        self.assertEqual(done.returncode, 1)
        self.assertIn("'/DOMAIN/KESTPLAN_2D'. Did you mean /DOMAIN/KESTPLANE_2D", done.stderr)
        self.assertEqual(reference("template", "FRICTIN").returncode, 1)
        for wrong in ((), ("nope",), ("json", "more"), ("template",), ("schema", "--nope")):
            self.assertEqual(reference(*wrong).returncode, 2, wrong)
        for right in (("--help",), ("json", "--help"), ("schema", "--help"), ("template", "--help")):
            done = reference(*right)
            self.assertEqual((done.returncode, done.stderr), (0, ""), right)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], "-v"])
