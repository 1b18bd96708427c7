#!/usr/bin/env python3
"""Holds what is told of the written cases, which break the rules of blocks, against what is kept.

    rules.py KCF CASES RULES

RULES keeps one message of each kind:

    # code
    @ the case that is told of
    severity `text that is underlined`: message, and below it help, related places, and fixes

A kind is a code, and a message without its names and numbers. `kcf explain` knows each code, and each rule of
the manual is kept; of one that cannot be told, a line that begins with `-` tells why.
KESTRIX_UPDATE_CASES=1 writes RULES anew; read the difference before you keep it.
"""
import difflib
import json
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

LONGEST = 60


def run(*command, statuses=(0,)):
    done = subprocess.run(command, capture_output=True, timeout=100, check=False)
    if done.returncode not in statuses:
        sys.exit(f"{' '.join(map(str, command))} ended with {done.returncode}: {done.stderr.decode(errors='replace')}")
    return done.stdout.decode()


def rules_of_manual(kcf):
    """The codes of all rules of blocks."""
    with tempfile.TemporaryDirectory() as folder:
        run(kcf, "manual", "-o", folder)
        page = Path(folder, "codes.html").read_text()
    return set(re.findall(r'id="([a-z0-9-]+/[a-z0-9-]+)"', page))


class Texts:
    """What diagnostics point to."""

    def __init__(self):
        self.lines = {}

    def at(self, place):
        path = place["file"]
        if path not in self.lines:
            self.lines[path] = Path(path).read_text(errors="replace").split("\n")
        lines = self.lines[path][place["line"] - 1:place["endLine"]]
        lines[-1] = lines[-1][:place["endColumn"] - 1]
        lines[0] = lines[0][place["column"] - 1:]
        text = " ".join(" ".join(lines).split())
        return text if len(text) <= LONGEST else text[:LONGEST] + "..."


def shown(told, texts):
    severity = told["severity"] + ("" if told["origin"] == "converter" else " (checker)")
    yield f"{severity} `{texts.at(told)}`: {told['message']}"
    yield f"  help: {told['help']}"
    for place in told["related"]:
        yield f"  `{texts.at(place)}`: {place['message']}"
    for fix in told["fixes"]:
        yield f"  fix: {fix['message']}: " + ", ".join(repr(edit["text"]) for edit in fix["edits"])


def read_kept(path):
    """The kept messages by code, each with its case; and the rules that are excused, with the reasons."""
    kept, excused, code = {}, {}, ""
    for line in path.read_text().splitlines() if path.exists() else ():
        if line.startswith("# "):
            code = line[2:]
        elif line.startswith("- "):
            excused[code] = line[2:]
        elif line.startswith("@ "):
            kept.setdefault(code, []).append((line[2:], []))
        elif line:
            kept[code][-1][1].append(line)
    return kept, excused


def kinds_of(told, folder, kept):
    """One message of each kind, by code: that of a kept case if there is one."""
    texts, kinds = Texts(), {}
    for one in told:
        case = Path(one["file"]).relative_to(folder).with_suffix("").as_posix()
        kind = re.sub(r"'[^']*'|\d[\d.]*", "", one["message"])
        isKept = case in (name for name, _ in kept.get(one["code"], ()))
        found = kinds.setdefault(one["code"], {})
        if kind not in found or (isKept and not found[kind][0]):
            found[kind] = (isKept, case, list(shown(one, texts)))
    return {code: sorted(found[1:] for found in kinds[code].values()) for code in sorted(kinds)}


def written(kinds, excused):
    lines = []
    for code in sorted({*kinds, *excused}):
        lines.append(f"# {code}")
        if code in excused:
            lines.append(f"- {excused[code]}")
        for case, message in kinds.get(code, ()):
            lines += [f"@ {case}", *message]
        lines.append("")
    return lines


def main():
    kcf, cases, path = (Path(argument).resolve() for argument in sys.argv[1:])
    kept, excused = read_kept(path)
    kinds = kinds_of(json.loads(run(kcf, "check", "--format", "json", cases, statuses=(1,)))["diagnostics"], cases, kept)
    rules = rules_of_manual(kcf)
    if os.environ.get("KESTRIX_UPDATE_CASES") == "1":
        path.write_text("\n".join(written(kinds, {rule: excused.get(rule, "") for rule in rules - kinds.keys()})))
        sys.exit(0)
    failures = list(difflib.unified_diff(written(kept, excused), written(kinds, excused), "kept", "told", lineterm=""))
    failures += [f"no case breaks {rule}" for rule in sorted(rules - kinds.keys() - excused.keys())]
    failures += [f"{code} is excused, but told" for code in sorted(excused.keys() & kinds.keys())]
    for code in kinds:
        if run(kcf, "explain", code, statuses=(0, 2)).startswith(code) is False:
            failures.append(f"kcf explain does not know {code}")
    print("\n".join(failures))
    print(f"{sum(map(len, kinds.values()))} messages, {len(failures)} failures")
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()
