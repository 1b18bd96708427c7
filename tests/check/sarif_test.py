#!/usr/bin/env python3
"""Holds the log of `kcf check` against the validator of its format, with the rules of code hosts.

    sarif_test.py KCF PROJECT

The validator comes from npm; scripts/install-npm fetches it once.
"""
import json
import re
import subprocess
import sys
import tempfile
from pathlib import Path

KCF, PROJECT = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
PACKAGE = "@microsoft/sarif-multitool@5"
MESH = "MESH2D\nE3T 1 1 2 9 1\nND 1 0 0 0\nND 2 1 0 0\nND 2 5 5 5\nNS 1 -2 s1\n"


def write_setups(folder):
    """Faulty setups: of syntax and of rules, with fixes, and faults within a mesh."""
    setup = (PROJECT / "examples/first-region/setup.kcf").read_text()
    (folder / "a folder").mkdir()
    (folder / "a folder" / "\u00fc.kcf").write_text("PROJECT {\n  titel = demo\n}\nDOMAIN {\n  x = 9,81\n}\n")
    (folder / "mesh.kcf").write_text(setup)
    (folder / "g.2dm").write_text(MESH)
    (folder / "faulty.kcf").write_bytes((PROJECT / "examples/linked-regions/faulty.kcf").read_bytes())


def main():
    package = subprocess.run([PROJECT / "scripts/install-npm", PACKAGE], check=True, capture_output=True,
                             text=True, timeout=600).stdout.strip()
    validator = Path(f"{package}-linux/Sarif.Multitool")
    with tempfile.TemporaryDirectory() as temporary:
        folder = Path(temporary)
        write_setups(folder)
        log = folder / "kcf.sarif"
        with log.open("wb") as out:
            subprocess.run([KCF, "check", "--format", "sarif", "."], cwd=folder, stdout=out, check=False, timeout=60)
        results = json.loads(log.read_text())["runs"][0]["results"]
        kinds = [sum(key in result for result in results) for key in ("fixes", "relatedLocations", "partialFingerprints")]
        if not all(kinds):
            sys.exit(f"the log holds no fixes, related places or fingerprints: {kinds}")
        done = subprocess.run([validator, "validate", "--rule-kind", "Sarif;Ghas", log], capture_output=True,
                              text=True, timeout=300, check=False)
    faults = re.findall(r".*: error .*", done.stdout)
    print(done.stdout, done.stderr)
    if faults or done.returncode != 0 or "Analysis completed successfully" not in done.stdout:
        sys.exit(f"{len(faults)} errors in the log")


if __name__ == "__main__":
    main()
