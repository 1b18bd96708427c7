#!/usr/bin/env python3
"""Tries the extension for VS Code: its grammar, rules and snippets, and what it does.

    vscode_test.py FOLDER-OF-PACK-VSCODE KCF PROJECT-FOLDER
"""
import json
import re
import subprocess
import sys
import unittest
import zipfile
from pathlib import Path

import tables

PACKED, KCF, PROJECT = (Path(argument).resolve() for argument in sys.argv[1:4])
EXTENSION = PROJECT / "editors/vscode"

SCOPES = {"block": "entity.name.type.block.kcf", "tag": "support.type.property-name.kcf",
          "choice": "constant.language.choice.kcf", "number": "constant.numeric.kcf",
          "text": "string.unquoted.kcf", "fault": "invalid.illegal.kcf"}


def expanded(text):
    """A snippet as it stands when nothing is typed over its places."""
    text = re.sub(r"\$\{\d+\|([^,|]*)[^}]*\}", r"\1", text)
    return re.sub(r"\$\{\d+:([^}]*)\}|\$\d", lambda place: place.group(1) or "", text)


class Extension(tables.Folder):
    def test_a_word_has_the_scope_of_its_place(self):
        lines = ['// SYNTAX TEST "source.kcf"']
        for line in tables.PLACES.read_text().splitlines():
            mark = tables.MARK.match(line)
            if not mark:
                marked = line
            elif mark.group(2) == "comment":
                isLine = marked.rfind("//", 0, mark.start(1) + 2) >= 0
                line = line[:mark.end(1)] + (" comment.line.double-slash.kcf" if isLine else " comment.block.kcf")
            else:
                line = line[:mark.end(1)] + " " + SCOPES[mark.group(2)]
            lines.append(line)
        test = self.folder / "places.test.kcf"
        test.write_text("\n".join(lines) + "\n")
        done = subprocess.run(
            [PACKED / "node_modules/.bin/vscode-tmgrammar-test",
             "--grammar", EXTENSION / "syntaxes/kcf.tmLanguage.json", test], capture_output=True, text=True, timeout=60, check=False)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)

    def test_no_fault_is_shown_where_there_is_none(self):
        for i, path in enumerate(tables.setups(PROJECT)):
            copy = self.folder / f"{i}.kcf"
            copy.write_bytes(path.read_bytes())
            subprocess.run([PACKED / "node_modules/.bin/vscode-tmgrammar-snap", "--scope", "source.kcf", "--grammar",
                            EXTENSION / "syntaxes/kcf.tmLanguage.json", copy],
                           stdout=subprocess.DEVNULL, timeout=60, check=True)
            told = (self.folder / f"{i}.kcf.snap").read_text()
            self.assertIn(SCOPES["tag"], told)
            self.assertNotIn(SCOPES["fault"], told, path)

    def test_indentation_is_that_of_the_formatter(self):
        """As the editor applies the rules: by the line above and the line itself."""
        rules = json.loads((EXTENSION / "language-configuration.json").read_text())["indentationRules"]
        more, less = (re.compile(rules[name]) for name in ("increaseIndentPattern", "decreaseIndentPattern"))
        for name, flat, text in tables.unindented(PROJECT, KCF):
            level = 0
            told = []
            for line in flat.splitlines():
                level -= bool(less.search(line))
                told.append("  " * level + line if line else "")
                level += bool(more.search(line))
            self.assertEqual(told, text.splitlines(), name)

    def test_snippets_are_formatted_and_known_to_the_checker(self):
        snippets = json.loads((EXTENSION / "snippets/kcf.json").read_text())
        for name, snippet in snippets.items():
            place = re.search(r", in ([A-Z0-9_/]+)$", snippet["description"])
            around = ["DOMAIN", *place.group(1).split("/")] if place else []
            body = expanded("\n".join(snippet["body"]))
            for block in reversed(around):
                body = f"{block} {{\n" + re.sub(r"^(?=.)", "  ", body, flags=re.M) + "}\n"
            options = {"input": body, "capture_output": True, "text": True, "timeout": 60, "check": False}
            self.assertEqual(subprocess.run([KCF, "format", "-"], **options).stdout, body, name)
            told = json.loads(subprocess.run([KCF, "check", "--no-files", "--format", "json", "-"], **options).stdout)
            # What lies around a snippet lacks its content here, and the rules ask for what the snippet names.
            errors = [each for each in told["diagnostics"] if each["severity"] == "error"
                      and len(around) < each["line"] and "/" not in each["code"] and each["code"] != "unknown-name"]
            self.assertEqual(errors, [], name)

    def test_what_is_packed_works(self):
        with zipfile.ZipFile(PACKED / "kcf.vsix") as packed:
            packed.extractall(self.folder)
        done = subprocess.run(["node", PROJECT / "tests/editors/extension_test.js", self.folder / "extension", KCF,
                               PROJECT], capture_output=True, text=True, timeout=120, check=False)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0]])
