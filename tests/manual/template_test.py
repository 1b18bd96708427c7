#!/usr/bin/env python3
"""Fills in the skeletons that kcf prints and converts them; checks its command line.

    template_test.py KCF-REFERENCE CONVERTER
"""
import json
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

REFERENCE, CONVERTER = (Path(p).resolve() for p in sys.argv[1:3])
LINE = re.compile(r"(?P<indent> *)(?P<off>// )?(?P<name>\w+) = (?P<value>\S.*?)(  // (?P<remark>.*))?")
TOLD = re.compile(r" *// (?P<name>\w+): (?P<remark>.*)")


def remarks(skeleton):
    """What is told of the tags that stand on the lines of a skeleton: beside them, or above."""
    told = ""
    for line in skeleton.split("\n"):
        found, above = LINE.fullmatch(line), TOLD.fullmatch(line)
        if found:
            yield line, found, found["remark"] or told
            told = ""
        else:
            told = above["remark"] if above else told + " " + line.strip(" /") if told else ""
            yield line, None, ""


def reference(*arguments):
    return subprocess.run([REFERENCE, *arguments], capture_output=True, text=True, check=False)


def generic_value(remark):
    """What fits a tag by the remark on it."""
    words = re.search(r"one of '([^']*)'", remark)
    entries = re.search(r"valid entries are \{'([^']*)'", remark)
    if words:
        return words[1]
    if "list" in remark:
        item = entries[1] if entries else "1" if "reals" in remark or "integers" in remark else "name"
        count = re.search(r"list of (\d+)", remark)
        return "( " + " ".join([item] * int(count[1] if count else 1)) + " )"
    if "region.place" in remark:
        return "region.place"
    if remark.startswith(("real", "integer")):
        upper = re.search(r"x <=? (-?\d+)", remark)
        return upper[1] if upper and float(upper[1]) < 1 else "0.5" if "< x < 1" in remark else "1"
    return "name"


def filled(skeleton, values):
    """The skeleton with a value for each placeholder: the next one kept for the name of the tag, or one
    that fits. A tag that is commented out is set if there is a value for it."""
    values = {name: list(each) if isinstance(each, (list, tuple)) else [each] * 100 for name, each in values.items()}
    lines = []
    for line, found, remark in remarks(skeleton):
        if found is None:
            lines.append(line)
        elif values.get(found["name"]):
            lines.append(f"{found['indent']}{found['name']} = {values[found['name']].pop(0)}")
        elif found["off"] is None and found["value"] == "?":
            lines.append(f"{found['indent']}{found['name']} = {generic_value(remark)}")
        else:
            lines.append(line)
    return "\n".join(lines)


class Template(unittest.TestCase):
    def convert(self, text):
        with tempfile.TemporaryDirectory() as folder:
            (Path(folder) / "mesh.2dm").write_text("MESH2D\n", encoding="utf-8")
            (Path(folder) / "name").write_text("0 1\n10 1\n", encoding="utf-8")
            (Path(folder) / "setup.kcf").write_text(text, encoding="utf-8")
            return subprocess.run([CONVERTER, "setup.kcf"], cwd=folder, capture_output=True, text=True, check=False)

    def expect_document(self, text):
        done = self.convert(text)
        self.assertEqual(done.returncode, 0, done.stderr)
        return json.loads(done.stdout)["SETUP"]

    def test_a_minimal_2d_setup(self):
        text = filled(reference("template", "/PROJECT", "/DOMAIN/KESTPLANE_2D").stdout,
                      {"file": ["mesh.2dm"], "default_friction": 0.03})
        region = self.expect_document(text)["KESTMD"]["KESTPLANE_2D"][0]
        self.assertEqual(region["HYDRAULICS"]["FRICTION"]["default_friction"], 0.03)
        self.assertEqual(region["HYDRAULICS"]["INITIAL"]["type"], "dry")

    def test_a_minimal_1d_setup(self):
        # A channel has two ends.
        boundary = "/DOMAIN/KESTCHAIN_1D/HYDRAULICS/BOUNDARY"
        text = filled(reference("template", "/PROJECT", "/DOMAIN/KESTCHAIN_1D", boundary, boundary).stdout,
                      {"cross_section_order": ["( a b )"], "precision": ["0.1"], "string": ["upstream", "downstream"],
                       "type": ["kestrix", "iteration", "strickler", "wall", "wall", "dry"]})
        region = self.expect_document(text)["KESTMD"]["KESTCHAIN_1D"][0]
        self.assertEqual([each["string"] for each in region["HYDRAULICS"]["BOUNDARY"]], ["upstream", "downstream"])

    def test_a_minimal_subsurface_setup(self):
        text = filled(reference("template", "/PROJECT", "/DOMAIN/KESTSUB", "/DOMAIN/KESTSUB/GEOMETRY/ZONE",
                                "/DOMAIN/KESTSUB/MATERIAL/SOIL_DEF/RETENTION_MODEL").stdout,
                      {"ref_coordinates": "( 0 0 0 )", "base_vector_i": "( 1 0 0 )", "base_vector_j": "( 0 1 0 )",
                       "zone": "name", "type": ["default", "theta", "theta", "van_genuchten"], "n": "2", "alpha": "8"})
        region = self.expect_document(text)["KESTMD"]["KESTSUB"][0]
        self.assertEqual(region["GEOMETRY"]["ZONE"][0]["name"], "name")

    def test_each_block_parses_once_it_is_filled_in(self):
        for block in json.loads(reference("vocabulary").stdout)["blocks"]:
            with self.subTest(block["path"]):
                skeleton = reference("template", block["path"]).stdout
                done = self.convert(filled(skeleton, {}))
                self.assertNotIn("Parse error", done.stderr)
                self.assertIn("Input file has", done.stderr)

    def test_what_stands_on_a_line(self):
        lines = {found["name"]: {**found.groupdict(), "remark": remark}
                 for _, found, remark in remarks(reference("template", "/DOMAIN/KESTPLANE_2D/TIMESTEP").stdout) if found}
        self.assertEqual(lines["total_run_time"], {
            "indent": " " * 6, "off": None, "name": "total_run_time", "value": "?", "remark": "real; [s]; x > 0"})
        self.assertEqual((lines["CFL"]["off"], lines["CFL"]["value"], lines["CFL"]["remark"]),
                         ("// ", "1.0", "real; [-]; 0 < x <= 2"))
        self.assertEqual(lines["cycle_step_file"]["remark"], "string; name of a file with a time series; used if morph_cycle is dynamic")

    def test_no_line_is_wider_than_a_screen(self):
        for block in json.loads(reference("vocabulary").stdout)["blocks"]:
            for line in reference("template", block["path"]).stdout.split("\n"):
                self.assertLessEqual(len(line), 100, line)

    def test_optional_blocks_are_told_in_comments(self):
        text = reference("template", "KESTPLANE_2D/GEOMETRY").stdout
        self.assertIn("\n      // STRINGDEF { ... }  any number of times: List of successive nodes", text)

    def test_short_names_that_are_unique(self):
        whole = reference("template", "/DOMAIN/KESTPLANE_2D/GEOMETRY").stdout
        self.assertEqual(reference("template", "KESTPLANE_2D/GEOMETRY").stdout, whole)
        done = reference("template", "GEOMETRY")
        self.assertEqual((done.returncode, done.stdout), (1, ""))
        self.assertEqual(done.stderr, "kcf: there are several blocks 'GEOMETRY':\n  /DOMAIN/KESTCHAIN_1D/GEOMETRY\n"
                                      "  /DOMAIN/KESTPLANE_2D/GEOMETRY\n  /DOMAIN/KESTSUB/GEOMETRY\n")

    def test_a_name_that_cannot_be_written_is_left_out(self):
        self.assertNotIn("show gridlines", reference("template", "/DOMAIN/KESTCHAIN_1D/OUTPUT/SPECIAL_OUTPUT").stdout)

    def test_named_blocks_stand_in_their_frames(self):
        text = reference("template", "/DOMAIN/CONTROLLER/MANIPULATED_VARIABLE", "/DOMAIN/PARALLEL/").stdout
        self.assertEqual([line.strip() for line in text.split("\n") if line.endswith(("{", "}"))],
                         ["DOMAIN {", "PARALLEL {", "}", "CONTROLLER {", "MANIPULATED_VARIABLE {", "}", "}", "}"])
        self.assertNotIn("multiregion", text)
        self.assertEqual(reference("template", "DOMAIN/PARALLEL").stdout, reference("template", "/DOMAIN/PARALLEL").stdout)

    def test_a_block_stands_as_often_as_it_is_named(self):
        boundary = "/DOMAIN/KESTPLANE_2D/HYDRAULICS/BOUNDARY"
        self.assertEqual(reference("template", boundary, boundary).stdout.count("BOUNDARY {"), 2)
        # Where that is allowed.
        self.assertEqual(reference("template", "/DOMAIN/PARALLEL", "/DOMAIN/PARALLEL").stdout.count("PARALLEL {"), 1)


class Starts(unittest.TestCase):
    def test_each_start_converts_at_once(self):
        listed = re.findall(r"^  ([a-z0-9-]+) ", reference("template", "--list").stdout, re.MULTILINE)
        self.assertLessEqual({"flood-2d", "reach-1d", "bedload-2d", "coupled"}, set(listed))
        for name in listed:
            with self.subTest(name), tempfile.TemporaryDirectory() as folder:
                made = Path(folder) / "not" / "yet"
                self.assertEqual(reference("template", name, "-o", made).stderr, "")
                done = subprocess.run([CONVERTER, "setup.kcf"], cwd=made, capture_output=True, text=True, check=False)
                self.assertEqual(done.returncode, 0, done.stderr)
                self.assertIn("successfully parsed and passed", done.stderr)
                self.assertTrue((made / "setup.kcf").read_text(encoding="utf-8").startswith("// "))
                self.assertEqual(reference("format", "--check", made / "setup.kcf").returncode, 0)
                # Nothing that is there is lost.
                (made / "setup.kcf").write_text("mine", encoding="utf-8")
                again = reference("template", name, "-o", made)
                self.assertEqual((again.returncode, (made / "setup.kcf").read_text(encoding="utf-8")), (1, "mine"))
                self.assertIn("is there already", again.stderr)

    def test_starts_and_blocks_are_not_mixed(self):
        for wrong, text in ((("flood-2d",), "name a folder with --output"),
                            (("flood-2d", "PROJECT", "-o", "x"), "stands alone"),
                            (("PROJECT", "-o", "x"), "standard output"), ((), "PATH is required")):
            done = reference("template", *wrong)
            self.assertEqual((done.returncode, done.stdout), (2, ""), wrong)
            self.assertIn(text, done.stderr)


class CommandLine(unittest.TestCase):
    def test_unknown_blocks(self):
        for path, nearest in (("/DOMAIN/KESTPLAN_2D", "/DOMAIN/KESTPLANE_2D"),
                              ("domain", "/DOMAIN"),
                              ("FRICTIN", "/DOMAIN/KESTCHAIN_1D/HYDRAULICS/FRICTION"),
                              ("geometry/stringdef", "/DOMAIN/KESTPLANE_2D/GEOMETRY/STRINGDEF"),
                              ("/DOMAIN/KESTSUB/SOURCES", "/DOMAIN/KESTSUB/SOURCE")):
            done = reference("template", "/PROJECT", path)
            self.assertEqual((done.returncode, done.stdout), (1, ""))
            self.assertIn(f"kcf: there is no block '{path}'. Did you mean {nearest}", done.stderr)

    def test_wrong_usage(self):
        for wrong, text in (((), "there is no verb"), (("nope",), "'nope'"),
                            (("vocabulary", "more"), "more"), (("template",), "PATH is required"),
                            (("schema", "--nope"), "--nope"), (("manual",), "--output is required"),
                            (("manual", "--output"), "output"),
                            (("templat",), "Did you mean 'template'?"), (("manual", "--outptu", "x"), "Did you mean '--output'?")):
            done = reference(*wrong)
            self.assertEqual((done.returncode, done.stdout), (2, ""), wrong)
            self.assertIn(text, done.stderr)
            self.assertIn("For help: kcf " + (wrong[0] + " " if wrong and wrong[0] not in ("nope", "templat") else "") + "--help", done.stderr)

    def test_help(self):
        for right in (("--help",), ("-h",), ("vocabulary", "--help"), ("schema", "--help"), ("manual", "--help"), ("template", "--help")):
            done = reference(*right)
            self.assertEqual((done.returncode, done.stderr), (0, ""), right)
            self.assertIn("Usage: kcf", done.stdout)

    def test_a_failed_write(self):
        with open("/dev/full", "wb") as full:
            for verb in (("vocabulary",), ("schema",), ("template", "/")):
                done = subprocess.run([REFERENCE, *verb], stdout=full, stderr=subprocess.PIPE, text=True, check=False)
                self.assertEqual((done.returncode, done.stderr), (1, "kcf: writing to standard output failed\n"))


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], "-v"])
