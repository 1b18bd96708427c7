#!/usr/bin/env python3
"""Gives each verb of kcf what no one should: it must end as documented, tell it clearly, and lose nothing.

    hostile_test.py KCF CONVERTER EXAMPLES [RUNS]

RUNS is how many mutations each of the random tests makes.
"""
import functools
import json
import os
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "language-server"))
from client import Client, Refused, frame, place, span  # noqa: E402

KCF, CONVERTER, EXAMPLES = (Path(p).resolve() for p in sys.argv[1:4])
RUNS = int(sys.argv[4]) if len(sys.argv) > 4 else 30
IS_SANITIZED = b"__asan_init" in KCF.read_bytes()
SECONDS = 60 if IS_SANITIZED else 10
MEMORY = 1 << 30

SETUP = (EXAMPLES / "first-region" / "setup.kcf").read_bytes()
SYNTAX = "the text has faults of syntax, which kcf check tells"
NO_BLOCK = "the file has no block that 'title' could stand in; begin the path with DOMAIN or PROJECT to add what is missing"
UNCLOSED = "1:1: the block 'PROJECT' is never closed"

# A text; the first code of check; the first line of format behind the name, or None where it does its work;
# what set tells, or None.
TEXTS = {
    "empty": (b"", "missing-block", None, NO_BLOCK),
    "NULs": (b"\0" * 1000, "stray-text", f"1:1: '{40 * chr(0x2400)}...' is neither a block nor a tag", SYNTAX),
    "bytes that are no text": (b"\xff" * 1000000, "stray-text", f"1:1: '{40 * chr(0xfffd)}...' is neither a block nor a tag", SYNTAX),
    "UTF-16": (SETUP.decode().encode("utf-16"), "not-text", None, SYNTAX),
    "carriage returns alone": (SETUP.replace(b"\n", b"\r"), "foreign-line-ends", UNCLOSED, SYNTAX),
    "escape sequences": (b"PROJECT {\n  \x1b[2Jtitle = \x1b]0;x\x07\n}\n", "missing-block",
                         f"2:3: '{chr(0x241b)}[2Jtitle' is no name: a name has letters, digits, '_' and '-'", SYNTAX),
    "nested blocks": (b"PROJECT { " * 200000 + b"}" * 200000, "missing-block", None, None),
    "unclosed blocks": (b"DOMAIN {\n" * 2000, "missing-closing-brace", "1:1: the block 'DOMAIN' is never closed", SYNTAX),
    "closing braces": (b"}\n" * 5000, "stray-closing-brace", "1:1: this brace closes no block", SYNTAX),
    "a long line": (b"PROJECT { title = " + b"x" * 5000000 + b"\n}\n", "missing-block", None, None),
    "a long name": (b"x" * 1000000, "stray-text", f"1:1: '{40 * 'x'}...' is neither a block nor a tag", SYNTAX),
    "parentheses": (b"PROJECT { title = " + b"(" * 100000, "missing-closing-brace", UNCLOSED, SYNTAX),
    "equals signs": (b"=" * 100000, "missing-name", "1:1: there is no name in front of '='", SYNTAX),
    "comments on one line": (b"/*/" * 200000 + b"\n", "missing-block", None, NO_BLOCK),
    "a tag again and again": (b"PROJECT {\n" + b"title = a\n" * 5000 + b"}\n", "missing-block", None,
                              "there are 5000 tags 'title'; say which, such as title[1]"),
    "a misspelt tag again and again": (b"PROJECT {\n" + b"tilte = a\n" * 5000 + b"}\n", "missing-block", None, None),
    "a block again and again": (b"PROJECT {\n}\n" * 5000, "missing-block", None, "'title' may be one of several; name more of its path:"),
}

# A path, and what all verbs that read it tell.
PATHS = {
    "none.kcf": "does not exist",
    "none/x.kcf": "does not exist",
    "setup.kcf/x": "cannot be read: Not a directory",
    "loop": "cannot be read: Too many levels of symbolic links",
    "x" * 300: "cannot be read: File name too long",
    "/proc/self/mem": "cannot be read: Input/output error",
    "/dev/zero": "cannot be read: File too large",
    "secret": "cannot be read: Permission denied",
    "\x1b[2J": "does not exist",
}
# The verbs that read a command file or a document, with the status when they cannot.
READERS = {
    "check": (2, lambda path: ["check", path]),
    "check --fix": (2, lambda path: ["check", "--fix", path]),
    "format": (2, lambda path: ["format", path]),
    "set": (1, lambda path: ["set", path, "title=a"]),
    "diff": (2, lambda path: ["diff", path, "setup.kcf"]),
    "diff, the other": (2, lambda path: ["diff", "setup.kcf", path]),
    "from-json": (1, lambda path: ["from-json", path]),
    "table": (1, lambda path: ["set", "setup.kcf", "--table", path, "--into", "runs/{row}.kcf"]),
    "preview": (1, lambda path: ["preview", path, "-o", "page.html"]),
}
# The verbs that write a file or a folder.
WRITERS = {
    "set": ["set", "setup.kcf", "title=a", "-o"],
    "from-json": ["from-json", "good.json", "-o"],
    "preview": ["preview", "setup.kcf", "-o"],
    "table": ["set", "setup.kcf", "--table", "good.csv", "--into"],
}
FOLDER_WRITERS = {
    "template": ["template", "flood-2d", "-o"],
    "manual": ["manual", "-o"],
    "installation": ["installation-files", "--date", "2026-01-01", "--output"],
}
PRINTERS = [["check", "setup.kcf", "bad.kcf"], ["check", "--format", "json", "setup.kcf"], ["check", "--format", "sarif", "setup.kcf"],
            ["check", "--format", "github", "bad.kcf"], ["check", "--fix", "--diff", "bad.kcf"],
            ["format", "--diff", "bad.kcf"], ["format", "--check", "bad.kcf"], ["set", "setup.kcf", "title=a", "-o", "-"],
            ["diff", "setup.kcf", "other.kcf"], ["diff", "--format", "json", "setup.kcf", "other.kcf"],
            ["from-json", "good.json"], ["explain"], ["explain", "FRICTION"], ["template", "--list"], ["template", "PROJECT"],
            ["schema"], ["vocabulary"], ["--help"], ["--version"], ["--licences"], ["check", "--help"]]

# What follows "kcf: d.json: " or "kcf: 'd.json' ".
DOCUMENTS = {
    "": "is no JSON: ",
    "[]": "/: there must be an object, not array",
    "null": "/: there must be an object, not null",
    "[" * 100000 + "]" * 100000: "/: there must be an object, not array",
    "{\"a\":" * 100000 + "1" + "}" * 100000: "/a: a document has the key 'SETUP' alone",
    '{"SETUP": [' * 50000: "is no JSON: ",
    '{"SETUP": 1, "SETUP": {}}': "",
    '{"SETUP": {"simulation_name": 1, "KESTMD": {}}}': "/SETUP/simulation_name: there must be a text, not 1",
    '{"SETUP": {"simulation_name": "\\ud800", "KESTMD": {}}}': "is no JSON: ",
    '{"SETUP": {"simulation_name": "\\u0000", "KESTMD": {}}}': "/SETUP/simulation_name: 'title' is '\u2400'",
    '{"SETUP": {"simulation_name": "a\\n}", "KESTMD": {}}}': "/SETUP/simulation_name: no command file can spell \"a\\n}\"",
    '{"SETUP": {"simulation_name": "a", "KESTMD": {}, "\x1b[2J": 1}}': "is no JSON: ",
    '{"SETUP": {"simulation_name": "a", "KESTMD": {}, "\\u001b[2J": 1}}': "/SETUP/\u241b[2J: a setup has the keys 'KESTMD' and 'simulation_name' alone",
    '{"SETUP": {"simulation_name": "a", "KESTMD": 1e999}}': "is no JSON: ",
    '{"SETUP": {"simulation_name": "a", "KESTMD": {}}} x': "is no JSON: ",
    '{"SETUP": {"simulation_name": "' + "a" * 5000000 + '", "KESTMD": []}}': "/SETUP/KESTMD: there must be an object, not array",
}

# A table for `set`, and what is told of it.
TABLES = {
    b"": "it is empty; its first line must name the columns",
    b"\n\n\n": "it is empty; its first line must name the columns",
    b"title\n": "it has no rows below the names of its columns",
    b"title,author\na\n": "line 2: there are 1 fields for 2 columns",
    b"title\na,b\n": "line 2: there are 2 fields for 1 columns",
    b"title,title\na,b\n": "line 1: two columns are called 'title'",
    b"title,,author\na,b,c\n": "line 1: column 2 has no name",
    b'title\n"a\n': "line 2: the quote of a field is never closed",
    b'title\n"a"b\n': "line 2: text stands behind the closing quote of a field",
    b'title\na"b\n': "line 2: a quote stands within a field that does not begin with one",
    b"tilte\na\n": "the column 'tilte' is no path, and nothing names it as {tilte}: ",
    b"\x1b[2J\na\n": "the column '\u241b[2J' is no path, and nothing names it as {\u241b[2J}: ",
    b"title\na\0b\n": "it is no text",
    "title\na\n".encode("utf-16"): "it is no text",
    b"\xff" * 1000000: "it has no rows below the names of its columns",
    ",".join(f"c{i}" for i in range(100000)).encode() + b"\n" + b"," * 99999 + b"x\n": "the column 'c0' is no path, and nothing names it as {c0}: ",
    b'title\n"a\nb"\n': "line 2: ",
    b"title\n" + b"x" * 5000000 + b"\n" + b"a{\n" * 3: "line 3:",
}


def limited():
    resource.setrlimit(resource.RLIMIT_CPU, (SECONDS, SECONDS))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    if not IS_SANITIZED:
        # What a verb reserves for its threads is not what it takes, so that this is twice as much.
        resource.setrlimit(resource.RLIMIT_AS, (2 * MEMORY, 2 * MEMORY))


def run(*arguments, cwd, **options):
    if "input" not in options:
        options.setdefault("stdin", subprocess.DEVNULL)
    options.setdefault("stdout", subprocess.PIPE)
    return subprocess.run([KCF, *arguments], cwd=cwd, stderr=subprocess.PIPE, preexec_fn=limited, timeout=2 * SECONDS,
                          check=False, **options)


@functools.cache
def document(example):
    return subprocess.run([CONVERTER, "setup.kcf"], cwd=EXAMPLES / example, check=True, stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL).stdout


class Hostile(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.folder.chmod(0o755)
        shutil.copytree(EXAMPLES / "first-region", self.folder, dirs_exist_ok=True)
        (self.folder / "loop").symlink_to("loop")
        os.mkfifo(self.folder / "pipe")
        (self.folder / "good.csv").write_text("title\na\n")
        (self.folder / "good.json").write_bytes(document("first-region"))
        (self.folder / "bad.kcf").write_bytes(SETUP.replace(b"title", b"tilte ") + b"\n\n")
        (self.folder / "other.kcf").write_bytes(SETUP.replace(b"demo", b"other"))

    def held(self):
        """What the folder holds."""
        return {str(path.relative_to(self.folder)): path.read_bytes() if path.is_file() else None
                for path in sorted(self.folder.rglob("*"))}

    def run_kcf(self, *arguments, lines=21, **options):
        """A run that ends as documented, and tells what a terminal does not act on."""
        done = run(*arguments, cwd=self.folder, **options)
        what = [str(each)[:80] for each in arguments], done
        self.assertIn(done.returncode, (0, 1, 2), what)
        told = done.stderr.decode()
        self.assertIsNone(re.search("[^\n -~\u00a0-\U0010ffff]", told), what)
        self.assertTrue(told == "" or told.endswith("\n"), what)
        self.assertLessEqual(told.count("\n"), lines, what)
        self.assertTrue(done.returncode == 0 or told or done.stdout or "stdout" in options, what)
        return done.returncode, told, done.stdout

    def stranger(self):
        if os.geteuid() != 0:
            return {}
        return {"user": 65534, "group": 65534, "extra_groups": []}


class Inputs(Hostile):
    def test_texts(self):
        for name, (text, code, format_tells, set_tells) in TEXTS.items():
            with self.subTest(name):
                file = self.folder / "a.kcf"
                file.write_bytes(text)
                status, told, out = self.run_kcf("check", "--format", "json", "a.kcf")
                self.assertEqual((status, told), (1, ""))
                self.assertEqual(json.loads(out)["diagnostics"][0]["code"], code)
                told = self.run_kcf("check", "--fix", "--diff", "a.kcf")[1]
                self.assertRegex(told, r"^kcf: a\.kcf: \d+ errors? would remain; kcf check tells them\n$")
                status, told, out = self.run_kcf("format", "--diff", "a.kcf")
                if format_tells is None and name != "UTF-16":
                    self.assertEqual((status, told), (0, ""))
                else:
                    self.assertEqual((status, out), (1, b""))
                    self.assertIn(f"a.kcf:{format_tells or '1:1: '}", told.split("\n", 1)[0])
                status, told, _ = self.run_kcf("set", "a.kcf", "title=a", "-o", "-")
                self.assertEqual(status, 0 if set_tells is None else 1, told[:200])
                self.assertIn(set_tells or "", told)
                self.assertIn(self.run_kcf("diff", "a.kcf", "setup.kcf")[0], (1, 2))
                status, told, _ = self.run_kcf("preview", "a.kcf", "-o", "page.html")
                self.assertEqual((status, told), (0, ""))
                self.assertIn(b"<html", (self.folder / "page.html").read_bytes()[:1000].lower())
                self.assertEqual(file.read_bytes(), text)

    def test_paths(self):
        (self.folder / "secret").write_bytes(SETUP)
        (self.folder / "secret").chmod(0)
        before = self.held()
        for path, told in PATHS.items():
            for verb, (status, words) in READERS.items():
                with self.subTest(verb, path=path):
                    options = self.stranger() if path == "secret" else {}
                    shown = path.replace("\x1b", "\u241b")
                    self.assertEqual(self.run_kcf(*words(path), **options), (status, f"kcf: '{shown}' {told}\n", b""))
        for verb, (status, words) in READERS.items():
            if not verb.startswith(("check", "format", "preview")):
                self.assertEqual(self.run_kcf(*words(".")), (status, "kcf: '.' cannot be read: Is a directory\n", b""), verb)
        self.assertEqual(self.held(), before)

    def test_a_name_in_brackets_is_no_list(self):
        (self.folder / "[bad.kcf,other.kcf]").mkdir()
        shutil.copy(self.folder / "bad.kcf", self.folder / "[bad.kcf,other.kcf]" / "in.kcf")
        for words in (["check", "--format", "github"], ["format", "--check"]):
            self.assertIn(b"[bad.kcf,other.kcf]/in.kcf", self.run_kcf(*words, "[bad.kcf,other.kcf]")[2].replace(b"%2C", b","))

    def test_pipes_are_read_but_never_replaced(self):
        for verb, (status, words) in READERS.items():
            if verb in ("from-json", "table"):
                continue
            with self.subTest(verb), subprocess.Popen(["cp", "bad.kcf", "pipe"], cwd=self.folder) as writer:
                self.addCleanup(writer.kill)
                status, told, _ = self.run_kcf(*words("pipe"))
                replaces = verb in ("check --fix", "format", "set")
                self.assertEqual("'pipe' cannot be written: it is no file, or gone by now" in told, replaces, told)

    def test_pipes_among_files_are_not_waited_for(self):
        os.mkfifo(self.folder / "pipe.kcf")
        for verb in ("check", "format"):
            self.assertEqual(self.run_kcf(verb, ".")[1].count("pipe"), 0)
        for mesh in ("pipe", "loop", ".", "/dev/zero", "none"):
            (self.folder / "a.kcf").write_bytes(SETUP.replace(b"g.2dm", mesh.encode()))
            self.assertEqual(self.run_kcf("check", "a.kcf")[0], 1)
            self.assertEqual(self.run_kcf("preview", "a.kcf", "-o", "page.html")[0], 0)
            self.assertEqual(self.run_kcf("diff", "a.kcf", "setup.kcf")[0], 1)

    def test_documents(self):
        for text, told in DOCUMENTS.items():
            with self.subTest(text[:60]):
                (self.folder / "d.json").write_text(text)
                status, message, out = self.run_kcf("from-json", "d.json", "-o", "new.kcf", lines=1)
                self.assertEqual((status, out, (self.folder / "new.kcf").exists()), (1, b"", False))
                self.assertTrue(message.startswith((f"kcf: 'd.json' {told}", f"kcf: d.json: {told}")), message[:300])

    def test_tables(self):
        before = self.held()
        for table, told in TABLES.items():
            with self.subTest(table[:60]):
                status, message, out = self.run_kcf("set", "setup.kcf", "--table", "-", "--into", "runs/{row}.kcf", input=table)
                self.assertEqual((status, out), (1, b""))
                self.assertIn(told, message.split("\n", 1)[0])
                self.assertEqual(self.held(), before)


class Outputs(Hostile):
    def test_that_cannot_be_written(self):
        (self.folder / "folder").mkdir()
        (self.folder / "plain").write_text("mine")
        (self.folder / "dangling").symlink_to("nowhere")
        before = self.held()
        full = self.folder / "full"
        rows = [("none/x", "No such file or directory"), ("plain/x", "Not a directory"), ("x" * 300, "File name too long")]
        for verb, words in WRITERS.items():
            # A table makes the folders that it needs.
            for target, told in rows[verb == "table":]:
                with self.subTest(verb, target=target):
                    status, message, _ = self.run_kcf(*words, target, lines=1 + (verb == "table"))
                    self.assertEqual(status, 1)
                    self.assertRegex(message, f"'({target}|plain)' cannot be (written|reached): {told}\n")
            self.assertEqual(self.run_kcf(*words, "folder")[0], 1)
            self.assertEqual(self.run_kcf(*words, "loop")[0], 1)
            status, message, _ = self.run_kcf(*words, "new", **self.stranger())
            self.assertEqual((status, "new" in message), (1, True), message)
        for verb, words in FOLDER_WRITERS.items():
            for target in ("plain", "plain/x", "loop", "dangling"):
                status, message, _ = self.run_kcf(*words, target, lines=1)
                self.assertEqual((status, f"'{target}" in message), (1, True), message)
        self.assertEqual(self.held(), before)

    def test_devices_and_pipes_are_written_into_and_stay(self):
        for verb, words in WRITERS.items():
            if verb == "table":
                continue
            with self.subTest(verb), open(self.folder / "piped", "w+b") as piped:
                with subprocess.Popen(["cat", "pipe"], cwd=self.folder, stdout=piped):
                    self.assertEqual(self.run_kcf(*words, "pipe")[0], 0)
                self.assertGreater(piped.tell(), 100)
                self.assertTrue((self.folder / "pipe").is_fifo())
                # A stranger could not replace them, should the verb try.
                self.assertEqual(self.run_kcf(*words, "/dev/null", **self.stranger())[0], 0)
                status, told, _ = self.run_kcf(*words, "/dev/full", **self.stranger())
                self.assertEqual((status, told), (1, "kcf: '/dev/full' cannot be written: No space left on device\n"))
                self.assertTrue(Path("/dev/null").is_char_device() and Path("/dev/full").is_char_device())

    def test_what_a_page_is_made_of_is_not_replaced(self):
        (self.folder / "link.html").symlink_to("setup.kcf")
        before = self.held()
        for target in ("setup.kcf", "./setup.kcf", "link.html", "g.2dm"):
            status, told, _ = self.run_kcf("preview", "setup.kcf", "-o", target)
            self.assertEqual(status, 2)
            self.assertIn("would take the place of", told)
        self.assertEqual(self.held(), before)

    def test_standard_output_that_takes_nothing(self):
        reader, writer = os.pipe()
        os.close(reader)
        with open("/dev/full", "wb") as full, os.fdopen(writer, "wb") as closed:
            for number, words in enumerate(PRINTERS):
                status, told, _ = self.run_kcf(*words, stdout=(full, closed)[number % 2])
                self.assertEqual(status, 1, words)
                self.assertTrue(told.endswith("kcf: writing to standard output failed\n"), (words, told))

    def test_a_file_that_is_changed_meanwhile_is_kept(self):
        file = self.folder / "a.kcf"
        text = b"PROJECT {\n title = a\n" + b"   // a comment\n" * 400000 + b"}\n"
        for words in (["format", "a.kcf"], ["set", "a.kcf", "title=b"]):
            file.write_bytes(text)
            with subprocess.Popen([KCF, *words], cwd=self.folder, stderr=subprocess.PIPE) as process:
                while process.poll() is None and self.bytes_read(process.pid) < len(text):
                    pass
                process.send_signal(signal.SIGSTOP)
                file.write_bytes(b"mine")
                process.send_signal(signal.SIGCONT)
                told = process.stderr.read()
            self.assertEqual((told, file.read_bytes()),
                             (b"kcf: 'a.kcf' was changed by someone else meanwhile, and stays as it is\n", b"mine"))

    @staticmethod
    def bytes_read(process):
        try:
            return int(Path(f"/proc/{process}/io").read_text().split()[1])
        except (OSError, IndexError):
            return 0

    def test_a_killed_run_leaves_a_whole_file(self):
        before = b"PROJECT {\n title = a\n}\n" + b"// a comment   \n" * 20000
        file = self.folder / "a.kcf"
        whole = {before}
        commands = (["format", "a.kcf"], ["check", "--fix", "a.kcf"], ["set", "a.kcf", "title=b"])
        for words in commands:
            file.write_bytes(before)
            run(*words, cwd=self.folder)
            whole.add(file.read_bytes())
        self.assertEqual(len(whole), 3)
        for number in range(30):
            file.write_bytes(before)
            with subprocess.Popen([KCF, *commands[number % 3]], cwd=self.folder, stdout=subprocess.DEVNULL,
                                  stderr=subprocess.DEVNULL) as process:
                time.sleep(number * 0.002)
                process.kill()
            self.assertIn(file.read_bytes(), whole)


class Mutations(Hostile):
    """Random changes of bytes; the seed makes each run the same."""

    @staticmethod
    def mutated(data, chance):
        data = bytearray(data)
        for _ in range(chance.randint(1, 6)):
            at = chance.randrange(len(data))
            piece = bytes(data[at:at + chance.randint(1, 40)])
            kind = chance.randrange(5)
            if kind == 0:
                data[at] = chance.randrange(256)
            elif kind == 1:
                del data[at:at + len(piece)]
            elif kind == 2:
                data[at:at] = piece * chance.randint(1, 5)
            elif kind == 3:
                data[at:at] = chance.choice([b'"', b"{", b"}", b"[", b"]", b",", b"-1", b"1e308", b"99999999999999999999", b"null", b"\\u0000"])
            else:
                other = chance.randrange(len(data))
                data[other:other + len(piece)] = piece
        return bytes(data)

    def test_documents(self):
        chance = random.Random(1)
        good = document("linked-regions")
        for _ in range(RUNS):
            text = self.mutated(good, chance)
            status, told, out = self.run_kcf("from-json", "-", input=text, lines=1)
            self.assertEqual(status == 1, out == b"", (told, text))

    def test_tables(self):
        chance = random.Random(2)
        good = b'title,"DOMAIN/multiregion",run\na,b,1\n"c ""d""",e,2\n"x\ny",f,3\n'
        before = self.held()
        for _ in range(RUNS):
            text = self.mutated(good, chance)
            status, told, _ = self.run_kcf("set", "setup.kcf", "author={run}", "--table", "-", "--into", "runs/{run}.kcf", input=text, lines=60)
            self.assertEqual(status == 1, told != "", (told, text))
            shutil.rmtree(self.folder / "runs", ignore_errors=True)
            self.assertEqual(self.held(), before, text)


# What a client sends, the code of the answer or None, and what the server tells when it ends over it or None.
STREAMS = [
    (b"garbage\r\n\r\n", None, "a line of a header has no colon"),
    (b"GET / HTTP/1.1\r\nHost: x\r\n\r\n", None, "a line of a header has no colon"),
    (b"x: y\r\n\r\n", None, "a header has no 'Content-Length'"),
    (b"Content-Length: -1\r\n\r\n{}", None, "the 'Content-Length' of a header is no length"),
    (b"Content-Length: 99999999999999999999\r\n\r\n{}", None, "the 'Content-Length' of a header is no length"),
    (b"Content-Length: 9999999999999\r\n\r\n{}", None, "a message is longer than "),
    (b"Content-Length: 1\r\nContent-Length: 2\r\n\r\n{}", None, "a header has two lengths"),
    (b"\xff" * 1000000, None, "a header is longer than "),
    (b"Content-Length: 100\r\n\r\n{", None, ""),
    (frame(b""), -32700, ""),
    (frame(b"{"), -32700, ""),
    (frame(b"\xff\xfe"), -32700, ""),
    (frame(b"[" * 1000000), -32600, ""),
    (frame([]), -32600, ""),
    (frame({}), -32600, ""),
    (frame({"id": 1, "method": 2}), -32600, ""),
    (frame({"id": [], "method": "shutdown"}), -32600, ""),
    (frame({"id": 1, "method": "x", "params": 1}), -32600, ""),
    (frame({"id": 1, "method": "textDocument/hover"}), -32002, ""),
    (frame({"id": 1, "method": "shutdown"}), -32002, ""),
    (frame({"id": 1, "result": 2}), None, ""),
    (frame({"method": "exit"}), None, ""),
    (frame({"method": "$/cancelRequest", "params": {"id": 7}}), None, ""),
    (frame({"method": "$/cancelRequest", "params": [7]}), None, ""),
]
FAR = (1 << 31) - 1
REQUESTS = ["completion", "hover", "definition", "references", "documentHighlight", "prepareRename", "rename", "documentSymbol",
            "formatting", "rangeFormatting", "onTypeFormatting", "foldingRange", "selectionRange", "codeAction", "documentLink", "inlayHint", "semanticTokens/full"]


class LanguageServer(Hostile):
    def test_streams(self):
        for data, code, fault in STREAMS:
            with self.subTest(data[:60]):
                status, told, out = self.run_kcf("language-server", input=data)
                self.assertEqual(status, 1)
                self.assertTrue(told.startswith(f"kcf: the client sends no messages: {fault}" if fault else "kcf: the client went away"), told)
                codes = [json.loads(each)["error"]["code"] for each in re.findall(rb"\r\n\r\n(\{.*?\})(?=Content|$)", out)]
                self.assertEqual(codes, [code] if code else [], out)

    def test_sessions(self):
        with Client(KCF, self.folder) as client:
            uri = client.open("setup.kcf")
            none = (self.folder / "none.kcf").as_uri()
            unsound = [{}, [], {"textDocument": 1}, {"textDocument": {"uri": 1}}, {"textDocument": {"uri": none}},
                       {"textDocument": {"uri": "http://x/\0%zz"}}]
            places = [place(FAR, FAR), place(-1, -1), place(0, FAR), place(1 << 40, 0), place(1.5, "x"), None]
            for number, method in enumerate(REQUESTS):
                for params in unsound + [{"textDocument": {"uri": uri}, "position": at, "positions": [at], "newName": "\0 {", "ch": "}",
                                          "range": {"start": at, "end": place(0, 0)}, "context": {"diagnostics": 1}, "options": {}} for at in places]:
                    try:
                        client.request("textDocument/" + method, params, SECONDS)
                    except Refused as refused:
                        self.assertIn(refused.args[0], (-32601, -32602, -32600, -32803, -32801), (method, params, refused))
                        self.assertNotEqual(refused.args[1], "")
                client.notify("$/cancelRequest", {"id": number})
            for version, changes in enumerate(([{"range": span((5, 0), (1, 0)), "text": "x"}], [{"range": span((FAR, 0), (FAR, 9)), "text": "}"}],
                                               [{"range": span((-1, 0), (0, 0)), "text": ""}], [{"text": 1}], [{}], 1, None), 2):
                client.notify("textDocument/didChange", {"textDocument": {"uri": uri, "version": version}, "contentChanges": changes})
            client.change(none, 1, {"text": "x"})
            client.notify("textDocument/didClose", {"textDocument": {"uri": none}})
            with self.assertRaises(Refused):
                client.request("kcf/unknown", {})
            client.change(uri, 100, {"text": SETUP.decode()})
            self.assertEqual([each["severity"] for each in client.diagnostics(uri, 100) if each["severity"] == 1], [])
            self.assertEqual(client.end(), 0)

    def test_random_messages(self):
        chance = random.Random(3)
        uri = (self.folder / "setup.kcf").as_uri()
        good = [json.dumps({"jsonrpc": "2.0", "id": 5, "method": "textDocument/" + method, "params": {
            "textDocument": {"uri": uri}, "position": place(4, 6), "newName": "abc", "range": span((1, 0), (9, 3)), "ch": "\n",
            "options": {"tabSize": 2}, "context": {"diagnostics": []}}}).encode() for method in REQUESTS]
        good.append(json.dumps({"jsonrpc": "2.0", "method": "textDocument/didChange", "params": {
            "textDocument": {"uri": uri, "version": 3}, "contentChanges": [{"range": span((1, 0), (9, 3)), "text": "a = b\n"}]}}).encode())
        with Client(KCF, self.folder) as client:
            client.open("setup.kcf")
            reader = threading.Thread(target=client.wait, args=(lambda each: each.get("id") == "last", 4 * SECONDS))
            reader.start()
            for _ in range(20 * RUNS):
                client.send(frame(self.mutated(chance.choice(good), chance)))
            client.send(frame({"id": "last", "method": "kcf/unknown"}))
            reader.join()
            self.assertEqual(client.messages[-1].get("id"), "last")
            self.assertEqual(client.end(), 0)

    mutated = staticmethod(Mutations.mutated)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[5:]])
