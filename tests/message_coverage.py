#!/usr/bin/env python3
"""Fails for each message of a rule that no case shows.

    message_coverage.py PROJECT-FOLDER

A message is a text of a block class outside its tables and help, or of the rules that classes share;
the name, sentence and help of a rule are none.
"""
import re
import sys
from pathlib import Path

import run_cases

SHORTEST = 20
TABLES = re.compile(r"^\S.*::(createTags|createSubBlocks|getDescription|getLongDescription|getExample)\(", re.M)
RULE_WORDS = re.compile(r'\{\s*"[a-z0-9-]+"(?:,(?:\s*"(?:[^"\\]|\\.)*")+){2}\s*\}')
LITERAL = re.compile(r'"((?:[^"\\]|\\.)*)"(?:\s*"((?:[^"\\]|\\.)*)")*')

# Texts that no run can reach, each with its reason.
UNREACHABLE = {
    # The tag refuses the value before the rule is asked.
    "No restart time has been chosen. In this case only",
    "The grid format '{}' is deprecated and is not supported any more.",
    " is unknown. Fix me!",
    "SECTION_COMPUTATION block is used in input file combined",
    "You are using 'varlen' as the geometry input file format.",
    "The boundary type '{}' is not supported.",
    "The boundary face '{}' is not supported.",
    # The list parser refuses an empty list, and the tags are mandatory.
    "No x- and y-values are specified.",
    # A list that is compared with itself.
    "Number of entries in 'index' and 'angle_failure_wetted' do not match",
    # The base validation reports the missing block, and the rules are not asked.
    "No SOIL was defined within the MATERIAL block.",
    # There is always a domain and a region above.
    "No DOMAIN block could be found.",
    "No KESTCHAIN block could be found.",
    # The report looks a second time and finds the value dropped.
    "The boundary type 'cut_plane' does not allow for specifying 'cut_z_position'.",
    # Thrown texts: nothing shows them.
    "The boundary named {} is not unique!",
    "The source named {} is not unique!",
    "inner boundary {} does not exist.",
    "boundary {} does not exist.",
    # The catalogue is checked by the schema's own test.
    "error, dependencies and valid_values arrays have not the same length",
    ". fix it in the OutputXXXData class",
    # Inner boundaries of 1D regions have no names.
    "The inner boundary named {} is not unique!",
}


def messages(source):
    text = re.sub(r'R"\(.*?\)"', "", source.read_text(encoding="utf-8"), flags=re.S)
    for table in list(TABLES.finditer(text))[::-1]:
        end = text.index("\n}\n", table.start()) + 3 if "\n}\n" in text[table.start():] else len(text)
        if text[table.start():].split("\n", 1)[0].endswith("{}"):
            continue
        text = text[:table.start()] + text[end:]
    text = re.sub(r"^#include.*$|^ *//.*$", "", text, flags=re.M)
    text = RULE_WORDS.sub("", text)
    for literal in LITERAL.finditer(text):
        joined = "".join(re.findall(r'"((?:[^"\\]|\\.)*)"', literal.group(0)))
        if len(joined) >= SHORTEST and " " in joined and "->" not in joined.split("from->to")[0]:
            yield joined.encode().decode("unicode_escape")


def told_by_examples(path):
    # A line of a report goes on behind three blanks.
    return path.read_text(encoding="utf-8", errors="replace").replace("\n   ", "")


def told_by_cases(path):
    """What the cases expect, each message behind the star of a report."""
    text = path.read_text(encoding="utf-8")
    found = re.findall(r"^  [A-Z][^:]* (?:error|warning): (.*)$|^  (?:stops|aborts|logs \w+): (.*)$", text, re.M)
    return "\n".join("* " + run_cases.plain(a or b) for a, b in found)


def main():
    project = Path(sys.argv[1])
    schema = project / "KESTMD_libs/src/KESTparse"
    sources = [p for p in sorted(schema.rglob("*.cpp")) if p.parent.name not in ("base", "document", "framework", "vocabulary")]
    sources.append(schema / "framework/Rules.cpp")
    told = "\n".join(told_by_examples(path) for path in project.glob("examples/**/*.expected"))
    told += "\n".join(told_by_cases(path) for path in project.glob("tests/cases/*.cases"))
    told = told.replace("\n", "")
    unseen, needless, seen, excused = [], [], 0, set()
    for source in sources:
        for message in dict.fromkeys(messages(source)):
            excuse = next((start for start in UNREACHABLE if message.startswith(start)), None)
            pattern = re.escape(message.replace("\n", "")).replace(r"\{\}", ".{0,200}?")
            if re.search(pattern, told):
                seen += 1
                if excuse is not None and re.search(r"\* " + pattern, told):
                    needless.append(message)
            elif excuse is None:
                unseen.append(f"{source.relative_to(project)}: {message}")
            if excuse is not None:
                excused.add(excuse)
    for line in unseen:
        print("never seen:", line)
    for message in needless:
        print("excused, but seen:", message)
    for start in sorted(UNREACHABLE - excused):
        print("no such message any more:", start)
    print(f"message coverage: {seen} seen, {len(excused)} excused, {len(unseen)} never seen")
    return 1 if unseen or needless or UNREACHABLE - excused else 0


if __name__ == "__main__":
    sys.exit(main())
