#!/usr/bin/env python3
"""Gives each tag of the vocabulary values that it must take and values that it must refuse.

    tag_values.py CONVERTER KCF-REFERENCE

A command file opens the blocks down to the tag and sets it. A refused value is told in the words that
belong to the kind of the tag; behind a value that is taken, an unknown tag is told instead.
"""
import html
import json
import re
import subprocess
import sys
import tempfile
from pathlib import Path

CONVERTER, REFERENCE = (Path(p).resolve() for p in sys.argv[1:3])
UNKNOWN = "no_such_tag"


def told(folder, path, lines):
    """The fault that the converter tells of a file that sets `lines` in the block at `path`."""
    names = [name for name in path.split("/") if name]
    (folder / "a.kcf").write_text("".join(f"{name} {{\n" for name in names) + "".join(f"{line}\n" for line in lines))
    done = subprocess.run([CONVERTER, "a.kcf"], cwd=folder, capture_output=True, text=True, timeout=60, check=False)
    text = done.stderr.replace("\n   ", "")
    found = re.search(r"\nERROR -> Parse error near line (\d+), col \d+: (.*)\.\n$", text, re.S)
    if done.returncode != 1 or found is None:
        return f"status {done.returncode}: {text}"
    expected_line = len(names) + len(lines)
    return found[2] if int(found[1]) == expected_line else f"line {found[1]} instead of {expected_line}"


def quoted(words):
    return ", ".join(f"'{word}'" for word in words)


def range_text(tag):
    """What stands before the condition of a tag."""
    return re.split("; (?=used if|and required|exclusive)", tag["constraint"])[0]


def range_of(tag):
    """Lower and upper bound, each with whether it belongs to the range."""
    text = html.unescape(range_text(tag))
    number = r"(-?[0-9.e+]+)"
    if both := re.fullmatch(number + r" (<=?) x (<=?) " + number, text):
        return (float(both[1]), both[2] == "<="), (float(both[4]), both[3] == "<=")
    if lower := re.fullmatch(r"x (>=?) " + number, text):
        return (float(lower[2]), lower[1] == ">="), None
    if upper := re.fullmatch(r"x (<=?) " + number, text):
        return None, (float(upper[2]), upper[1] == "<=")
    return None, None


def number_cases(tag, whole):
    lower, upper = range_of(tag)
    write = (lambda x: str(int(x))) if whole else (lambda x: f"{x:g}")
    out_of_range = lambda text: f"Value '{text}' is not in range {range_text(tag)}"
    inside = 1.0
    if lower and inside <= lower[0]:
        inside = lower[0] + (1 if whole or not upper else min(1, (upper[0] - lower[0]) / 2))
    if upper and inside >= upper[0]:
        inside = upper[0] - 1 if not lower else (lower[0] + upper[0]) / 2
    yield write(inside), None
    for bound, step in ((lower, -1), (upper, 1)):
        if bound:
            yield write(bound[0]), None if bound[1] else out_of_range(write(bound[0]))
            yield write(bound[0] + step), out_of_range(write(bound[0] + step))
    if whole:
        yield "x", "Character 'x' is invalid for an integer"
        yield "1.5", "Non numeric character '.' found"
        yield "", "Empty string as value received"
    else:
        yield "x1", "Value 'x1' is not a double (last_stage: 1)"
        yield "1e+5e", "Value '1e+5e' can not be recognized as a double"
        yield "", "Empty value instead of a double found"


def word_cases(tag):
    words = tag["allowedValues"]
    for word in words:
        yield word, None
    yield words[0].upper() + "_", f"Expression '{words[0].upper()}_' is not a valid value for tag '{tag['name']}'. Allowed values are {quoted(words)}"
    yield "", f"Empty value is not allowed for tag '{tag['name']}'. Allowed values are {quoted(words)}"


def list_cases(tag):
    kind = tag["type"]
    count = int(found[1]) if (found := re.search(r"list of (\d+) ", kind)) else 0
    entries = tag["validEntries"]
    item = entries[0] if entries else "1"
    yield "( " + " ".join([item] * (count or 3)) + " )", None
    yield "", "The string which should contain a list is empty"
    yield "1", "List starts with '1' instead of the expected opening brace '('"
    yield "( )", "Invalid list: Empty list found: '( )'"
    yield f"( {item} ) {item}", f"List does end with '{item[-1]}' instead of the expected closing brace ')'"
    if count:
        yield f"( {item} )", f"Invalid list: Expected {count} items in list but found 1"
    elif entries:
        yield f"( {item} none )", f"List item nr. 2 'none' is not a valid list entry. Valid entries are {quoted(entries)}"
    elif "real" in kind:
        yield "( 1 x )", "Invalid list: List item nr. 2 is invalid: Value 'x' can not be recognized as a double"
    elif "integer" in kind:
        yield "( 1 1.5 )", "Invalid list: List item nr. 2 is invalid: Non numeric character '.' found"


def text_cases(tag, folder):
    if "Chars [a-zA-Z0-9_-] are allowed" in tag["constraint"]:
        refused = "The string does not meet the restriction: Chars [a-zA-Z0-9_-] are allowed"
        yield "A-word_1", None
        yield "two words", refused
        yield "", refused
    elif told(folder, tag["path"], [f"{tag['name']} = missing.txt"]) == "Can not open file './/missing.txt'":
        yield "series.txt", None
        yield "", "Empty filename received"
    elif tag["name"] == "position":
        yield "region.place", None
        yield "region", "There is no region name in string 'region'"
        yield ".place", "Position starts with a '.' which means that no region name is defined"
    else:
        yield "any text, {even} this = fine", None
        yield "", None


def cases(tag, folder):
    if tag["type"] in ("real", "integer"):
        return number_cases(tag, tag["type"] == "integer")
    if tag["type"] == "tagged list":
        return iter([("a:( 1 2 )", None), ("( 1 )", "The tag of tagged list is missing")])
    if "list of" in tag["type"]:
        return list_cases(tag)
    return word_cases(tag) if tag["allowedValues"] else text_cases(tag, folder)


def main():
    blocks = json.loads(subprocess.run([REFERENCE, "vocabulary"], capture_output=True, check=True).stdout)["blocks"]
    faults, checked = [], 0
    with tempfile.TemporaryDirectory() as temporary:
        folder = Path(temporary)
        (folder / "series.txt").write_text("0 1\n")
        for block in blocks:
            behind = f"Tag named '{UNKNOWN}' is not defined within block '{block['name']}'. Valid tag names are {quoted(t['name'] for t in block['tags'])}"
            for tag in block["tags"]:
                tag["path"] = block["path"]
                if " " in tag["name"]:
                    continue
                for value, fault in cases(tag, folder):
                    lines = [f"{tag['name']} = {value}"] + ([] if fault else [f"{UNKNOWN} = 1"])
                    answer = told(folder, block["path"], lines)
                    checked += 1
                    if answer != (fault or behind):
                        faults.append(f"{block['path']} {lines[0]!r}: told {answer!r} instead of {fault or behind!r}")
                if not tag["repeatable"]:
                    twice = [f"{tag['name']} = {next(cases(tag, folder))[0]}"] * 2
                    answer = told(folder, block["path"], twice)
                    checked += 1
                    if answer != f"Tag named '{tag['name']}' is non-repeatable, but second tag defined.":
                        faults.append(f"{block['path']} {tag['name']} twice: told {answer!r}")
    print("\n".join(faults[:20]))
    print(f"tag values: {checked} checked, {len(faults)} faults")
    return 1 if faults or not checked else 0


if __name__ == "__main__":
    sys.exit(main())
