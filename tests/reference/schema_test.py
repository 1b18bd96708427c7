#!/usr/bin/env python3
"""Checks the JSON Schema of documents with an independent validator.

    schema_test.py KCF-REFERENCE FOLDER...

Every document that is kept under the folders is valid; documents that were tampered with are not.
"""
import copy
import json
import subprocess
import sys
from pathlib import Path

from jsonschema import Draft202012Validator

SCHEMA = json.loads(subprocess.run([sys.argv[1], "schema"], capture_output=True, check=True).stdout)


def documents(folders):
    for folder in folders:
        for kept in sorted(Path(folder).rglob("*.expected")):
            text = kept.read_text(encoding="utf-8", errors="replace")
            begin = text.find("\n{\n")
            if text.startswith("status 0") and begin >= 0:
                yield kept, json.loads(text[begin:])


def nodes(value, path=()):
    """All objects below and including `value`."""
    if isinstance(value, dict):
        yield path, value
        for key, inner in value.items():
            yield from nodes(inner, path + (key,))
    elif isinstance(value, list):
        for index, inner in enumerate(value):
            yield from nodes(inner, path + (index,))


def mutations(document):
    """Tampered copies, each with what was done."""
    for path, node in nodes(document):
        def at(changed):
            for key in path:
                changed = changed[key]
            return changed

        changed = copy.deepcopy(document)
        at(changed)["no_such_key"] = 1
        yield f"{path}: key added", changed
        for key, value in node.items():
            for name, other in (("null", None), ("a boolean", True), ("an empty list", [])):
                changed = copy.deepcopy(document)
                at(changed)[key] = other
                yield f"{path}: {key} is {name}", changed
            if not isinstance(value, str):
                changed = copy.deepcopy(document)
                at(changed)[key] = "text"
                yield f"{path}: {key} is a text", changed
    for key in ("simulation_name", "KESTMD"):
        changed = copy.deepcopy(document)
        del changed["SETUP"][key]
        yield f"{key} is missing", changed
    for key in ("multiregion", "PHYSICAL_PROPERTIES"):
        changed = copy.deepcopy(document)
        del changed["SETUP"]["KESTMD"][key]
        yield f"{key} is missing", changed
    changed = copy.deepcopy(document)
    changed["SETUP"]["KESTMD"]["PHYSICAL_PROPERTIES"]["gravity"] = -1
    yield "gravity is out of range", changed


def main():
    Draft202012Validator.check_schema(SCHEMA)
    validator = Draft202012Validator(SCHEMA)
    faults, valid, refused = [], 0, 0
    for kept, document in documents(sys.argv[2:]):
        errors = [f"{kept}: {'/'.join(map(str, e.path))}: {e.message[:200]}" for e in validator.iter_errors(document)]
        faults += errors
        valid += not errors
        for what, changed in mutations(document) if valid == 1 else ():
            if validator.is_valid(changed):
                faults.append(f"{kept}: valid although {what}")
            else:
                refused += 1
    print("\n".join(faults[:40]))
    print(f"schema: {valid} documents valid, {refused} tampered ones refused, {len(faults)} faults")
    return 1 if faults or not valid or not refused else 0


if __name__ == "__main__":
    sys.exit(main())
