#!/usr/bin/env python3
"""Colours command files by the syntax file of Kate: with Kate's own engine, and with pandoc.

    kate_test.py PROJECT-FOLDER
"""
import html.parser
import os
import subprocess
import sys
import unittest
from pathlib import Path

import tables

PROJECT = Path(sys.argv[1]).resolve()
SYNTAX = PROJECT / "editors/kate/kcf.xml"

# What the theme named below makes of the styles.
KATE = {"color:#898887;": "comment", "font-weight:bold;": "block", "color:#0057ae;": "tag",
        "color:#aa5500;": "choice", "color:#b08000;": "number", "color:#bf0303;": "text",
        "color:#bf0303;text-decoration:underline;": "fault"}
PANDOC = {"co": "comment", "kw": "block", "dt": "tag", "cn": "choice", "dv": "number", "st": "text",
          "er": "fault"}


class Characters(html.parser.HTMLParser):
    """The lines in the <pre> of a page, for each character its innermost style or class."""

    def __init__(self, text):
        super().__init__()
        self.lines = [[]]
        self.styles = []
        self.isCode = False
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        self.isCode = self.isCode or tag == "pre"
        if tag == "span":
            told = dict(attributes)
            self.styles.append(told.get("style") or told.get("class"))

    def handle_endtag(self, tag):
        self.isCode = self.isCode and tag != "pre"
        if tag == "span":
            self.styles.pop()

    def handle_data(self, text):
        if self.isCode:
            for character in text:
                if character == "\n":
                    self.lines.append([])
                else:
                    self.lines[-1].append(self.styles[-1] if self.styles else None)


class Kate(tables.Colours, tables.Folder):
    project = PROJECT

    def kinds(self, path):
        place = self.folder / "org.kde.syntax-highlighting/syntax"
        place.mkdir(parents=True, exist_ok=True)
        (place / "kcf.xml").write_bytes(SYNTAX.read_bytes())
        done = subprocess.run(
            ["kate-syntax-highlighter", "--theme", "Breeze Light", path],
            capture_output=True, text=True, check=True, timeout=60,
            env={**os.environ, "XDG_DATA_HOME": self.folder, "QT_QPA_PLATFORM": "offscreen"})
        self.assertNotIn("kcf", done.stderr)
        # The first line feed stands behind the tag of the text.
        return [[KATE.get(style) for style in line] for line in Characters(done.stdout).lines[1:]]


class Pandoc(tables.Colours, tables.Folder):
    project = PROJECT

    def kinds(self, path):
        page = subprocess.run(["pandoc", "--from", "markdown", "--to", "html", "--syntax-definition", SYNTAX],
                              input=f"~~~~ kcf\n{path.read_text()}~~~~\n", stdout=subprocess.PIPE, text=True,
                              check=True, timeout=60).stdout
        return [[PANDOC.get(style) for style in line] for line in Characters(page).lines]


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0]])
