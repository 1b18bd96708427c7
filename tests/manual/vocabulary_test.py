#!/usr/bin/env python3
"""Checks the shape of the vocabulary that other programs read.

    vocabulary_test.py KCF-REFERENCE
"""
import json
import subprocess
import sys
import unittest

BLOCK = {"path": str, "name": str, "mandatory": bool, "repeatable": bool, "description": str, "subBlocks": list, "tags": list}
TAG = {"name": str, "type": str, "mandatory": bool, "repeatable": bool, "default": str, "preset": str, "unit": str,
       "constraint": str, "allowedValues": list, "validEntries": list, "description": str}


class Vocabulary(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        done = subprocess.run([sys.argv[1], "vocabulary"], capture_output=True, check=True)
        cls.document = json.loads(done.stdout)
        cls.blocks = {block["path"]: block for block in cls.document["blocks"]}

    def check_shape(self, node, shape):
        self.assertEqual(list(node), list(shape))
        for key, kind in shape.items():
            self.assertIs(type(node[key]), kind, key)

    def test_keys(self):
        self.assertEqual(list(self.document), ["blocks"])
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
            "description": "This parameter is only needed if 'grain_size_friction' is active."})


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], "-v"])
