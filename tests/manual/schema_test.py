#!/usr/bin/env python3
"""Checks the JSON Schema of documents with an independent validator.

    schema_test.py KCF CONVERTER EXAMPLES CASES

The document of each command file below the folders is valid. Documents that were tampered with are not: at
each place the vocabulary tells what must not stand there.
"""
import copy
import json
import re
import subprocess
import sys
from pathlib import Path

from jsonschema import Draft202012Validator


def printed(verb):
    return json.loads(subprocess.run([sys.argv[1], verb], capture_output=True, check=True).stdout)


SCHEMA = printed("schema")
BLOCKS = {block["path"]: block for block in printed("vocabulary")["blocks"]}
# The values that a rule puts in place of one that was given are out of the range of the tag.
REPAIRED = {"d90_armored_layer"}


def documents(folder):
    for setup in sorted(Path(folder).rglob("*.kcf")):
        done = subprocess.run([Path(sys.argv[2]).resolve(), setup.name], cwd=setup.parent, capture_output=True, check=False)
        text = done.stdout.decode("utf-8", "replace")
        if done.returncode == 0:
            yield setup, json.loads(text[text.index("{\n"):])


def blocks_of(content, path, place):
    """All objects of blocks below and including `content`, each with the path of its block."""
    yield BLOCKS[path], content, place
    for name in BLOCKS[path]["subBlocks"]:
        child = f"{path}/{name}"
        if name in content:
            repeated = BLOCKS[child]["repeatable"]
            for index, inner in enumerate(content[name] if repeated else [content[name]]):
                yield from blocks_of(inner, child, place + (name,) + ((index,) if repeated else ()))


def refused_values(tag, value):
    """What must not stand in place of one value of the tag."""
    yield "null", None
    yield "a boolean", True
    yield "an object", {}
    words, entries = tag["allowedValues"], tag["validEntries"]
    if isinstance(value, str):
        yield "a number", 1
        if words:
            yield "no allowed word", words[0] + "_"
        elif "Chars [a-zA-Z0-9_-] are allowed" in tag["constraint"]:
            yield "two words", "two words"
        return
    yield "a text", "text"
    if isinstance(value, dict):
        yield "no list", {"tag": value["tag"]}
        yield "no name", {"list": value["list"]}
        yield "an empty list", {"tag": value["tag"], "list": []}
    elif isinstance(value, list):
        yield "an empty list", []
        yield "a list of lists", [[]]
        if "list of 2" in tag["type"]:
            yield "a long list", value + value
            yield "a short list", value[:1]
        if "integers" in tag["type"]:
            yield "a list of fractions", [0.5] * len(value)
        if entries and isinstance(value[0], dict):
            yield "an unknown value", [{"accumulator": "none", "value": entries[0] + "_"}]
            yield "an unknown accumulator", [{"accumulator": "sum", "value": entries[0]}]
        elif entries:
            yield "an unknown word", [entries[0] + "_"]
    else:
        if tag["type"] == "integer":
            yield "a fraction", 1.5
        yield from (("out of range", bound) for bound in beyond(tag["constraint"]))


def beyond(constraint):
    """Numbers just out of the range that a constraint tells."""
    number = r"(-?[\d.e+-]+)"
    for pattern, step in ((rf"x &gt;(=?) {number}", -1), (rf"x &lt;(=?) {number}", 1)):
        for is_inclusive, bound in re.findall(pattern, constraint):
            yield float(bound) + (step if is_inclusive else 0)
    for bound, is_inclusive in re.findall(rf"{number} &lt;(=?) x", constraint):
        yield float(bound) - (1 if is_inclusive else 0)


def changes(document):
    """What to tamper with: where, what is put there (nothing to take it away), and a word on it."""
    setup = ("SETUP",)
    yield (), "no_such_key", 1, "a key too many"
    for key in ("simulation_name", "KESTMD"):
        yield setup, key, ..., "a key is missing"
    yield setup, "simulation_name", "two words", "two words"
    for block, content, place in blocks_of(document["SETUP"]["KESTMD"], "/DOMAIN", setup + ("KESTMD",)):
        yield place, "no_such_key", 1, "a key too many"
        tags = {tag["name"]: tag for tag in block["tags"]}
        for name, tag in tags.items():
            if name not in content:
                continue
            value = content[name]
            is_conditional = "if '" in tag["constraint"]
            if not is_conditional and (tag["mandatory"] or tag["default"]):
                yield place, name, ..., "a tag is missing"
            required = re.search(r"required if '(\w+)' = (.*)", tag["constraint"])
            if tag["mandatory"] and required and f"'{content.get(required[1])}'" in required[2]:
                yield place, name, ..., "a tag is missing that its condition requires"
            for word, other in refused_values(tag, value[0] if tag["repeatable"] else value):
                if not (word == "out of range" and name in REPAIRED and other == -1.0):
                    yield place, name, [other] if tag["repeatable"] else other, word
            if tag["repeatable"]:
                yield place, name, value[0], "no array"
            other = re.search(r"exclusive: '(\w+)'", tag["constraint"])
            if other:
                yield place, other[1], "x" if tags[other[1]]["type"] == "string" else 1, "both of an exclusive pair"
        for name in block["subBlocks"]:
            child = BLOCKS[f"{block['path']}/{name}"]
            if name not in content:
                continue
            if child["mandatory"] or name == "PHYSICAL_PROPERTIES":
                yield place, name, ..., "a block is missing"
            yield place, name, content[name][0] if child["repeatable"] else [content[name]], "wrong repetition"
            yield place, name, "text", "a text for a block"


def tampered(document, place, key, value):
    changed = copy.copy(document)
    node = changed
    for step in place:
        node[step] = copy.copy(node[step])
        node = node[step]
    if value is ...:
        del node[key]
    else:
        node[key] = value
    return changed


def main():
    Draft202012Validator.check_schema(SCHEMA)
    validator = Draft202012Validator(SCHEMA)
    faults, valid, refused, words = [], 0, 0, set()
    for folder, is_tampered_with in ((sys.argv[3], True), (sys.argv[4], False)):
        for kept, document in documents(folder):
            errors = [f"{kept}: {'/'.join(map(str, e.path))}: {e.message[:200]}" for e in validator.iter_errors(document)]
            faults += errors
            valid += not errors
            for place, key, value, word in changes(document) if is_tampered_with else ():
                words.add(word)
                if validator.is_valid(tampered(document, place, key, value)):
                    faults.append(f"{kept}: {'/'.join(map(str, place))}: {key} is {value!r}, {word}, and valid")
                else:
                    refused += 1
    print("\n".join(faults[:40]))
    print(f"schema: {valid} documents valid, {refused} tampered ones refused "
          f"({len(words)} ways), {len(faults)} faults")
    return 1 if faults or not valid or not refused else 0


if __name__ == "__main__":
    sys.exit(main())
