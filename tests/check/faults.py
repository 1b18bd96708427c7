#!/usr/bin/env python3
"""Holds what is told of faulty command files against what is kept.

    faults.py KCF MAIN-CONVERTER FAULTS SETUP EXAMPLES

SETUP is a folder with a command file setup.kcf that converts, EXAMPLES one of such folders. Each
case of FAULTS changes it and keeps what `kcf check` tells then:

    # name of the case
    ~ example that is changed in place of the setup; what is told of it unchanged is left out
    - lines of the setup, the first of this kind
    + lines in place of them; \\xNN is a byte
    < text up to which the file is kept
    > bytes in front of the file
    @ name of a file beside it, or of one in place of that of the setup; its lines follow
    | line of it; a last line '|' alone leaves the line before it without its end
    = severity line:column-line:column code: message, and below it help, related places, and the
      lines as the fix writes them; places in other files
      begin with the name of the file

The verdict must be that of the converter, and a file that is mended by all its fixes must convert.
KESTRIX_UPDATE_CASES=1 writes FAULTS anew; read the difference before you keep it.
"""
import difflib
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path


def raw(text):
    return re.sub(r"\\x([0-9a-f]{2})", lambda m: chr(int(m[1], 16)), text).encode("latin-1") \
        if "\\x" in text else text.encode()


class Case:
    def __init__(self, name):
        self.name = name
        self.recipe, self.expected = [], []

    def base(self, setup, examples):
        """The folder that is changed."""
        names = [line[2:] for line in self.recipe if line[0] == "~"]
        return examples / names[0] if names else setup

    def files(self):
        """The files of the recipe, with what they hold."""
        files, name = {}, None
        for line in self.recipe:
            if line[0] == "@":
                name = line[2:]
                files[name] = b""
            elif line == "|":
                files[name] = files[name][:-1]
            elif line[0] == "|":
                files[name] += raw(line[2:]) + b"\n"
        return files

    def text(self, base):
        """The setup with the changes of the recipe."""
        old, new, text = [], [], base

        def apply():
            nonlocal text
            if not old:
                return
            lines = text.split(b"\n")
            for i in range(len(lines) - len(old) + 1):
                if [line.strip() for line in lines[i:i + len(old)]] == [line.strip() for line in old]:
                    indentation = lines[i][:len(lines[i]) - len(lines[i].lstrip())]
                    lines[i:i + len(old)] = [indentation + line for line in new]
                    text = b"\n".join(lines)
                    break
            else:
                sys.exit(f"{self.name}: the setup has no line {old[0].decode()}")
            old.clear()
            new.clear()

        for line in self.recipe:
            sign, rest = line[0], line[2:]
            if sign == "-":
                if new:
                    apply()
                old.append(raw(rest))
            elif sign == "+":
                new.append(raw(rest))
            elif sign == "<":
                apply()
                text = text[:text.index(raw(rest)) + len(raw(rest))]
            elif sign == ">":
                apply()
                text = raw(rest) + text
        apply()
        return text


def read_cases(path):
    cases = []
    for line in path.read_text().splitlines():
        if line.startswith("# "):
            cases.append(Case(line[2:]))
        elif line.startswith("="):
            cases[-1].expected.append(line[2:])
        elif line:
            cases[-1].recipe.append(line)
    return cases


def check(kcf, folder):
    """What is told of each command file below `folder`, by its path."""
    done = subprocess.run([kcf, "check", "--format", "json", folder], capture_output=True, timeout=100,
                          check=False)
    if done.returncode not in (0, 1):
        sys.exit(f"kcf check ended with {done.returncode}: {done.stderr.decode(errors='replace')}")
    told = json.loads(done.stdout)
    return {Path(file["file"]).parent.name: (file["converts"],
                                             [d for d in told["diagnostics"]
                                              if Path(d["file"]).parent == Path(file["file"]).parent])
            for file in told["files"]}


def mended(text, diagnostics):
    edits = {(e["begin"], e["end"], e["text"]) for d in diagnostics for fix in d["fixes"][:1]
             for e in fix["edits"]}
    for begin, end, fresh in sorted(edits, reverse=True):
        text = text[:begin] + fresh.encode() + text[end:]
    return text


def shown(diagnostics, text):
    """The diagnostics of a file as lines."""
    lines = []

    def place_of(at):
        name = Path(at["file"]).name
        return ("" if name == "setup.kcf" else name + " ") + "{line}:{column}-{endLine}:{endColumn}".format(**at)

    for d in diagnostics:
        severity = d["severity"] + ("" if d["origin"] == "converter" else " (checker)")
        lines.append(f"{severity} {place_of(d)} {d['code']}: {d['message']}")
        lines.append(f"  help: {d['help']}")
        lines += [f"  {place_of(r)}: {r['message']}" for r in d["related"]]
        for fix in d["fixes"]:
            lines.append(f"  fix: {fix['message']}")
            after = mended(text, [{"fixes": [fix]}]).decode(errors="backslashreplace")
            before = text.decode(errors="backslashreplace")
            lines += ["    " + line for line in
                      difflib.unified_diff(before.split("\n"), after.split("\n"), n=0, lineterm="")
                      if line.startswith("+") and not line.startswith("+++")]
    return [line.rstrip() for line in lines]


def main():
    kcf, converter, faults, setup, examples = (Path(argument).resolve() for argument in sys.argv[1:6])
    update = os.environ.get("KESTRIX_UPDATE_CASES") == "1"
    cases = read_cases(faults)
    bases = [case.base(setup, examples) for case in cases]
    failures = []
    with tempfile.TemporaryDirectory() as temporary:
        def folder_of(kind, i):
            return Path(temporary) / kind / str(i)

        def write(kind, i, text):
            shutil.copytree(bases[i], folder_of(kind, i), ignore=shutil.ignore_patterns("faulty.*"))
            (folder_of(kind, i) / "setup.kcf").write_bytes(text)
            for name, content in cases[i].files().items():
                (folder_of(kind, i) / name).write_bytes(content)

        def converts(kind, i):
            return subprocess.run([converter, "-o", os.devnull, "setup.kcf"], cwd=folder_of(kind, i),
                                  capture_output=True, timeout=60, check=False).returncode == 0

        texts = [case.text((base / "setup.kcf").read_bytes()) for case, base in zip(cases, bases)]
        for i, text in enumerate(texts):
            write("faulty", i, text)
        told = check(kcf, Path(temporary) / "faulty")
        for base in set(bases):
            shutil.copytree(base, Path(temporary) / "base" / base.name,
                            ignore=shutil.ignore_patterns("faulty.*"))
        usual = {name: {(d["code"], d["message"]) for d in diagnostics} for name, (_, diagnostics)
                 in check(kcf, Path(temporary) / "base").items()}
        for i, (case, text) in enumerate(zip(cases, texts)):
            verdict, diagnostics = told[str(i)]
            diagnostics = [d for d in diagnostics
                           if (d["code"], d["message"]) not in usual[bases[i].name]]
            lines = shown(diagnostics, text)
            if verdict is not converts("faulty", i):
                failures.append(f"{case.name}: the checker says {verdict}, the converter does not")
            if lines != case.expected and not update:
                failures.append(f"{case.name}:\n" + "\n".join(
                    difflib.unified_diff(case.expected, lines, "kept", "told", lineterm="")))
            case.expected = lines
            errors = [d for d in diagnostics if d["severity"] == "error"]
            if errors and all(d["fixes"] for d in errors):
                write("mended", i, mended(text, diagnostics))
                if not converts("mended", i):
                    failures.append(f"{case.name}: what the fixes write does not convert")
    if update:
        faults.write_text("\n".join(
            "\n".join([f"# {case.name}", *case.recipe, *("= " + line for line in case.expected), ""])
            for case in cases))
    print("\n\n".join(failures))
    print(f"{len(cases)} faults, {len(failures)} failures")
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()
