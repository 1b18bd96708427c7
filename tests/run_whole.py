#!/usr/bin/env python3
"""Runs the converter on the command files of a folder and compares what it says with what is kept.

    run_whole.py CONVERTER FOLDER

Each FOLDER/**/NAME.kcf is converted in a copy of its own folder, and exit status, standard error and
standard output must be, byte for byte, those of NAME.expected beside it. KESTRIX_UPDATE_CASES=1 writes the
NAME.expected anew; read the difference before you keep it. A command file without NAME.expected is a
failure, so that none is forgotten. What depends on the build (source line, version and time in the
report of an assertion) is left out of the comparison.
"""
import difflib
import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

ASSERTION = re.compile(
    rb",\s+in\s+file:\s+(\S+)\s+on\s+line\s+\d+,\s+Version:\s+\S+,\s+compiled\s+at:"
    rb"\s+\w+\s+\d+\s+\d+,\s+[\d:]+")
TIME_LIMIT = 60


def run(program, folder, command_file):
    done = subprocess.run([program, command_file.name], cwd=(folder / command_file).parent,
                          stdin=subprocess.DEVNULL, capture_output=True, timeout=TIME_LIMIT, check=False)
    errors = ASSERTION.sub(rb", <in \1>", done.stderr)
    return b"status %d\n--- standard error\n%s\n--- standard output\n%s" % (
        done.returncode, errors, done.stdout)


def main():
    program, folder = Path(sys.argv[1]).resolve(), Path(sys.argv[2])
    update = os.environ.get("KESTRIX_UPDATE_CASES") == "1"
    passed, failed = 0, 0
    with tempfile.TemporaryDirectory() as temporary:
        copy = Path(temporary) / "cases"
        shutil.copytree(folder, copy)
        for command_file in sorted(folder.rglob("*.kcf")):
            kept = command_file.with_suffix(".expected")
            told = run(program, copy, command_file.relative_to(folder))
            if update:
                kept.write_bytes(told)
            expected = kept.read_bytes() if kept.exists() else b""
            if told == expected:
                passed += 1
                continue
            failed += 1
            print(f"FAILED {command_file}")
            for line in difflib.unified_diff(expected.decode(errors="replace").splitlines(),
                                             told.decode(errors="replace").splitlines(),
                                             "expected", "told", lineterm=""):
                print(line)
    print(f"{folder.name}: {passed} passed, {failed} failed")
    return 1 if failed or not passed else 0


if __name__ == "__main__":
    sys.exit(main())
