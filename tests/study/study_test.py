#!/usr/bin/env python3
"""Runs the study of the examples with the engines that docs/studies.md shows.

    study_test.py KCF CONVERTER PROJECT
"""
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

KCF, CONVERTER, PROJECT = (Path(p).resolve() for p in sys.argv[1:4])
STUDY = PROJECT / "examples/study"
SETUP = PROJECT / "examples/river-reach"
TABLE = "run,HYDRAULICS/FRICTION/default_friction\n" + "".join(f"r{i},{20 + i}\n" for i in range(9))


class Study(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.environment = {**os.environ, "HOME": folder.name, "PATH": f"{KCF.parent}:{CONVERTER.parent}:{os.environ['PATH']}"}

    def run_here(self, *command, **environment):
        return subprocess.run(command, cwd=self.folder, env={**self.environment, **environment}, capture_output=True, text=True,
                              timeout=1400, check=False)

    def friction(self, document):
        region = json.loads(document.read_text())["SETUP"]["KESTMD"]["KESTPLANE_2D"][0]["HYDRAULICS"]
        slope = next(b["slope"] for b in region["BOUNDARY"] if b.get("name") == "flood")
        return region["FRICTION"]["default_friction"], slope

    def test_snakemake_makes_checks_and_converts_a_thousand_setups(self):
        command = ["snakemake", "-s", STUDY / "Snakefile", "-d", "study", "--cores", "all"]
        done = self.run_here(*command)
        self.assertEqual(done.returncode, 0, done.stderr[-3000:])
        documents = {p.stem: p for p in (self.folder / "study/documents").rglob("*.json")}
        self.assertEqual(len(documents), 1000)
        for name, path in documents.items():
            friction, slope = re.fullmatch(r"k(\d+)_s([\d.]+)", name).groups()
            self.assertEqual(self.friction(path)[0], float(friction))
            self.assertAlmostEqual(self.friction(path)[1], float(slope))
        self.assertIn("Nothing to be done", self.run_here(*command).stderr)

    def test_snakemake_ends_at_a_wrong_setup(self):
        shutil.copytree(SETUP, self.folder / "reach")
        setup = self.folder / "reach/setup.kcf"
        setup.write_text(setup.read_text().replace("simulation_scheme = exp", "simulation_scheme = expp"))
        done = self.run_here("snakemake", "-s", STUDY / "Snakefile", "-d", "study", "--cores", "1", "--config", f"setup={setup}", "batches=100",
                             "--", "checked/7")
        self.assertNotEqual(done.returncode, 0)
        self.assertRegex(done.stderr, "10 errors, [0-9]+ warnings in 10 files")
        self.assertIn("error[not-a-choice]: 'expp' is none of the choices", (self.folder / "study/checked/7.txt").read_text())
        self.assertFalse((self.folder / "study/checked/7").exists())

    def test_the_other_ways(self):
        shutil.copytree(SETUP, self.folder, dirs_exist_ok=True)
        (self.folder / "runs.csv").write_text(TABLE)
        text = (PROJECT / "docs/studies.md").read_text()
        commands = next(block for block in re.findall(r"(?:^    .*\n)+", text, flags=re.M) if "parallel" in block)
        done = self.run_here("bash", "-ec", "\n".join(line[4:] for line in commands.splitlines()))
        self.assertEqual(done.returncode, 0, done.stderr)
        for i in range(9):
            self.assertEqual(self.friction(self.folder / f"runs/r{i}/setup.json")[0], 20 + i)
        shutil.rmtree(self.folder / "runs")
        for task in range(4):
            done = self.run_here(STUDY / "array.sh", "setup.kcf", "runs.csv", SLURM_ARRAY_TASK_ID=str(task), SLURM_ARRAY_TASK_COUNT="4")
            self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(sorted(self.friction(p)[0] for p in self.folder.glob("runs/*/*/setup.json")), [20.0 + i for i in range(9)])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
