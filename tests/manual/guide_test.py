#!/usr/bin/env python3
"""Does what the guide tells: writes its files, converts its command files, and compares what it says that
the converter and kcf check say.

    guide_test.py KCF CONVERTER GUIDE-FOLDER
"""
import json
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

KCF, CONVERTER, GUIDE = (Path(p).resolve() for p in sys.argv[1:4])
FENCED = re.compile(r"^```(\w+) ?(.*?)\n(.*?)^```$", re.MULTILINE | re.DOTALL)
PROGRAM = re.compile(r"^    (kcf|main-converter) (.*?)(?: *#.*)?$", re.MULTILINE)


def chapters():
    for path in sorted(GUIDE.glob("*.md"), key=lambda path: (path.stem != "first-setup", path.stem)):
        yield path, path.read_text(encoding="utf-8")


def words(text):
    return " ".join(text.split())


class Guide(unittest.TestCase):
    def test_command_files_do_what_is_told(self):
        count = 0
        with tempfile.TemporaryDirectory() as made:
            # A chapter may go on with the files of an earlier one.
            folder = Path(made)
            for path, text in chapters():
                named = {name: content for _, name, content in FENCED.findall(text) if name}
                for name, content in named.items():
                    if " " not in name:
                        (folder / name).write_text(content, encoding="utf-8")
                for name in named:
                    if name.startswith("kcf check "):
                        done = subprocess.run([KCF, *name.split()[1:]], cwd=folder, capture_output=True, text=True, check=False)
                        self.assertIn(words(named[name]), words(done.stdout))
                    if not name.endswith(".kcf") or " " in name or "kcf check " + name in named:
                        continue
                    with self.subTest(chapter=path.name, file=name):
                        if name + " says" not in named:
                            subprocess.run([KCF, "format", "--check", name], cwd=folder, check=True)
                        done = subprocess.run([CONVERTER, name], cwd=folder, capture_output=True, text=True, check=False)
                        told = named.get(name + " says")
                        self.assertEqual(done.returncode == 0, told is None, done.stderr)
                        if told is not None:
                            self.assertIn(words(told).split("...")[0], words(done.stderr))
                        count += 1
        self.assertGreaterEqual(count, 6)

    def test_snippets_hold_what_the_vocabulary_holds(self):
        blocks = json.loads(subprocess.run([KCF, "vocabulary"], capture_output=True, check=True).stdout)["blocks"]
        tags = {}
        for block in blocks:
            tags.setdefault(block["name"], set()).update(tag["name"] for tag in block["tags"])
        for path, text in chapters():
            for language, name, content in FENCED.findall(text):
                if language != "kcf" or name.endswith(".kcf"):
                    continue
                opened = []
                for line in content.split("\n"):
                    line = line.split("//")[0].strip()
                    with self.subTest(chapter=path.name, line=line):
                        if line.endswith("{"):
                            opened.append(line[:-1].strip())
                            self.assertIn(opened[-1], tags)
                        elif line == "}":
                            opened.pop()
                        elif " = " in line:
                            self.assertIn(line.split(" = ")[0], tags[opened[-1]] if opened else set().union(*tags.values()))
                self.assertEqual(opened, [], path.name)

    def test_command_lines_are_understood(self):
        for path, text in chapters():
            for program, arguments in PROGRAM.findall(FENCED.sub("", text)):
                with tempfile.TemporaryDirectory() as folder, self.subTest(chapter=path.name, command=arguments):
                    subprocess.run([KCF, "template", "flood-2d", "--output", folder], check=True)
                    if program == "kcf":
                        done = subprocess.run(f"{KCF} {arguments}", shell=True, cwd=folder, capture_output=True, text=True, check=False)
                        self.assertEqual((done.returncode, done.stderr), (0, ""))


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], "-v"])
