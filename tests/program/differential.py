#!/usr/bin/env python3
"""Checks each setup that converts against itself.

    differential.py CONVERTER KCF FOLDER...

For each command file under the folders that gives a document: an independent JSON parser reads it and
prints the same; the document written back as a command file gives the same document; comments, white
space and line ends change nothing; the defaults written out change nothing.
"""
import json
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

CONVERTER, REFERENCE = (Path(p).resolve() for p in sys.argv[1:3])
BLOCKS = {b["path"]: b for b in json.loads(subprocess.run([REFERENCE, "vocabulary"], capture_output=True, check=True).stdout)["blocks"]}
NOT_WRITTEN_BACK = {
    "strings-read-after-the-boundaries.kcf",  # is valid only in its own order of blocks
    "strings-read-before-the-report.kcf",
    "rules-repair-fractions-and-an-armour-that-is-too-small.kcf",  # nobody may write such a value
    "outputs-and-boundaries-that-pass.kcf",
}
UNWRITABLE = {"show gridlines"}  # a name with a blank: it only ever comes by its default


def convert(text, folder):
    setup, target = folder / "differential.kcf", folder / "differential.json"
    setup.write_bytes(text)
    target.unlink(missing_ok=True)
    subprocess.run([CONVERTER, setup.name, "-o", target.name], cwd=folder, capture_output=True, timeout=60, check=False)
    return target.read_text(encoding="utf-8") if target.exists() else None


def written(value):
    if isinstance(value, dict):
        return f"{value['tag']}:{written(value['list'])}"
    if isinstance(value, list):
        return "( " + " ".join(written(item) for item in value) + " )"
    return value if isinstance(value, str) else repr(value)


def written_list(values):
    """A list of plain items or of output values."""
    items = [v if not isinstance(v, dict) else v["value"] if v["accumulator"] == "none"
             else f"{v['accumulator']}[{v['value']}]" for v in values]
    return written(items)


def block_text(path, content):
    block = BLOCKS[path]
    lines = []
    for tag in block["tags"]:
        if tag["name"] not in content or tag["name"] in UNWRITABLE:
            continue
        value = content[tag["name"]]
        for each in value if tag["repeatable"] else [value]:
            lines.append(f"{tag['name']} = {written_list(each) if isinstance(each, list) else written(each)}")
    # The mesh comes first: rules on strings look at what was read of it.
    for name in block["subBlocks"]:
        child = f"{path.rstrip('/')}/{name}"
        if name in content:
            for each in content[name] if BLOCKS[child]["repeatable"] else [content[name]]:
                lines += [name + " {", *block_text(child, each), "}"]
    return lines


def back_to_text(document):
    setup = document["SETUP"]
    return "\n".join(["PROJECT {", f"title = {setup['simulation_name']}", "}", "DOMAIN {",
                      *block_text("/DOMAIN", setup["KESTMD"]), "}", ""]).encode()


def disguised(text):
    """The same setup with comments, other white space and other line ends."""
    lines = []
    for line in text.decode("utf-8").split("\n"):
        line = line.strip(" \t")
        if re.fullmatch(r"[A-Za-z_0-9]+ *\{", line):
            line = "/* block { */" + line.replace("{", "\t{ ")
        elif re.match(r"[A-Za-z_0-9]+ *= *\S", line) and "//" not in line and "/*" not in line:
            line = "\t " + line.replace("=", " \t=\t", 1) + "   // = { ) (" * (line.count("(") == line.count(")"))
        lines.append(line)
    return "\r\n".join(lines).encode("utf-8")


def check(setup, folder, faults):
    text = setup.read_bytes()
    printed = convert(text, folder)
    if printed is None:
        return False
    document = json.loads(printed)
    if json.dumps(document, indent=2, sort_keys=True, ensure_ascii=False) + "\n" != printed:
        faults.append(f"{setup}: another parser prints another document")
    # Defaults stand in the document, so writing it back gives each of them explicitly.
    variants = {"the disguised text": disguised(text)}
    if setup.name not in NOT_WRITTEN_BACK:
        variants["the document written back"] = back_to_text(document)
    for name, variant in variants.items():
        if convert(variant, folder) != printed:
            faults.append(f"{setup}: {name} gives another document")
    return True


def main():
    faults, checked = [], 0
    with tempfile.TemporaryDirectory() as temporary:
        for number, folder in enumerate(Path(p) for p in sys.argv[3:]):
            copy = Path(temporary) / str(number)
            shutil.copytree(folder, copy)
            for setup in sorted(copy.rglob("*.kcf")):
                checked += check(setup, setup.parent, faults)
    print("\n".join(faults))
    print(f"differential: {checked} setups checked, {len(faults)} faults")
    return 1 if faults or not checked else 0


if __name__ == "__main__":
    sys.exit(main())
