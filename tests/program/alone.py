#!/usr/bin/env python3
"""Shows that each program is all that it needs.

    alone.py CONVERTER KCF MAKE-RESULT-FILE EXAMPLE-FOLDER Linkage|EmptyRoot

EmptyRoot runs the programs in root folders that hold nothing else but their input. It ends with status 77
where the system lets nobody have such a root.
"""
import json
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

CONVERTER, KCF, MAKER, EXAMPLE = (Path(p).resolve() for p in sys.argv[1:5])
# Ways to run a program in the folder {}, of which a system may allow none.
WAYS = (["bwrap", "--unshare-all", "--bind", "{}", "/", "--chdir", "/"],
        ["chroot", "{}"],
        ["unshare", "--map-root-user", "chroot", "{}"])


def run(way, folder, program, *arguments):
    shutil.copy(program, folder)
    command = [word.format(folder) for word in way] + ["/" + program.name, *arguments]
    return subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, timeout=60, check=False)


def way_that_works():
    for way in WAYS:
        with tempfile.TemporaryDirectory() as folder:
            if shutil.which(way[0]) and run(way, folder, CONVERTER, "--version").returncode == 0:
                return way
    return None


class EmptyRoot(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        for name in ("setup.kcf", "g.2dm"):
            shutil.copy(EXAMPLE / name, self.folder)

    def converted(self):
        """The document, which must be the one that the program makes among all that is installed."""
        outside = subprocess.run([CONVERTER, "setup.kcf"], cwd=self.folder, capture_output=True, check=True)
        inside = run(WAY, self.folder, CONVERTER, "setup.kcf", "-o", "document.json")
        self.assertEqual((inside.returncode, inside.stdout, inside.stderr), (0, b"", outside.stderr))
        text = (self.folder / "document.json").read_bytes()
        self.assertEqual(text, outside.stdout)
        return json.loads(text)

    def test_worked_example(self):
        self.assertEqual(self.converted()["SETUP"]["simulation_name"], "demo")

    def test_restart_takes_the_last_time_of_the_result_file(self):
        (self.folder / "times").write_text("0\n100\n260.5\n")
        subprocess.run([MAKER, "times", "results.h5"], cwd=self.folder, check=True)
        setup = self.folder / "setup.kcf"
        initial = "INITIAL {\n type = continue\n file = results.h5\n"
        text = setup.read_text()
        self.assertEqual(text.count("INITIAL {"), 1)
        setup.write_text(text.replace("INITIAL {\n        type = dry\n", initial))
        region = self.converted()["SETUP"]["KESTMD"]["KESTPLANE_2D"][0]
        self.assertEqual(region["HYDRAULICS"]["INITIAL"]["restart_solution_time"], 260.5)

    def test_companion(self):
        for arguments, told in ((["template", "/PROJECT"], b"PROJECT {"), (["vocabulary"], b'"KESTPLANE_2D"'),
                                (["--licences"], b"HDF5")):
            done = run(WAY, self.folder, KCF, *arguments)
            self.assertEqual((done.returncode, done.stderr), (0, b""), arguments)
            self.assertIn(told, done.stdout)


class Linkage(unittest.TestCase):
    def test_no_interpreter_and_no_library_is_asked_for(self):
        for program in (CONVERTER, KCF):
            told = subprocess.run(["readelf", "--wide", "--program-headers", "--dynamic", program],
                                  capture_output=True, text=True, check=True).stdout
            self.assertIn("LOAD", told)
            self.assertNotIn("INTERP", told)
            self.assertNotIn("NEEDED", told)


if __name__ == "__main__":
    WAY = way_that_works()
    if WAY is None and sys.argv[5] == "EmptyRoot":
        print("neither bwrap nor chroot may be used here")
        sys.exit(77)
    unittest.main(argv=[sys.argv[0], "-v", sys.argv[5]])
