#!/usr/bin/env python3
"""Runs cases that are told as differences over base setups.

    run_cases.py CASES-FOLDER CONVERTER MAKE-RESULT-FILE [TOPIC...]     run and compare
    run_cases.py CASES-FOLDER write TARGET MAKE-RESULT-FILE             write the cases out as files

A topic is a file TOPIC.cases; its cases are differences over bases, which are command files
(bases/NAME.kcf) or differences themselves (`base NAME: OTHER`). docs/tests.md tells the form. A written
case is TARGET/TOPIC/CASE.kcf, beside the files that it names.
"""
import copy
import json
import re
import shutil
import subprocess
import sys
import tempfile
from collections import Counter
from pathlib import Path

TIME_LIMIT = 60
PASSED = "Input file has been successfully parsed and passed preliminary validation"
# Blocks that do not stand in a file.
WITHOUT_LINE = ("KESTRIX",)
FATAL, STOPPED = "A fatal error occured!\n", "Simulation stopped due to error(s).\n"
EXPECTATION = re.compile(r"(?P<what>[A-Z][\w/\[\]]*(?: \w+)?) (?P<severity>error|warning): (?P<text>.*)"
                         r"|(?P<end>stops|aborts|throws|logs error|logs warning|counts): (?P<told>.*)"
                         r"|gives (?P<path>\S+) = (?P<value>.*)|gives no (?P<absent>\S+)|(?P<converts>converts)")


class Fault(Exception):
    """What is wrong with a file of cases."""


class Block:
    """A block of a command file: tags as [name, value], and blocks, in their order."""

    def __init__(self, name):
        self.name, self.items, self.line = name, [], 0

    def blocks(self, name=None):
        return [x for x in self.items if isinstance(x, Block) and name in (None, x.name)]

    def tags(self, name=None):
        return [x for x in self.items if isinstance(x, list) and name in (None, x[0])]

    def lines(self, depth=0, number=None):
        """The text as lines; `number` is a list with the number of lines so far."""
        number = number if number is not None else [0]
        for item in self.items:
            number[0] += 1
            if isinstance(item, Block):
                item.line = number[0]
                yield "  " * depth + item.name + " {"
                yield from item.lines(depth + 1, number)
                number[0] += 1
                yield "  " * depth + "}"
            else:
                yield "  " * depth + f"{item[0]} = {item[1]}"

    def text(self):
        return "".join(line + "\n" for line in self.lines())

    def find(self, path, create=False):
        """The block at `path`; with `create`, the last name may be new."""
        block = self
        names = [name for name in path.split("/") if name]
        for part in names:
            name, index = re.fullmatch(r"(\w+)(?:\[(\d+)\])?", part).groups()
            found = block.blocks(name)
            if not found and create and index is None:
                found = [Block(name)]
                block.items.append(found[0])
            if index is None and len(found) > 1:
                raise Fault(f"{path}: there are {len(found)} of {name}")
            if not found or int(index or 1) > len(found):
                raise Fault(f"{path}: there is no {part}")
            block = found[int(index or 1) - 1]
        return block

    def walk(self, path=()):
        for block in self.blocks():
            like = self.blocks(block.name)
            here = path + ((block.name, like.index(block) + 1, len(like)),)
            yield here, block
            yield from block.walk(here)


def parse_setup(text):
    root = Block("")
    open_blocks = [root]
    for line in text.splitlines():
        line = re.sub(r"//.*", "", line).strip()
        if line.endswith("{"):
            open_blocks[-1].items.append(Block(line[:-1].strip()))
            open_blocks.append(open_blocks[-1].items[-1])
        elif line == "}":
            open_blocks.pop()
        elif line:
            name, value = line.split("=", 1)
            open_blocks[-1].items.append([name.strip(), value.strip()])
    return root


class Setup:
    """A command file, and the files beside it that no folder holds."""

    def __init__(self, root, start):
        self.root, self.start, self.files = root, start, {}

    def copy(self):
        return copy.deepcopy(self)

    def whole_path(self, path):
        return path if path.startswith("/") else f"{self.start}/{path}"

    def edit(self, block, lines):
        """Applies `lines`, as (indent, text), to `block`, or to the start where there is none."""
        while lines:
            indent, line = lines.pop(0)
            below = []
            while lines and lines[0][0] > indent:
                below.append(lines.pop(0))
            self.edit_one(block, line, below)

    def at(self, block, path, create=False):
        return block.find(path, create) if block else self.root.find(self.whole_path(path), create)

    def edit_one(self, block, line, below):
        if found := re.fullmatch(r"file (\S+)", line):
            indent = min((i for i, _ in below), default=0)
            self.files[found[1]] = "".join(" " * (i - indent) + text + "\n" for i, text in below)
            return
        sign, line = (line[0], line[2:]) if line[:2] in ("+ ", "- ") else ("", line)
        if found := re.fullmatch(r"(\S+) \{ ?(.*?) ?\}", line):
            line, below = found[1], [(1, text) for text in found[2].split("; ")]
        path, _, value = line.partition(" = ") if " = " in line else line.partition(" =")
        above, _, last = path.rpartition("/")
        above = "/" if path.startswith("/") and not above else above
        if re.match(r"[a-z]|CFL|B\b", last):
            parent = self.at(block, above) if above or not block else block
            if sign == "-":
                if not parent.tags(last):
                    raise Fault(f"there is no tag {path}")
                parent.items = [x for x in parent.items if not (isinstance(x, list) and x[0] == last)]
            elif "=" not in line:
                raise Fault(f"'{line}' is no difference")
            elif sign == "+" or not parent.tags(last):
                place = len(parent.tags()) if not parent.blocks() else parent.items.index(parent.blocks()[0])
                parent.items.insert(place, [last, value])
            else:
                parent.tags(last)[0][1] = value
            return
        if sign == "-":
            doomed = self.at(block, path)
            parent = self.at(block, above) if above or not block else block
            parent.items = [x for x in parent.items if x is not doomed]
            return
        if sign == "+":
            parent = self.at(block, above, create=True) if above or not block else block
            parent.items.append(Block(last))
            target = parent.items[-1]
        else:
            target = self.at(block, path, create=True)
        self.edit(target, below)


class Case:
    def __init__(self, topic, name, line):
        self.topic, self.name, self.line = topic, name, line
        self.edits, self.expected, self.setup, self.base = [], [], None, None

    def __str__(self):
        return f"{self.topic}.cases:{self.line}: {self.name}"

    def file_name(self):
        return re.sub(r"\W+", "-", self.name).strip("-") + ".kcf"

    def faults(self, told):
        """How what was told differs from what the case says."""
        known = list(self.setup.root.walk())
        expected, values, end = Counter(), [], told.end
        said = {"stops": None, "aborts": None, "throws": None, "counts": None}
        for match in self.expected:
            if match["severity"]:
                what, _, tag = match["what"].partition(" ")
                expected[(str(place(known, what)), tag, match["severity"], plain(match["text"]))] += 1
            elif match["end"] and match["end"].startswith("logs"):
                expected[("", "", match["end"], plain(match["told"]))] += 1
            elif match["end"]:
                said[match["end"]] = plain(match["told"])
            elif match["path"] or match["absent"]:
                values.append(match)
        heard = Counter()
        for message in told.messages:
            heard[(str(told.place(known, message)), message["tag"], message["severity"], message["text"])] += 1
        for key, count in (heard - expected).items():
            yield "told: " + line_of(known, key) + (f" ({count} times)" if count > 1 else "")
        for key, count in (expected - heard).items():
            yield "not told: " + line_of(known, key) + (f" ({count} times)" if count > 1 else "")
        counts = said.pop("counts")
        number = {s: sum(n for k, n in expected.items() if k[2] == s) for s in ("warning", "error")}
        counts = counts or "{warning} warnings, {error} errors".format(**number)
        if counts != "{} warnings, {} errors".format(*told.counts):
            yield "counts: {} warnings, {} errors".format(*told.counts)
        ends = [(how, text) for how, text in said.items() if text is not None]
        if not ends:
            converts = values or not number["error"] or any(match["converts"] for match in self.expected)
            ends = [("converts", "")] if converts else [("reports", "")]
        if [end] != ends:
            yield "ends: {}: {}".format(*end)
        for match in values:
            if end[0] == "converts":
                yield from self.value_faults(match, told.document)

    def value_faults(self, match, document):
        path = self.setup.whole_path(match["path"] or match["absent"]).strip("/")
        if match["absent"]:
            if look_up(document, path) is not None:
                yield f"gives {match['absent']}"
            return
        try:
            value = json.loads(match["value"])
        except json.JSONDecodeError:
            value = match["value"]
        found = look_up(document, path)
        if found != value:
            yield f"gives {match['path']} = {json.dumps(found)}"


def look_up(document, path):
    """The value at `path` in the document; null when there is none. A repeatable block stands for its
    first one."""
    value = document["SETUP"]
    parts = path.replace("PROJECT/title", "simulation_name").replace("DOMAIN", "KESTMD", 1).split("/")
    for depth, part in enumerate(parts):
        name, index = re.fullmatch(r"(\w+)(?:\[(\d+)\])?", part).groups()
        value = value.get(name) if isinstance(value, dict) else None
        if isinstance(value, list) and (index or depth + 1 < len(parts)):
            value = value[int(index or 1) - 1] if int(index or 1) <= len(value) else None
    return value


def plain(text):
    """A text as told: a `$` at the end shows that a blank stands there."""
    text = text[:-1] if text.endswith(" $") else text
    return text.replace("\\n", "\n").replace("\\t", "\t")


def shown(text):
    text = text.replace("\n", "\\n").replace("\t", "\\t")
    return text + "$" if text.endswith(" ") else text


def place(known, what):
    """The place of the block that `what`, the end of a path, names."""
    if what in WITHOUT_LINE:
        return what
    wanted = [re.fullmatch(r"(\w+)(?:\[(\d+)\])?", part).groups() for part in what.split("/")]
    found = [path for path, _ in known if len(path) >= len(wanted) and all(
        name == n and (index is None or int(index) == i) for (name, index), (n, i, _) in zip(wanted[::-1], path[::-1]))]
    if len(found) != 1:
        raise Fault(f"{what} names {len(found)} blocks")
    return found[0]


def name_of(known, where):
    """The shortest end of a path that names only the block at `where`."""
    for length in range(1, len(where) + 1):
        what = "/".join(n if count == 1 else f"{n}[{i}]" for n, i, count in where[-length:])
        try:
            if place(known, what) == where:
                return what
        except Fault:
            pass
    return "/".join(n for n, _, _ in where)


def line_of(known, key):
    where, tag, severity, text = key
    if severity.startswith("logs"):
        return f"{severity}: {shown(text)}"
    found = [path for path, _ in known if str(path) == where]
    what = name_of(known, found[0]) if found else where
    return f"{what}{' ' if tag else ''}{tag} {severity}: {shown(text)}"


class Told:
    """What a run told, taken apart."""

    HEADER = re.compile(r"Block-(Error|Warning)s? in Block (\w+)(?: \(on line (\d+) in file '[^']*'\))?:"
                        r"|Tag-(Error|Warning)s?  ?in (.+?) from Block (\w+) \(on line (\d+) in file '[^']*'\):")

    def __init__(self, done):
        self.messages, self.counts, self.end, self.document = [], (0, 0), None, None
        text = done.stderr.decode("utf-8", "replace").replace("\n   * ", "\0").replace("\n   ", "")
        entries = re.split(r"(?:^|\n)(?=WARNING -> |ERROR -> |EXCEPTION -> |Input file has |terminate )", text)
        stdout = done.stdout.decode("utf-8", "replace")
        exceptions = []
        for entry in entries:
            if found := re.match(r"Input file has (\d+) warnings? and (\d+) errors?", entry):
                self.counts = (int(found[1]), int(found[2]))
            elif entry.startswith("EXCEPTION -> "):
                exceptions.append(re.sub(r",\s+in\s+file:\s.*", "", entry[len("EXCEPTION -> "):], flags=re.S))
            elif entry.startswith("terminate "):
                self.end = ("throws", "a text" if "basic_string" in entry else entry)
            elif self.HEADER.search(entry):
                self.take_report(entry)
            elif entry.startswith("ERROR -> ") and done.returncode == 1:
                self.end = ("stops", re.sub(r"^Parse error near line \d+, col \d+: ", "", entry[len("ERROR -> "):].strip("\n")))
            elif entry.strip() not in ("", PASSED):
                severity = entry.split(" ", 1)[0].lower()
                self.messages.append({"severity": f"logs {severity}", "tag": "", "text": entry.partition("-> ")[2].strip("\n"), "line": None})
        if done.returncode == 0 and not exceptions:
            self.end = ("converts", "")
            self.document = json.loads(stdout[stdout.index("{\n"):])
        elif exceptions == ["Parsing the input file failed."]:
            self.end = ("reports", "")
        elif exceptions:
            self.end = ("aborts", exceptions[0])
        status = {"converts": 0, "stops": 1}.get(self.end and self.end[0], -6)
        last = {"converts": "}\n", "stops": STOPPED, "throws": ""}.get(self.end and self.end[0], FATAL)
        if self.end is None or done.returncode != status or not stdout.endswith(last):
            self.end = ("breaks", f"status {done.returncode}, {text!r}")

    def take_report(self, entry):
        found = list(self.HEADER.finditer(entry))
        for match, following in zip(found, found[1:] + [None]):
            block, tag, line = (match[2], "", match[3]) if match[1] else (match[6], match[5], match[7])
            severity = (match[1] or match[4]).lower()
            items = entry[match.end():following.start() if following else len(entry)].strip("\n").split("\0")
            for text in items[1:]:
                self.messages.append({"block": block, "tag": tag, "line": int(line or 0), "severity": severity, "text": text.rstrip("\n")})

    @staticmethod
    def place(known, message):
        if message["line"] is None:
            return ""
        if message["line"] == 0:
            return message["block"]
        return next((path for path, block in known if block.line + 1 == message["line"] and block.name == message["block"]),
                    f"{message['block']} on line {message['line']}")


class Cases:
    """All cases of a folder."""

    def __init__(self, folder, topics=()):
        self.folder, self.bases, self.cases, self.used = folder, {}, [], set()
        for path in sorted((folder / "bases").glob("*.kcf")):
            text = path.read_text(encoding="utf-8")
            start = re.match(r"// Paths begin at (\S+)\.", text)
            self.bases[path.stem] = Setup(parse_setup(text), start[1])
        for path in [folder / "bases" / "bases.cases", *sorted(folder.glob("*.cases"))]:
            if path.exists() and (path.stem == "bases" or not topics or path.stem in topics):
                self.read(path)

    def read(self, path):
        base, case = None, None
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            text = line.strip(" ") if not line.endswith(" $") else line.lstrip(" ")
            indent = len(line) - len(line.lstrip(" "))
            if not text or text.startswith("//"):
                continue
            if indent == 0:
                word, _, rest = text.partition(" ")
                name, _, other = rest.partition(": ")
                if word == "base" and not other:
                    base, case = rest, None
                    if base not in self.bases:
                        raise Fault(f"{path.name}:{number}: there is no base {base}")
                elif word == "base":
                    case = Case(path.stem, name, number)
                    case.base = other
                    self.bases[name] = case
                elif word == "case":
                    case = Case(path.stem, rest, number)
                    case.base = base
                    self.cases.append(case)
                else:
                    raise Fault(f"{path.name}:{number}: '{text}' begins nothing")
                continue
            match = EXPECTATION.fullmatch(text) if indent == 2 else None
            if match:
                case.expected.append(match)
            else:
                case.edits.append((indent, text))

    def base(self, name):
        base = self.bases[name]
        self.used.add(name)
        if isinstance(base, Case):
            self.bases[name] = self.made(base)
        return self.bases[name]

    def made(self, case):
        setup = self.base(case.base).copy()
        try:
            setup.edit(None, list(case.edits))
        except (Fault, AttributeError) as fault:
            raise Fault(f"{case}: {fault}") from fault
        return setup

    def prepare(self):
        """Makes the setups. Raises a fault for what no run is needed for."""
        names = set()
        for case in self.cases:
            case.setup = self.made(case)
            base = self.base(case.base)
            if case.setup.root.text() == base.root.text() and case.setup.files == base.files:
                raise Fault(f"{case}: changes nothing")
            if not case.expected:
                raise Fault(f"{case}: expects nothing")
            if (case.topic, case.file_name()) in names:
                raise Fault(f"{case}: there is another one of that name")
            names.add((case.topic, case.file_name()))

    def unused(self):
        texts = "\n".join(case.setup.root.text() for case in self.cases)
        for path in sorted((self.folder / "files").iterdir()):
            name = path.name.removesuffix(".times")
            if not re.search(rf"= {re.escape(name)}$", texts, re.M):
                yield f"no case names the file {path.name}"
        for name in self.bases.keys() - self.used:
            yield f"no case uses the base {name}"

    def make_files(self, target, maker):
        shutil.copytree(self.folder / "files", target, dirs_exist_ok=True)
        for times in target.glob("*.times"):
            subprocess.run([maker, times, times.with_suffix("")], check=True)
            times.unlink()

    def write(self, target, maker):
        for topic in sorted({case.topic for case in self.cases}):
            shutil.rmtree(target / topic, ignore_errors=True)
            self.make_files(target / topic, maker)
        for case in self.cases:
            for name, text in case.setup.files.items():
                written = target / case.topic / name
                if written.exists() and written.read_text(encoding="utf-8") != text:
                    raise Fault(f"{case}: there is another file {name}")
                written.write_text(text, encoding="utf-8")
            (target / case.topic / case.file_name()).write_text(case.setup.root.text(), encoding="utf-8")


def run_setup(program, folder, setup, environment=None):
    for name, text in setup.files.items():
        (folder / name).write_text(text, encoding="utf-8")
    (folder / "setup.kcf").write_text(setup.root.text(), encoding="utf-8")
    done = subprocess.run([program, "setup.kcf"], cwd=folder, stdin=subprocess.DEVNULL, capture_output=True,
                          timeout=TIME_LIMIT, check=False, env=environment)
    for name in setup.files:
        (folder / name).unlink()
    return Told(done)


def run_all(cases, program, maker):
    failed = list(cases.unused()) if cases.cases else ["there are no cases"]
    with tempfile.TemporaryDirectory() as temporary:
        folder = Path(temporary)
        cases.make_files(folder, maker)
        for name in sorted(cases.used):
            told = run_setup(program, folder, cases.base(name))
            if told.end[0] != "converts" or told.messages:
                failed.append(f"the base {name} reports: {told.end} {told.messages}")
        for case in cases.cases:
            faults = list(case.faults(run_setup(program, folder, case.setup)))
            if faults:
                failed.append("\n  ".join([str(case), *faults]))
    return failed


def main():
    folder, action = Path(sys.argv[1]), sys.argv[2]
    try:
        cases = Cases(folder, sys.argv[4:] if action != "write" else ())
        cases.prepare()
        if action == "write":
            cases.write(Path(sys.argv[3]), Path(sys.argv[4]).resolve())
            return 0
        failed = run_all(cases, Path(action).resolve(), Path(sys.argv[3]).resolve())
    except Fault as fault:
        print(fault)
        return 1
    for fault in failed:
        print(fault)
    print(f"{len(cases.cases)} cases, {len(failed)} faults")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
