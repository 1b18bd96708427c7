#!/usr/bin/env python3
"""Counts the faults in rules that the cases catch.

    mutants.py MAKE-RESULT-FILE               the cases of tests/cases, and the examples
    mutants.py MAKE-RESULT-FILE FOLDER...     the command files below the FOLDERs, by all that they print

In a copy of the sources, in build/mutants, each condition of the block classes can be inverted, whole and
in each of its operands, and each message dropped, by an environment variable. So all mutants are one
build, and a run without the variable tells which of them a case reaches. A mutant that no case catches is
printed as a survivor; SURVIVORS names those that no case can catch, with the reason, and the status is 1
when another one survives, or one of these does not.
"""
import json
import mmap
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

import run_cases

PROJECT = Path(__file__).resolve().parent.parent
BUILD = PROJECT / "build/mutants"
SCHEMA = "KESTMD_libs/src/KESTparse"
FOLDERS = ("root", "plane2d", "chain1d", "bedmaterial", "subsurface", "linking")
TABLES = re.compile(r"^\S.*::(createTags|createSubBlocks|getDescription|getLongDescription|getExample)\(", re.M)
MESSAGE = re.compile(r"(?<=[;{}])(\s*)((?:\w+(?:\.|->))*(?:error|warning|addError|addWarning|addMessage|report\w*|ASSERT)(?:<[^;(){}]*>)?\()")
CONDITION = re.compile(r"\bif \(|\breturn |\bbool \w+ =\s")
HEADER = """\
#pragma once
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>
#include <cstdlib>
namespace mutants {
inline const int chosen = std::getenv("KEST_MUTANT") == nullptr ? -1 : std::atoi(std::getenv("KEST_MUTANT"));
inline char* const reached = [] {
  const char* const path = std::getenv("KEST_MUTANTS_REACHED");
  const int file = path == nullptr ? -1 : open(path, O_RDWR);
  return file < 0 ? nullptr
                  : static_cast<char*>(mmap(nullptr, COUNT, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0));
}();
inline bool is(int id) {
  if (reached != nullptr) {
    reached[id] = 1;
  }
  return id == chosen;
}
inline bool flip(int id, bool value) { return is(id) != value; }
}  // namespace mutants
"""

# Mutants that no command file can tell from the program, by words of what is told of them, in their order.
INTERNAL = "guards against a programming error"
BY_TAG = "the tag refuses the value before the rule is asked"
BY_CHECKER = "chooses among the words of kcf check, which tests/check/faults.txt holds"
BY_BASE = "the base validation misses the tag or block, and the rule is not asked"
SURVIVORS = {
    "IRmixtr.cpp: ASSERT": INTERNAL,
    "IRsoildef.cpp: ASSERT": INTERNAL,
    "IRbndr1d.cpp: ASSERT": INTERNAL,
    "IRcalc1d.cpp: ... block could be found": "there is always a domain and a region above",
    "IRfriction1d.cpp: ... You are using 'varlen'": BY_TAG,
    'IRfriction1d.cpp: geometry->hasTag("type")': "the tag has a default; its only value is none that the rule tells of",
    'IRgeom1d.cpp: source.hasTag("cross_section")': BY_CHECKER,
    "IRgeom1d.cpp: ... The grid format": BY_TAG,
    "IRparam1d.cpp: ASSERT": BY_TAG,
    "IRparam1d.cpp: ... SECTION_COMPUTATION block is used": BY_TAG,
    "IRparam1d.cpp: sect_comp_ptr != nullptr": BY_TAG,
    "IRcontroller.cpp: ASSERT": INTERNAL,
    "IRGravitationalTransport.cpp: ... 'index' and 'angle_failure_wetted'":
        "asks whether two lists are empty, which they never are",
    "IRGravitationalTransport.cpp: angle_failure_wetted.empty()": "as above",
    "IRGravitationalTransport.cpp: index.empty()": "as above",
    "IRoutput2d.cpp: ... No restart time has been chosen": BY_TAG,
    "IRspecout2d.cpp: ASSERT": INTERNAL,
    "IRvegetation2d.cpp: ASSERT": INTERNAL,
    "IRdomain.cpp: ASSERT": INTERNAL,
    "IRbndrSub.cpp: ... The boundary type": BY_TAG,
    "IRbndrSub.cpp: ... The boundary face": BY_TAG,
    "IRbndrSub.cpp: !isRange(from_to1)": BY_CHECKER,
    'IRkestSub.cpp: soil->hasTag("zone")': BY_CHECKER,
    "Rules.cpp: distance < leastDistance": BY_CHECKER,
    "IRbndrSub.cpp: isKnown": "sets a letter that no message and no document shows",
    "IRextsrcSub.cpp: ... No x- and y-values": BY_BASE,
    "IRmaterialSub.cpp: ... No SOIL was defined": BY_BASE,
    "IRzoneSub.cpp: material_index.empty()": "sets a list that no message and no document shows",
}


def blanked(text):
    """`text` with its literals and comments made of underscores, so that only code is seen."""
    pattern = r'R"\(.*?\)"|"(?:[^"\\\n]|\\.)*"|\'(?:[^\'\\\n]|\\.)+\'|//[^\n]*'
    return re.sub(pattern, lambda m: re.sub(r"[^\n]", "_", m[0]), text, flags=re.S)


def end_of(code, start, closers):
    """Where the expression that begins at `start` ends: at one of `closers` outside of all brackets."""
    depth = 0
    for i in range(start, len(code)):
        if depth == 0 and code[i] in closers:
            return i
        depth += (code[i] in "([{") - (code[i] in ")]}")
    raise ValueError(code[start:start + 80])


def at_top(code, start, end):
    """The code from `start` to `end` without what is in brackets."""
    depth, seen = 0, ""
    for i in range(start, end):
        depth -= code[i] in ")]}"
        seen += code[i] if depth == 0 else " "
        depth += code[i] in "([{"
    return seen


def chosen_by(code, start, end):
    """Where the condition ends that chooses between two values, if it does."""
    question = at_top(code, start, end).find("?")
    return end if question < 0 else start + question


def is_comparison(code, start, end):
    return re.search(r"==|!=|&&|\|\||<=|>=| < | > |^!", at_top(code, start, end)) is not None


def operands(code, start, end):
    """The operands of a condition at its top, as (start, end)."""
    depth, begin, found = 0, start, []
    for i in range(start, end):
        depth += (code[i] in "([{") - (code[i] in ")]}")
        if depth == 0 and code[i:i + 2] in ("&&", "||"):
            found.append((begin, i))
            begin = i + 2
    return found + [(begin, end)] if found else []


def instrument(text, file, mutants):
    """The source `text` with its mutants, which are added to `mutants`."""
    code = blanked(text)
    skipped = []
    for table in TABLES.finditer(code):
        opened = code.index("{", table.start())
        skipped.append((table.start(), end_of(code, opened + 1, "}")))
    insertions = []

    def add(kind, start, end, before, after):
        if any(a <= start < b for a, b in skipped):
            return
        line = text.count("\n", 0, start) + 1
        mutants.append({"file": file, "line": line, "kind": kind, "text": " ".join(text[start:end].split())})
        identity = len(mutants) - 1
        insertions.append((start, 1, -end, before.format(identity)))
        if after:
            insertions.append((end, 0, start, after))

    for found in MESSAGE.finditer(code):
        start = found.start(2)
        add("dropped", start, end_of(code, found.end(), ")") + 1, "if (!mutants::is({})) ", "")
    for found in CONDITION.finditer(code):
        start = found.end()
        end = end_of(code, start, ")" if found[0] == "if (" else ";")
        if found[0].startswith(("return", "bool")):
            end = chosen_by(code, start, end)
        if found[0].startswith("return") and not is_comparison(code, start, end):
            continue
        declared = re.match(r"(?:const )?auto\*? ?(?:const )?(\w+) =|const \w+(?:::\w+)*\* ?(?:const )?(\w+) =", code[start:end])
        if found[0] == "if (" and declared and ";" not in code[start:end]:
            name = declared[1] or declared[2]
            add("inverted", start, end, "", "")
            insertions.pop()
            insertions.append((end, 0, start, f"; mutants::flip({len(mutants) - 1}, static_cast<bool>({name}))"))
            continue
        if found[0] == "if (" and ";" in code[start:end]:
            start = code.rindex(";", start, end) + 1
        add("inverted", start, end, "mutants::flip({}, static_cast<bool>(", "))")
        for a, b in operands(code, start, end):
            while code[a].isspace():
                a += 1
            while code[b - 1].isspace():
                b -= 1
            add("inverted", a, b, "mutants::flip({}, static_cast<bool>(", "))")
    for where, _, _, added in sorted(insertions, key=lambda x: (x[0], x[1], x[2]), reverse=True):
        text = text[:where] + added + text[where:]
    return '#include "KESTparse/base/Mutant.h"\n' + text


def build():
    """Makes the program with all mutants. What did not change since the last time is not built again."""
    source = BUILD / "source"
    names = subprocess.run(["git", "ls-files", ":!tests", ":!fuzz", ":!benchmarks"], cwd=PROJECT,
                           capture_output=True, text=True, check=True).stdout.splitlines()
    mutants = []
    files = {}
    for name in names:
        content = (PROJECT / name).read_bytes()
        folder, file = os.path.split(name)
        is_rules = folder in [f"{SCHEMA}/{f}" for f in FOLDERS] or name == f"{SCHEMA}/framework/Rules.cpp"
        if is_rules and file.endswith(".cpp"):
            content = instrument(content.decode("utf-8"), file, mutants).encode("utf-8")
        files[name] = content
    header = HEADER.replace("COUNT", str(len(mutants)))
    files["KESTMD_libs/include/KESTparse/base/Mutant.h"] = header.encode("utf-8")
    for name, content in files.items():
        path = source / name
        path.parent.mkdir(parents=True, exist_ok=True)
        if not path.exists() or path.read_bytes() != content:
            path.write_bytes(content)
    for path in [p for p in source.rglob("*") if p.is_file() and str(p.relative_to(source)) not in files]:
        path.unlink()
    subprocess.run(["cmake", "-G", "Ninja", "-S", source, "-B", BUILD / "program", "-DCMAKE_CXX_FLAGS=-O1 -w",
                    "-DCMAKE_BUILD_TYPE=", "-DKESTRIX_TESTS=OFF", "-DKESTRIX_STATIC=OFF"], check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["cmake", "--build", BUILD / "program", "--target", "main-converter"], check=True,
                   stdout=subprocess.DEVNULL)
    return BUILD / "program/bin/main-converter", mutants


class ToldCase:
    """A case of tests/cases, which says what it expects."""

    def __init__(self, case, program, folder):
        self.case, self.program, self.folder = case, program, folder
        self.name = f"{case.topic}: {case.name}"

    def fails(self, environment):
        try:
            told = run_cases.run_setup(self.program, self.folder, self.case.setup, environment)
            return any(True for _ in self.case.faults(told))
        except (run_cases.Fault, ValueError, subprocess.TimeoutExpired):
            return True


class WholeCase:
    """A command file; all that its run prints is expected."""

    def __init__(self, path, program):
        self.path, self.program, self.expected = path, program, None
        self.name = str(path)

    def fails(self, environment):
        try:
            done = subprocess.run([self.program, self.path.name], cwd=self.path.parent, stdin=subprocess.DEVNULL,
                                  capture_output=True, timeout=60, check=False, env=environment)
        except subprocess.TimeoutExpired:
            return True
        told = (done.returncode, done.stdout, re.sub(rb",\s+in\s+file:.*", b"", done.stderr, flags=re.S))
        if self.expected is None:
            self.expected = told
        return told != self.expected


def whole_cases(source, folder, program, maker):
    subprocess.run(["cp", "-r", f"{source}/.", folder], check=True)
    for times in folder.rglob("*.times"):
        subprocess.run([maker, times, times.with_suffix("")], check=True)
    return [WholeCase(path, program) for path in sorted(folder.rglob("*.kcf"))]


def cases_of(folders, program, maker, target):
    """The cases of the tests, and the examples; or the command files below `folders`."""
    found = []
    for number, source in enumerate(folders or [PROJECT / "examples"]):
        (target / str(number)).mkdir()
        found += whole_cases(source, target / str(number), program, maker)
    if not folders:
        cases = run_cases.Cases(PROJECT / "tests/cases")
        cases.prepare()
        (target / "cases").mkdir()
        cases.make_files(target / "cases", maker)
        found += [ToldCase(case, program, target / "cases") for case in cases.cases]
    return found


def main():
    maker = Path(sys.argv[1]).resolve()
    BUILD.mkdir(parents=True, exist_ok=True)
    program, mutants = build()
    with tempfile.TemporaryDirectory() as temporary:
        folder = Path(temporary)
        reached_by = [[] for _ in mutants]
        environment = dict(os.environ)
        with tempfile.NamedTemporaryFile() as reached:
            reached.truncate(len(mutants))
            trace = mmap.mmap(reached.fileno(), len(mutants))
            for case in cases_of(sys.argv[2:], program, maker, folder):
                trace[:] = bytes(len(mutants))
                if case.fails(environment | {"KEST_MUTANTS_REACHED": reached.name}):
                    print("fails without any mutant:", case.name)
                    return 1
                for identity, is_reached in enumerate(trace[:]):
                    if is_reached:
                        reached_by[identity].append(case)
        survivors, caught = [], 0
        for identity, mutant in enumerate(mutants):
            changed = environment | {"KEST_MUTANT": str(identity)}
            # The cases that reach few mutants are about this one most likely.
            mutant["caught"] = next((c.name for c in reached_by[identity] if c.fails(changed)), None)
            mutant["reached"] = len(reached_by[identity])
            caught += mutant["caught"] is not None
            if mutant["caught"] is None:
                survivors.append(mutant)
    (BUILD / "mutants.json").write_text(json.dumps(mutants, indent=1), encoding="utf-8")
    unknown = 0
    excused = set()
    for mutant in survivors:
        where = f"{mutant['file']}: {mutant['text']}"
        reason = next((s for s in SURVIVORS if all(word in where for word in s.split(" ... "))), None)
        excused.add(reason)
        unknown += reason is None
        if reason is None:
            reach = "reached" if mutant["reached"] else "not reached"
            print(f"survives ({reach}), {mutant['kind']}: {mutant['file']}:{mutant['line']}: {mutant['text'][:150]}")
    for start in sorted(set(SURVIVORS) - excused):
        print("no such survivor any more:", start)
    print(f"{len(mutants)} mutants, {caught} caught, {len(survivors) - unknown} excused, {unknown} survive")
    return 1 if unknown or set(SURVIVORS) - excused else 0


if __name__ == "__main__":
    sys.exit(main())
