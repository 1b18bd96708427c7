#!/usr/bin/env python3
"""Checks the shape of the vocabulary that other programs read.

    vocabulary_test.py KCF-REFERENCE
"""
import json
import re
import subprocess
import sys
import unittest
from pathlib import Path

BLOCK = {"path": str, "name": str, "mandatory": bool, "repeatable": bool, "description": str, "subBlocks": list, "tags": list}
TAG = {"name": str, "type": str, "mandatory": bool, "repeatable": bool, "default": str, "preset": str, "unit": str,
       "constraint": str, "allowedValues": list, "validEntries": list, "description": str, "more": str,
       "range": (dict, type(None)), "length": (dict, type(None)), "conditions": list, "meanings": dict, "names": list}


def told_range(prose):
    number = r"(-?[\d.e+-]+)"
    both = re.search(rf"{number} &lt;(=?) x &lt;(=?) {number}", prose)
    if both:
        return {"lower": float(both[1]), "lowerInclusive": both[2] == "=", "upper": float(both[4]), "upperInclusive": both[3] == "="}
    one = re.search(rf"x &(gt|lt);(=?) {number}", prose)
    if one is None:
        return {}
    side = "lower" if one[1] == "gt" else "upper"
    return {side: float(one[3]), side + "Inclusive": one[2] == "="}


class Vocabulary(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        done = subprocess.run([sys.argv[1], "vocabulary"], capture_output=True, check=True)
        cls.document = json.loads(done.stdout)
        cls.blocks = {block["path"]: block for block in cls.document["blocks"]}

    def check_shape(self, node, shape):
        self.assertEqual(list(node), list(shape))
        for key, kind in shape.items():
            self.assertIsInstance(node[key], kind, key)

    def test_keys(self):
        self.assertEqual(list(self.document), ["version", "blocks"])
        self.assertEqual(len(self.blocks), len(self.document["blocks"]))
        for block in self.document["blocks"]:
            self.check_shape(block, BLOCK)
            for tag in block["tags"]:
                self.check_shape(tag, TAG)

    def test_order_is_depth_first(self):
        def walk(path):
            yield path
            for name in self.blocks[path]["subBlocks"]:
                yield from walk(path.rstrip("/") + "/" + name)

        self.assertEqual([block["path"] for block in self.document["blocks"]], list(walk("/")))

    def test_names_are_the_ends_of_paths(self):
        for path, block in self.blocks.items():
            self.assertEqual(block["name"], path.split("/")[-1] or "KESTRIX")

    def test_a_tag_in_full(self):
        tags = {tag["name"]: tag for tag in self.blocks["/DOMAIN/KESTPLANE_2D/HYDRAULICS/FRICTION"]["tags"]}
        self.assertEqual(tags["fixed_bed_d90"], {
            "name": "fixed_bed_d90", "type": "real", "mandatory": False, "repeatable": False, "default": "10.0",
            "preset": "", "unit": "[mm]", "constraint": "x &gt; 0; used if 'grain_size_friction' = 'yes' ",
            "allowedValues": [], "validEntries": [],
            "description": "This parameter is only needed if 'grain_size_friction' is active.", "more": "",
            "range": {"lower": 0.0, "lowerInclusive": False}, "length": None,
            "conditions": [{"kind": "usedIf", "tag": "grain_size_friction", "equals": True, "values": ["yes"]}],
            "meanings": {}, "names": []})

    def test_data_say_what_the_prose_says(self):
        for block in self.document["blocks"]:
            for tag in block["tags"]:
                prose = tag["constraint"]
                with self.subTest(block=block["path"], tag=tag["name"]):
                    if tag["type"] in ("real", "integer"):
                        self.assertEqual(tag["range"] or {}, told_range(prose))
                    counted = re.search(r"list of (\d+)", tag["type"])
                    if counted:
                        self.assertEqual(tag["length"], {"least": int(counted[1]), "most": int(counted[1])})
                    self.assertEqual("list" in tag["type"], tag["length"] is not None)
                    for condition in tag["conditions"]:
                        self.assertIn(f"'{condition['tag']}'", prose)
                        for value in condition.get("values", []):
                            self.assertIn(f"'{value}'", prose)

    def test_each_choice_has_a_meaning(self):
        for block in self.document["blocks"]:
            for tag in block["tags"]:
                if set(tag["allowedValues"]) - {"yes", "no", "on", "off"}:
                    self.assertEqual(set(tag["meanings"]), set(tag["allowedValues"]), f"{block['path']} {tag['name']}")

    def test_each_tag_is_described(self):
        for block in self.document["blocks"]:
            for tag in block["tags"]:
                self.assertTrue(tag["description"] or tag["more"], f"{block['path']} {tag['name']}")

    def test_what_is_told_beside_the_vocabulary_is_about_something(self):
        supplement = json.loads((Path(__file__).parents[2] / "kcf/vocabulary/supplement.json").read_text(encoding="utf-8"))
        for entry in supplement["blocks"]:
            for path in entry["paths"]:
                tags = {tag["name"]: tag for tag in self.blocks[path]["tags"]}
                for names, told in entry.get("tags", {}).items():
                    for name in names.split("|"):
                        self.assertLessEqual(set(told.get("choices", {})), set(tags[name]["allowedValues"] + tags[name]["validEntries"]), f"{path} {name}")
                for choice, needs in entry.get("needs", {}).items():
                    self.assertTrue(choice == "*" or any(choice in tag["allowedValues"] for tag in tags.values()), f"{path} {choice}")
                    for need in needs:
                        self.assertLessEqual(set(need.split("|")), set(tags), path)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], "-v"])
