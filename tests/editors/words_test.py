#!/usr/bin/env python3
"""Holds the lists of words in the files of editors against the vocabulary.

    words_test.py KCF PROJECT-FOLDER
"""
import json
import re
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ET
from pathlib import Path

KCF = Path(sys.argv[1]).resolve()
EDITORS = Path(sys.argv[2]).resolve() / "editors"
FILES = [EDITORS / name for name in ("vscode/syntaxes/kcf.tmLanguage.json", "vim/syntax/kcf.vim",
                                     "emacs/kcf-mode.el", "kate/kcf.xml", "notepad++/kcf.xml")]


def kcf(*arguments):
    return subprocess.run([KCF, *arguments], capture_output=True, text=True, timeout=60, check=False)


class Words(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.copy = Path(folder.name, "copy")

    def test_are_those_of_the_vocabulary(self):
        done = kcf("editor-words", "--check", *FILES)
        self.assertEqual(done.returncode, 0, "stale, kcf editor-words mends them:\n" + done.stdout + done.stderr)

    def test_stale_lists_are_told_and_mended(self):
        for path in FILES:
            text = path.read_text()
            for old, new in (("FRICTION", "FRICTOIN"), ("default_friction", "frictions_of_all")):
                self.copy.write_text(re.sub(rf"(?<![\w-]){old}(?![\w-])", new, text, count=1))
                self.assertEqual(kcf("editor-words", "--check", self.copy).stdout, f"{self.copy}\n", path)
                kcf("editor-words", self.copy)
                self.assertEqual(self.copy.read_text(), text, path)

    def test_marks_that_cannot_be_followed_are_told(self):
        for text, told in (("no mark\n", "there is no 'kcf words: '"),
                           ("# kcf words: colours( )\na b\n", "asks for a list that is none: 'kcf words: colours( )'"),
                           ("# kcf words: blocks( )", "asks for a list that is none"),
                           ("# kcf words: blocks\na (b)\n", "asks for a list that is none")):
            self.copy.write_text(text)
            done = kcf("editor-words", self.copy)
            self.assertEqual(done.returncode, 1)
            self.assertIn(told, done.stderr)
            self.assertEqual(self.copy.read_text(), text)
        self.assertEqual(kcf("editor-words", self.copy.with_name("none")).returncode, 1)

    def test_of_notepad(self):
        """Its lists against the vocabulary as data, and its lists and styles against those it knows."""
        blocks = json.loads(kcf("vocabulary").stdout)["blocks"]
        language = ET.parse(EDITORS / "notepad++/kcf.xml").getroot().find("UserLang")
        lists = {words.get("name"): (words.text or "").split() for words in language.iter("Keywords")}
        self.assertEqual(set(lists["Keywords1"]), {block["name"] for block in blocks} - {"KESTRIX"})
        self.assertEqual(set(lists["Keywords2"]),
                         {tag["name"] for block in blocks for tag in block["tags"] if " " not in tag["name"]})
        choices = {word for block in blocks for tag in block["tags"] for words in tag["allowedValues"]
                   for word in words.split() if not word.isdigit()}
        self.assertLessEqual(choices, set(lists["Keywords3"]))
        count = {"Keywords": 8, "Operators": 2}
        known = {"Comments", "Delimiters", *(name + str(i + 1) for name in count for i in range(count[name])),
                 *("Numbers, " + part for part in ("prefix1", "prefix2", "extras1", "extras2", "suffix1",
                                                   "suffix2", "range")),
                 *(f"Folders in {where}, {part}" for where in ("code1", "code2", "comment")
                   for part in ("open", "middle", "close"))}
        self.assertEqual(set(lists), known)
        self.assertEqual({style.get("name") for style in language.iter("WordsStyle")},
                         {"DEFAULT", "COMMENTS", "LINE COMMENTS", "NUMBERS", "OPERATORS", "FOLDER IN CODE1",
                          "FOLDER IN CODE2", "FOLDER IN COMMENT",
                          *(f"{name}{i}" for name in ("KEYWORDS", "DELIMITERS") for i in range(1, 9))})


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0]])
