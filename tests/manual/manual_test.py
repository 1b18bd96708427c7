#!/usr/bin/env python3
"""Checks the pages of the manual without a browser.

    manual_test.py KCF-REFERENCE CONVERTER

The links lead somewhere, the pages show all blocks and tags, and the examples convert.
"""
import html
import html.parser
import json
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

REFERENCE, CONVERTER = (Path(p).resolve() for p in sys.argv[1:3])
BLOCKS = json.loads(subprocess.run([REFERENCE, "vocabulary"], capture_output=True, check=True).stdout)["blocks"]
REPEATABLE = {block["path"] for block in BLOCKS if block["repeatable"]}
WHOLE = Path(__file__).with_name("whole.kcf")
# Their ranges refuse their defaults.
REFUSED_DEFAULTS = {("EXTERNAL_SOURCE", "opening_width"), ("EXTERNAL_SOURCE", "contraction_coeff")}
PASSED = "Input file has been successfully parsed and passed preliminary validation"


# What these choices need stands in other blocks, or in files of results.
BEYOND_A_BLOCK = {
    *((f"{region}/MORPHOLOGY/BEDLOAD/FORMULA", formula) for region in ("KESTCHAIN_1D", "KESTPLANE_2D")
      for formula in ("mpm", "engelundhansen", "power_law", "rickenmann", "smartjaeggi", "vanrijn")),
    *((path, "continue") for path in ("KESTPLANE_2D/HYDRAULICS/INITIAL", "KESTPLANE_2D/MORPHOLOGY/INITIAL", "KESTPLANE_2D/VEGETATION/INITIAL",
                                      "KESTPLANE_2D/MORPHOLOGY/SUSPENDED_LOAD/INITIAL", "KESTSUB/INITIAL")),
    *(("KESTCHAIN_1D/HYDRAULICS/SOURCE/EXTERNAL_SOURCE", kind) for kind in ("off_channel", "coupling_off_channel")),
    ("CONTROLLER/MONITORED_VARIABLE", "discharge_series"),
}
# What the simulation needs and the converter does not ask for.
FOR_THE_SIMULATION = {
    ("KESTCHAIN_1D/HYDRAULICS/BOUNDARY", "weir"): {"width"},
    ("KESTCHAIN_1D/HYDRAULICS/BOUNDARY", "coupling_weir"): {"width"},
    ("KESTCHAIN_1D/HYDRAULICS/BOUNDARY", "gate"): {"gate_level"},
    ("KESTCHAIN_1D/HYDRAULICS/BOUNDARY", "coupling_gate"): {"gate_level"},
    ("KESTCHAIN_1D/HYDRAULICS/BOUNDARY", "zhydrograph"): {"file"},
    ("KESTCHAIN_1D/HYDRAULICS/INNER_BOUNDARY", "weir"): {"width", "weir_level"},
    ("KESTCHAIN_1D/HYDRAULICS/INNER_BOUNDARY", "gate"): {"width", "gate_type", "gate_level", "gate_bottom_level"},
    ("KESTCHAIN_1D/HYDRAULICS/SOURCE/EXTERNAL_SOURCE", "sideweir"): {"weir_crest_height", "weir_crest_length", "poleni"},
    ("KESTCHAIN_1D/HYDRAULICS/SOURCE/EXTERNAL_SOURCE", "coupling_sideweir"): {"weir_crest_height", "weir_crest_length", "poleni"},
    ("KESTPLANE_2D/HYDRAULICS/BOUNDARY", "gate"): {"file"},
    ("KESTPLANE_2D/HYDRAULICS/BOUNDARY", "zhydrograph"): {"file"},
    ("KESTPLANE_2D/HYDRAULICS/SOURCE/EXTERNAL_SOURCE", "source_discharge"): {"file"},
    ("KESTPLANE_2D/HYDRAULICS/SOURCE/EXTERNAL_SOURCE", "coupling_source_discharge"): {"name"},
}
VALUES = {"string_name": "my_string_name1", "lateral_index": "(1)", "stringdefs": "(my_string_name)", "min_interval": "0.1", "max_interval": "0.5", "cross_section": "first"}


def value_of(tag, example):
    """A value that the tag takes."""
    shown = re.search(rf"^\s*{tag['name']} = (.*)$", example, re.MULTILINE)
    if shown or tag["name"] in VALUES:
        return VALUES.get(tag["name"]) or shown[1]
    word = (tag["allowedValues"] + tag["validEntries"] + ["my_" + (tag["names"] or ["/name"])[0].rsplit("/", 1)[1].lower()])[0]
    if tag["length"]:
        item = word if "words" in tag["type"] or tag["validEntries"] else "1"
        return "(" + " ".join([item] * tag["length"]["least"]) + ")"
    if "file" in tag["name"]:
        return "my_file.txt"
    return {"real": "0.5", "integer": "1"}.get(tag["type"], word)


class Page(html.parser.HTMLParser):
    """What is on a page: anchors, links, rows of the tags as texts of their cells, the example."""

    def __init__(self, path):
        super().__init__()
        self.anchors, self.links, self.rows, self.example, self.title = set(), [], {}, "", ""
        self.needs, self.deciding = {}, None
        self.row, self.cell, self.open, self.depth = None, None, [], 0
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        if tag not in ("meta", "link", "input", "br", "wbr", "img", "hr"):
            self.open.append(tag)
        if "id" in values:
            assert values["id"] not in self.anchors, values["id"] + " stands twice"
            self.anchors.add(values["id"])
        if tag == "tr" and "data-needed" in values:
            self.needs[values["id"].removeprefix("tag-")] = values
        if tag == "select":
            self.deciding = values["data-tag"]
        for name in ("href", "src"):
            if name in values:
                self.links.append(values[name])
        if tag == "tr" and "id" in values:
            self.row = self.rows[values["id"]] = {}
        if tag == "th" and values.get("scope") == "row":
            self.cell, self.depth = "Tag" if self.row is not None else None, len(self.open)
        if "data-label" in values:
            self.cell, self.depth = values["data-label"], len(self.open)
        if tag == "br":
            self.handle_data(" ")

    def handle_startendtag(self, tag, attributes):
        self.handle_starttag(tag, attributes)

    def handle_endtag(self, tag):
        if len(self.open) == self.depth:
            self.cell = None
        assert self.open.pop() == tag, f"{tag} closes nothing"

    def handle_data(self, data):
        if "pre" in self.open:
            self.example += data
        if self.open[-1:] == ["title"]:
            self.title += data
        if self.cell is not None:
            self.row[self.cell] = self.row.get(self.cell, "") + data


def page_of(block):
    return (block["path"][1:].replace("/", ".") or block["name"]) + ".html"


def blocks_of(text):
    """A command file as a list of lines, and of blocks as (name, such a list)."""
    open_blocks = [[]]
    for line in text.splitlines():
        line = line.strip()
        if line.endswith("{"):
            open_blocks[-1].append((line[:-1].strip(), []))
            open_blocks.append(open_blocks[-1][-1][1])
        elif line == "}":
            open_blocks.pop()
        elif line:
            open_blocks[-1].append(line)
    return open_blocks[0]


def text_of(content):
    return "".join(f"{x}\n" if isinstance(x, str) else f"{x[0]} {{\n{text_of(x[1])}}}\n" for x in content)


def names_in(block):
    return [line for line in block[1] if re.match(r"(region_)?name =", str(line))]


def put_into(text, path, examples):
    """`text` with the example of the block at `path` in place of the blocks that it stands for."""
    content = whole = blocks_of(text)
    *above, name = path.strip("/").split("/")
    for depth, parent in enumerate(above):
        if parent not in (x[0] for x in content):
            content += blocks_of(examples["/" + "/".join(above[:depth + 1])])
        content = next(x[1] for x in content if x[0] == parent)
    fresh = blocks_of(examples[path])
    is_one_more = path in REPEATABLE and len(fresh) == 1
    content[:] = [x for x in content if x[0] != name or (is_one_more and names_in(x) != names_in(fresh[0]))] + fresh
    return text_of(whole)


class Manual(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.temporary = tempfile.TemporaryDirectory()
        cls.folder = Path(cls.temporary.name) / "not" / "yet" / "there"
        subprocess.run([REFERENCE, "manual", "--output", cls.folder], check=True)
        cls.pages = {path.name: Page(path) for path in cls.folder.glob("*.html")}

    @classmethod
    def tearDownClass(cls):
        cls.temporary.cleanup()

    def test_all_blocks_and_tags_have_their_place(self):
        for block in BLOCKS:
            page = self.pages[page_of(block)]
            self.assertEqual(list(page.rows), ["tag-" + tag["name"].replace(" ", "-") for tag in block["tags"]])
            self.assertIn(page_of(block), self.pages["blocks.html"].links)
            for tag, row in zip(block["tags"], page.rows.values()):
                self.assertEqual(row["Tag"].replace("required on condition", "").replace("required", "")
                                 .replace("optional", ""), tag["name"])
                self.assertTrue(row["Type"].startswith(tag["type"].removeprefix("whitespace separated ")))
                if (block["name"], tag["name"]) not in REFUSED_DEFAULTS:
                    self.assertEqual(row.get("Default", ""), tag["default"])
                for word in tag["allowedValues"] + tag["validEntries"]:
                    self.assertIn(word, row["Choices"])

    def test_links_lead_somewhere(self):
        for name, page in self.pages.items():
            for link in page.links:
                self.assertNotIn(":", link, f"{name} needs the network")
                target, _, anchor = link.partition("#")
                self.assertTrue((self.folder / (target or name)).is_file(), f"{name}: {link}")
                if anchor:
                    self.assertIn(anchor, self.pages[target or name].anchors, f"{name}: {link}")

    def test_the_search_knows_all_names(self):
        text = (self.folder / "names.js").read_text(encoding="utf-8")
        names = json.loads(text[text.index("["):text.rindex(";")])
        kinds = [node["kind"] for node in names]
        self.assertEqual(kinds.count("block"), len(BLOCKS))
        self.assertEqual(kinds.count("tag"), sum(len(block["tags"]) for block in BLOCKS))
        self.assertIn(("choice", "hydrograph"), {(node["kind"], node["name"]) for node in names})
        for node in names:
            target, _, anchor = node["page"].partition("#")
            self.assertTrue(anchor == "" or anchor in self.pages[target].anchors, node)

    def test_the_index_has_all_tags(self):
        links = set(self.pages["a-z.html"].links)
        for block in BLOCKS:
            for tag in block["tags"]:
                self.assertIn(f"{page_of(block)}#tag-{tag['name'].replace(' ', '-')}", links)

    def test_names_lead_to_blocks_and_back(self):
        boundary = self.pages["DOMAIN.KESTPLANE_2D.HYDRAULICS.BOUNDARY.html"]
        string = "DOMAIN.KESTPLANE_2D.GEOMETRY.STRINGDEF.html"
        self.assertIn("Names GEOMETRY/STRINGDEF", boundary.rows["tag-string_name"]["Remarks"])
        self.assertIn(string, boundary.links)
        self.assertIn("DOMAIN.KESTPLANE_2D.HYDRAULICS.BOUNDARY.html#tag-string_name", self.pages[string].links)

    def test_chapters_link_what_they_name(self):
        links = self.pages["couplings.html"].links
        self.assertIn("DOMAIN.COUPLINGS.COUPLING.html#tag-factor_bifurcation", links)
        self.assertIn("DOMAIN.COUPLINGS.COUPLING_LATERAL.html#tag-weir_from_dyke1D", links)
        # Of several blocks that have the tag, the one that the text told of last is meant.
        for block in ("KESTPLANE_2D", "KESTCHAIN_1D"):
            self.assertIn(f"DOMAIN.{block}.HYDRAULICS.BOUNDARY.html#tag-slope", self.pages["boundaries.html"].links)

    def test_whole_setups_that_hold_a_block_are_linked(self):
        uses = [link for link in self.pages["DOMAIN.CONTROLLER.html"].links if link.startswith("example-")]
        self.assertRegex(uses[0], r"example-linked-regions\.html#L\d+")

    def test_ranges_and_conditions_are_readable(self):
        friction = self.pages["DOMAIN.KESTPLANE_2D.HYDRAULICS.FRICTION.html"].rows
        self.assertEqual(friction["tag-default_friction"]["Range"], "x ≥ 0")
        self.assertEqual(friction["tag-index"]["Condition"], "required if input_type is index_table")
        self.assertEqual(friction["tag-wall_friction_factor"]["Condition"], "used if wall_friction is on")
        self.assertIn("Decides on index, friction", friction["tag-input_type"]["Remarks"])
        self.assertEqual(friction["tag-default_friction"]["Unit"][:8], "[s/m1/3]")
        step = self.pages["DOMAIN.KESTPLANE_2D.TIMESTEP.html"].rows
        self.assertEqual(step["tag-CFL"]["Range"], "0 < x ≤ 2")
        weir = self.pages["DOMAIN.KESTCHAIN_1D.HYDRAULICS.BOUNDARY.html"].rows["tag-width"]
        self.assertEqual(weir["Condition"],
                         "not together with width_file used if type is weir or coupling_weir or gate or coupling_gate "
                         "required if type is gate or coupling_gate this or width_file is required if type is weir or coupling_weir")
        opening = self.pages["DOMAIN.KESTCHAIN_1D.HYDRAULICS.SOURCE.EXTERNAL_SOURCE.html"].rows["tag-opening_width"]
        self.assertEqual(opening["Tag"], "opening_widthrequired on condition")
        self.assertEqual(opening["Condition"], "required if type is bottom_opening")
        # What a rule needs is not called optional.
        self.assertEqual(self.pages["DOMAIN.KESTPLANE_2D.HYDRAULICS.BOUNDARY.html"].rows["tag-slope"]["Tag"],
                         "sloperequired on condition")
        # A condition that never requires anything does not say so.
        self.assertEqual(step["tag-maximum_waterdepth"]["Condition"], "used if ignore_wave_celerity is on")
        for name in self.pages:
            text = (self.folder / name).read_text(encoding="utf-8")
            self.assertIsNone(re.search(r"&amp;(lt|gt|amp|mu)\b", text), f"{name} shows a raw entity")

    def test_the_rules_speak_for_themselves(self):
        page = "DOMAIN.KESTPLANE_2D.HYDRAULICS.BOUNDARY.html"
        self.assertIn("rule-hydrograph-without-slope", self.pages["DOMAIN.KESTCHAIN_1D.HYDRAULICS.BOUNDARY.html"].anchors)
        for name in ("messages.html", page):
            text = html.unescape((self.folder / name).read_text(encoding="utf-8"))
            self.assertIn("needs", text)
            self.assertIsNone(re.search(r"\{\d\}", text), f"{name} shows the place of a value")
        self.assertIn(page + "#tag-slope", self.pages["messages.html"].links)

    def test_codes_are_told_with_what_the_converter_says(self):
        codes, text = self.pages["codes.html"], html.unescape((self.folder / "codes.html").read_text(encoding="utf-8"))
        listed = re.findall(r"^  (\S+)  ", subprocess.run([REFERENCE, "explain"], capture_output=True, text=True, check=True).stdout, re.MULTILINE)
        self.assertGreater(len(listed), 30)
        self.assertLessEqual(set(listed) | {"boundary/hydrograph-without-slope"}, codes.anchors)
        self.assertIn("Tag named 'titel' is not defined within block 'PROJECT'.", text)
        self.assertIn("codes.html", self.pages["messages.html"].links)
        self.assertIn("Tag 'slope' is mandatory for boundary conditions of type 'hydrograph'",
                      html.unescape((self.folder / "messages.html").read_text(encoding="utf-8")))

    def test_each_choice_and_item_tells_what_it_means(self):
        for block in BLOCKS:
            for tag in block["tags"]:
                self.assertEqual(set(tag["meanings"]), set(tag["allowedValues"] + tag["validEntries"]), (block["path"], tag["name"]))
                self.assertTrue(tag["description"] or tag["more"], (block["path"], tag["name"]))

    def converted(self, text):
        with tempfile.TemporaryDirectory() as folder:
            (Path(folder) / "setup.kcf").write_text(text, encoding="utf-8")
            for name in re.findall(r"= (my_\S+\.txt)$", text, re.MULTILINE):
                (Path(folder) / name).write_text("0 1\n10 1\n", encoding="utf-8")
            strings = ("my_string_name", "my_string_name1", "my_string_name2")
            (Path(folder) / "my_mesh.2dm").write_text("".join(f"NS 1 -2 {s}\n" for s in strings), encoding="utf-8")
            return subprocess.run([CONVERTER, "setup.kcf"], cwd=folder, capture_output=True, text=True, check=False).stderr

    def test_examples_convert_in_a_whole_setup(self):
        examples = {block["path"]: self.pages[page_of(block)].example for block in BLOCKS}
        for path, example in examples.items():
            with self.subTest(path):
                text = example if path == "/" else put_into(WHOLE.read_text(encoding="utf-8"), path, examples)
                self.assertEqual(self.converted(text).strip(), PASSED, text)

    def test_what_a_choice_needs_is_all_that_it_needs(self):
        """Blocks with nothing but what their page calls needed convert, and with less of it do not."""
        examples = {block["path"]: self.pages[page_of(block)].example for block in BLOCKS}
        count = 0
        for block in BLOCKS:
            page, path = self.pages[page_of(block)], block["path"]
            tags = {tag["name"]: tag for tag in block["tags"]}
            for choice in tags[page.deciding]["allowedValues"] if page.deciding else ():
                if (path.split("/", 2)[2], choice) in BEYOND_A_BLOCK:
                    continue
                with self.subTest(path=path, choice=choice):
                    given = {page.deciding: choice}
                    for name, row in page.needs.items():
                        others = next((o.split(":")[1].split(",") for o in row["data-others"].split() if o.startswith(choice + ":")), [])
                        if choice in row["data-needed"].split() and name not in given and not given.keys() & set(others):
                            given[name] = value_of(tags[name], examples[path])
                    first, *more = blocks_of(examples[path])

                    def told(missing):
                        content = [f"{n} = {v}" for n, v in given.items() if n != missing] + [x for x in first[1] if not isinstance(x, str)]
                        return self.converted(put_into(WHOLE.read_text(encoding="utf-8"), path, {**examples, path: text_of([(first[0], content)] + more)}))
                    self.assertIn(PASSED, told(None))
                    for name in given.keys() - {page.deciding} - FOR_THE_SIMULATION.get((path.split("/", 2)[2], choice), set()):
                        self.assertNotIn(PASSED, told(name), name)
                    count += 1
        self.assertGreater(count, 120)

    def test_a_folder_that_cannot_be_made(self):
        done = subprocess.run([REFERENCE, "manual", "--output", "/dev/null/manual"], capture_output=True, text=True, check=False)
        self.assertEqual(done.returncode, 1)
        self.assertIn("making the folder '/dev/null/manual' failed: Not a directory", done.stderr)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], "-v"])
