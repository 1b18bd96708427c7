#!/usr/bin/env python3
"""Runs the converter as a user does and checks exit status, streams and files.

    run_program.py PROGRAM EXAMPLE-FOLDER
"""
import json
import os
import resource
import shutil
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

    def test_hostile_texts_end_at_once_with_one_message(self):
        many = 1000000
        unfinished = (b"End of file reached in an invalid state, which means that your input file "
                      b"is invalid. The problem occurred while parsing tag 'title' in file 'a.kcf' "
                      b"which started on line 1. Usually, this happens if some lists or blocks miss "
                      b"their closing brace '}' or ')'.")
        for text, message in {
                b"PROJECT {\n" * many:
                    b"Parse error near line 3, col 0: Block named 'PROJECT' is not a valid block name "
                    b"within block 'PROJECT'. There is no subblock.",
                b"}" * many: b"Parse error near line 1, col 2: Closing of the root block found.",
                b"{" * many:
                    b"Parse error near line 1, col 1: Found opening brace { with empty block name.",
                b"=" * many: b"Parse error near line 1, col 1: Found tag definition with empty tag name.",
                b"\0" * many:
                    b"Parse error near line 1, col 1: Found an invalid character '\0' while expecting a name.",
                b"\xff" * many:
                    b"Parse error near line 1, col 1: Found an invalid character '\xff' while expecting a name.",
                b"PROJECT { title = " + b"(" * many: unfinished,
                b"PROJECT { title = " + b"{" * many: unfinished,
                b"PROJECT { title = " + b"x" * 20 * many: unfinished,
                b"x" * 20 * many: b"There are some trailing characters at the end of the file! Fix it",
        }.items():
            done = self.convert(text)
            self.assertEqual(done.returncode, 1)
            # The console breaks long messages into lines.
            self.assertEqual(b" ".join(done.stderr.split()), b"ERROR -> " + message, text[:30])
            self.assertEqual(done.stdout, b"Simulation stopped due to error(s).\n")

    def test_long_texts_that_mean_nothing_change_nothing(self):
        text = (EXAMPLE / "setup.kcf").read_bytes()
        many = 1000000
        with tempfile.TemporaryDirectory() as folder:
            shutil.copytree(EXAMPLE, folder, dirs_exist_ok=True)
            for before in (b"\n" * many, b"/*" * many + b"*/", b"/*" + b"*" * 20 * many + b"/",
                           b"/**/ " * many, b"//" + b"/" * 20 * many + b"\n", b" \t\r\n" * many):
                (Path(folder) / "a.kcf").write_bytes(before + text)
                done = run("a.kcf", cwd=folder)
                self.assertEqual((done.returncode, done.stdout), (0, document()), before[:10])

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


class System(unittest.TestCase):
    """What the system refuses. The setup names a mesh and a series."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.folder.chmod(0o755)
        shutil.copytree(EXAMPLE, self.folder, dirs_exist_ok=True)
        self.text = (EXAMPLE / "setup.kcf").read_text()
        (self.folder / "loop").symlink_to("loop")
        os.mkfifo(self.folder / "pipe")

    def convert(self, *arguments, **options):
        return run(*arguments, cwd=self.folder, **options)

    def refuse_input(self, path, **options):
        done = self.convert(path, **options)
        self.assertEqual((done.returncode, done.stdout), (1, b"Simulation stopped due to error(s).\n"))
        self.assertEqual(done.stderr.decode(), f"\nERROR -> InputParser: reading from file '{path}' failed\n")

    def refuse_series(self, path, message, **options):
        series = f"HYDRAULICS {{\nBOUNDARY {{\ntype = hydrograph\nstring_name = s1\nfile = {path}\n}}\n"
        (self.folder / "a.kcf").write_text(self.text.replace("HYDRAULICS {\n", series))
        done = self.convert("a.kcf", **options)
        self.assertEqual((done.returncode, done.stdout), (1, b"Simulation stopped due to error(s).\n"))
        self.assertIn(message, " ".join(done.stderr.decode().split()))

    def refuse_mesh(self, path, **options):
        (self.folder / "a.kcf").write_text(self.text.replace("g.2dm", path))
        done = self.convert("a.kcf", **options)
        self.assertEqual((done.returncode, done.stdout), (-signal.SIGABRT, b"A fatal error occured!\n"))
        self.assertIn(f"\nEXCEPTION -> Cannot open the grid file '{path}'.", done.stderr.decode())

    def as_stranger(self):
        """Options that run the converter as a user to whom the test's files do not belong."""
        if os.geteuid() != 0:
            self.skipTest("only the super-user can become another one")
        stranger = {"user": 65534, "group": 65534, "extra_groups": []}
        try:
            self.convert("--version", **stranger)
        except OSError:
            self.skipTest("another user does not reach the converter")
        return stranger

    def test_loops_of_links(self):
        self.refuse_input("loop")
        self.refuse_series("loop", "Can not open file './/loop'.")
        self.refuse_mesh("loop")
        done = self.convert("setup.kcf", "-o", "loop")
        self.assertEqual((done.returncode, done.stdout), (0, document()))

    def test_what_fails_while_it_is_read(self):
        path = "/proc/self/mem"
        self.refuse_input(path)
        self.refuse_series(path, f"ERROR -> Error trying to access '{path}'")
        self.refuse_mesh(path)

    def test_pipes_carry_the_command_file_and_the_document_but_no_data(self):
        self.refuse_series("pipe", "Can not open file './/pipe'.")
        self.refuse_mesh("pipe")
        for name in ("input", "output"):
            os.mkfifo(self.folder / name)
        with subprocess.Popen(["cp", "setup.kcf", "input"], cwd=self.folder), \
                subprocess.Popen(["cat", "output"], cwd=self.folder, stdout=subprocess.PIPE) as reader:
            done = self.convert("input", "-o", "output")
            self.assertEqual((done.returncode, done.stdout), (0, b""))
            self.assertEqual(reader.stdout.read(), document())

    def test_an_interrupted_read_goes_on(self):
        os.mkfifo(self.folder / "input")
        with subprocess.Popen([PROGRAM, "input"], cwd=self.folder, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL) as converter:
            with open(self.folder / "input", "w") as writer:
                for half in (self.text[:400], self.text[400:]):
                    writer.write(half)
                    writer.flush()
                    converter.send_signal(signal.SIGSTOP)
                    converter.send_signal(signal.SIGCONT)
            self.assertEqual(converter.stdout.read(), document())
        self.assertEqual(converter.returncode, 0)

    def test_files_without_permission(self):
        stranger = self.as_stranger()
        for name in ("secret", "kept.json"):
            (self.folder / name).write_text("1 2\n")
            (self.folder / name).chmod(0o600)
        self.refuse_input("secret", **stranger)
        self.refuse_series("secret", "Can not open file './/secret'.", **stranger)
        self.refuse_mesh("secret", **stranger)
        # The folder is the super-user's, too.
        for target in ("new.json", "kept.json"):
            done = self.convert("setup.kcf", "-o", target, **stranger)
            self.assertEqual((done.returncode, done.stdout), (0, document()))
        self.assertFalse((self.folder / "new.json").exists())
        self.assertEqual((self.folder / "kept.json").read_text(), "1 2\n")

    def test_the_limit_of_memory(self):
        if b"__asan_init" in PROGRAM.read_bytes():
            self.skipTest("the sanitizer takes more memory than any limit that a setup would meet")
        kept = self.folder / "kept.json"
        kept.write_text("kept")
        (self.folder / "a.kcf").write_bytes(b" " * 50000000 + self.text.encode())
        limit = 40000000
        done = self.convert("a.kcf", "-o", kept,
                            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (limit, limit)))
        self.assertEqual((done.returncode, done.stdout), (1, b"Simulation stopped due to error(s).\n"))
        self.assertEqual(done.stderr, b"\nERROR -> There is not enough memory to convert the input file\n")
        self.assertEqual(kept.read_text(), "kept")

    def test_the_limit_of_file_sizes(self):
        limit = 1000
        done = self.convert("setup.kcf", "-o", "a.json",
                            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit)))
        self.assertEqual(done.returncode, 1)
        self.assertTrue(done.stderr.endswith(b"\nERROR -> Writing the JSON document to 'a.json' failed\n"))


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], "-v"])
