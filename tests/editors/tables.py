"""What the tests of all editors share: the places of places.kcf, and files to indent."""
import re
import subprocess
import tempfile
import unittest
from pathlib import Path
from typing import NamedTuple

PLACES = Path(__file__).with_name("places.kcf")
MARK = re.compile(r"//\s*(\^+) (\w+)$")


class Place(NamedTuple):
    """What the characters of a line are. Lines and columns count from 0, `end` is excluded."""
    line: int
    column: int
    end: int
    kind: str


def places():
    """The text without its lines of marks, which could hide what goes on too far, and its places."""
    lines = []
    found = []
    for text in PLACES.read_text().splitlines(keepends=True):
        mark = MARK.match(text)
        if mark:
            found.append(Place(len(lines) - 1, mark.start(1), mark.end(1), mark.group(2)))
        else:
            lines.append(text)
    return "".join(lines), found


def setups(project):
    """Command files without a fault."""
    return [*sorted(project.glob("examples/*/setup.kcf")), *sorted(project.glob("kcf/template/starts/*/setup.kcf")),
            project / "tests/editors/lists.kcf"]


def unindented(project, kcf):
    """Formatted command files: name, text without the blanks at the begin of its lines, text."""
    for path in setups(project):
        text = subprocess.run([kcf, "format", "-"], input=path.read_text(), stdout=subprocess.PIPE,
                              text=True, check=True, timeout=60).stdout
        yield path, "".join(line.lstrip(" ") for line in text.splitlines(keepends=True)), text


class Folder(unittest.TestCase):
    """A test with a folder of its own."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)


class Colours:
    """For a `Folder` whose `kinds` tells, line by line, what each character of a file is shown as."""

    def test_a_word_has_the_colour_of_its_place(self):
        text, table = places()
        path = self.folder / "places.kcf"
        path.write_text(text)
        kinds = self.kinds(path)
        wrong = [f"{place.line + 1}:{column + 1} is {kinds[place.line][column]}, not {place.kind}"
                 for place in table for column in range(place.column, place.end)
                 if kinds[place.line][column] != place.kind]
        self.assertFalse(wrong, "\n".join(wrong))

    def test_no_fault_is_shown_where_there_is_none(self):
        for path in setups(self.project):
            for number, line in enumerate(self.kinds(path), start=1):
                self.assertNotIn("fault", line, f"{path}:{number}")
