"""Writes the words of the vocabulary as a dictionary for the fuzzer.

usage: kcf vocabulary | make_dictionary.py
"""

import json
import sys

SYNTAX = ["{\n", "\n}\n", " = ", "( ", " )", "//", "/*", "*/", "\r\n", "\t", ":(", ".", "-", "yes", "no",
          "0", "-1", "1e400", "1e-400", "2147483648", "NS ", "end", "end/", "#"]


def words(blocks):
    yield from SYNTAX
    for block in blocks:
        yield block["name"] + " {\n"
        for tag in block["tags"]:
            yield tag["name"] + " = "
            yield from tag["allowedValues"]
            yield from tag["validEntries"]
            yield tag["default"]


def escaped(word):
    safe = set(range(0x20, 0x7F)) - {ord('"'), ord("\\")}
    return "".join(chr(c) if c in safe else f"\\x{c:02x}" for c in word.encode())


for word in sorted(set(words(json.load(sys.stdin)["blocks"])) - {""}):
    print(f'"{escaped(word)}"')
