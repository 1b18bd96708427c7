#!/usr/bin/env python3
"""Holds the includes of the sources against the floors of the house: none goes up.

    floors.py PROJECT
"""
import re
import sys
from pathlib import Path

FLOORS = [
    ("KESTparse/base",),
    ("KESTcore", "h5io", "KESTdatainfo"),
    ("KESTparse/framework",),
    ("KESTparse/root", "KESTparse/plane2d", "KESTparse/chain1d", "KESTparse/bedmaterial", "KESTparse/subsurface",
     "KESTparse/linking"),
    ("KESTparse/vocabulary",),
    ("KESTparse/document",),
]
FLOOR_OF = {room: number for number, rooms in enumerate(FLOORS) for room in rooms}


def main():
    library = Path(sys.argv[1]) / "KESTMD_libs"
    faults, checked = [], 0
    for source in sorted([*library.rglob("*.h"), *library.rglob("*.cpp")]):
        room = source.relative_to(library).parent.as_posix().split("/", 1)[1]
        if room not in FLOOR_OF:
            faults.append(f"{source.relative_to(library)} stands in no room that has a floor")
            continue
        text = source.read_text(encoding="utf-8")
        for included in re.findall(r'^#include "([^"]+)/[^"/]+"', text, flags=re.M):
            checked += 1
            if FLOOR_OF.get(included, len(FLOORS)) > FLOOR_OF[room]:
                faults.append(f"{source.relative_to(library)} includes from {included}, which is above it")
        if "nlohmann" in text and FLOOR_OF[room] < FLOOR_OF["KESTparse/vocabulary"]:
            faults.append(f"{source.relative_to(library)} knows JSON")
    print(*faults, sep="\n")
    print(f"{checked} includes checked, {len(faults)} faults")
    return 1 if faults or checked == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
