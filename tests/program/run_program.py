#!/usr/bin/env python3
"""Runs the converter as a user does and checks exit status, streams and files.

    run_program.py PROGRAM EXAMPLE-FOLDER
"""
import json
import os
import signal
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROGRAM = Path(sys.argv[1]).resolve()
EXAMPLE = Path(sys.argv[2]).resolve()
SUMMARY = b"Input file has 1 warning and 0 errors"
PRINTED_TO_STDOUT_FAILED = b"\nERROR -> Writing the JSON document to standard output failed\n"


def run(*arguments, cwd=EXAMPLE, **options):
    options.setdefault("stdout", subprocess.PIPE)
    return subprocess.run([PROGRAM, *arguments], cwd=cwd, stdin=subprocess.DEVNULL,
                          stderr=subprocess.PIPE, timeout=60, check=False, **options)


def document():
    return run("setup.kcf").stdout


class CommandLine(unittest.TestCase):
    def test_wrong_use_is_told_and_ends_with_status_1(self):
        for arguments in ([], ["a", "b"], ["--nope", "a"], ["-o"]):
            done = run(*arguments)
            self.assertEqual(done.returncode, 1, arguments)
            self.assertTrue(done.stderr.startswith(b"PARSE ERROR:"), done.stderr)
            self.assertEqual(done.stdout, b"")
        self.assertIn(b"Required argument missing: kcf", run().stderr)

    def test_help_and_version(self):
        done = run("--help")
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        for text in (b"KESTRIX KCF to JSON converter", b"path to KCF file", b"path to JSON file",
                     b"-o <path>,  --output <path>"):
            self.assertIn(text, done.stdout)
        done = run("--version")
        self.assertEqual(done.returncode, 0)
        self.assertIn(b"version: 1.0", done.stdout)


class Output(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.target = self.folder / "out.json"

    def test_goes_to_the_named_file_alone(self):
        done = run("setup.kcf", "-o", self.target)
        self.assertEqual((done.returncode, done.stdout), (0, b""))
        self.assertTrue(done.stderr.startswith(SUMMARY))
        text = self.target.read_bytes()
        self.assertEqual(text, document())
        self.assertTrue(text.endswith(b"}\n") and not text.endswith(b"\n\n"))
        self.assertEqual(json.loads(text)["SETUP"]["simulation_name"], "demo")

    def test_goes_to_standard_output_when_the_file_cannot_be_opened(self):
        for target in (self.folder / "none" / "out.json", self.folder):
            done = run("setup.kcf", "-o", target)
            self.assertEqual((done.returncode, done.stdout), (0, document()))

    def test_is_not_touched_by_a_run_that_fails(self):
        self.target.write_text("kept")
        for faulty in ("PROJECT {\n}\n", "PROJECT {\n x = 1\n}\n"):
            setup = self.folder / "faulty.kcf"
            setup.write_text(faulty)
            done = run(setup, "-o", self.target)
            self.assertNotEqual(done.returncode, 0)
            self.assertEqual(self.target.read_text(), "kept")

    def test_a_document_that_cannot_be_written_whole_is_an_error(self):
        done = run("setup.kcf", "-o", "/dev/full")
        self.assertEqual(done.returncode, 1)
        self.assertTrue(done.stderr.endswith(b"\nERROR -> Writing the JSON document to '/dev/full' failed\n"))
        with open("/dev/full", "wb") as full:
            done = run("setup.kcf", stdout=full)
        self.assertEqual(done.returncode, 1)
        self.assertTrue(done.stderr.endswith(PRINTED_TO_STDOUT_FAILED), done.stderr)

    def test_a_closed_pipe_is_an_error(self):
        reader, writer = os.pipe()
        os.close(reader)
        with os.fdopen(writer, "wb") as pipe:
            done = run("setup.kcf", stdout=pipe)
        self.assertEqual(done.returncode, 1)
        self.assertTrue(done.stderr.endswith(PRINTED_TO_STDOUT_FAILED), done.stderr)


class Input(unittest.TestCase):
    def convert(self, text):
        with tempfile.TemporaryDirectory() as folder:
            (Path(folder) / "a.kcf").write_bytes(text)
            return run("a.kcf", cwd=folder)

    def test_unreadable_paths(self):
        for path in ("missing.kcf", "."):
            done = run(path)
            self.assertEqual(done.returncode, 1)
            self.assertEqual(done.stderr.decode(),
                             f"\nERROR -> InputParser: reading from file '{path}' failed\n")
            self.assertEqual(done.stdout, b"Simulation stopped due to error(s).\n")

    def test_empty_and_binary_files(self):
        done = self.convert(b"")
        self.assertEqual(done.returncode, -signal.SIGABRT)
        self.assertTrue(done.stderr.startswith(b"Input file has 0 warnings and 2 errors\nWARNING -> "))
        self.assertEqual(done.stdout, b"A fatal error occured!\n")
        done = self.convert(bytes(range(256)) * 1000)
        self.assertEqual(done.returncode, 1)
        self.assertEqual(done.stderr, b"\nERROR -> Parse error near line 1, col 1: Found an invalid character "
                                      b"'\0' while \n   expecting a name.\n")

    def test_invalid_utf8_ends_without_a_document(self):
        text = (EXAMPLE / "setup.kcf").read_bytes()
        output = b"OUTPUT {\nSPECIAL_OUTPUT {\ntype = avs_ucd\noutput_time_step = 1\nKESTextern = %s\n}\n"
        with tempfile.TemporaryDirectory() as folder:
            setup = Path(folder) / "a.kcf"
            setup.write_bytes(text.replace(b"OUTPUT {\n", output % b"\xff"))
            done = run(setup)
            self.assertEqual((done.returncode, done.stdout), (-signal.SIGABRT, b""))
            setup.write_bytes(text.replace(b"OUTPUT {\n", output % "\u00fc".encode()))
            self.assertIn('"KESTextern": "\u00fc"'.encode(), run(setup).stdout)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], "-v"])
