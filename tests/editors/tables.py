"""The places of places.kcf, for the tests of all editors."""
import re
from pathlib import Path
from typing import NamedTuple

PLACES = Path(__file__).with_name("places.kcf")
MARK = re.compile(r"//\s*(\^+) (\w+)$")


class Place(NamedTuple):
    """What the characters of a line are. Lines and columns count from 1, `end` is excluded."""
    line: int
    column: int
    end: int
    kind: str


def places():
    """The places that the lines of marks tell of."""
    found = []
    line = 0
    for number, text in enumerate(PLACES.read_text().splitlines(), start=1):
        mark = MARK.match(text)
        if mark:
            found.append(Place(line, mark.start(1) + 1, mark.end(1) + 1, mark.group(2)))
        else:
            line = number
    return found
