#!/usr/bin/env python3
"""Runs kcf check and kcf explain as a user does.

    check_test.py KCF PROJECT-FOLDER
"""
import json
import os
import pty
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import jsonschema

KCF = Path(sys.argv[1]).resolve()
PROJECT = Path(sys.argv[2]).resolve()
SCHEMA = json.loads((PROJECT / "docs/check.schema.json").read_text())
EXAMPLES = PROJECT / "examples"
FAULTY = "PROJECT {\n  titel = demo\n}\nDOMAIN {\n  PARALLEL {\n    number_threads = 2.5\n  }\n}\n"
ESCAPE = re.compile(r"\x1b\[[0-9;]*m")


def run(*arguments, verb="check", **options):
    options.setdefault("stdin", subprocess.DEVNULL)
    environment = {name: value for name, value in os.environ.items()
                   if name not in ("NO_COLOR", "CLICOLOR_FORCE")}
    environment.update(options.pop("env", {}))
    return subprocess.run([KCF, verb, *map(str, arguments)], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                          env=environment, timeout=60, check=False, **options)


def codes(document):
    return [told["code"] for told in document["diagnostics"]]


class Checks(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def write(self, name, text):
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(text if isinstance(text, bytes) else text.encode())
        return path

    def checked(self, *arguments, status=None, **options):
        """The JSON of a run, held against its schema and the text of the files."""
        done = run("--format", "json", *arguments, cwd=self.folder, **options)
        document = json.loads(done.stdout.decode("utf-8"))
        jsonschema.Draft202012Validator(SCHEMA).validate(document)
        if status is not None:
            self.assertEqual(done.returncode, status, done.stderr)
        for file in document["files"]:
            for level in ("error", "warning"):
                told = [d for d in document["diagnostics"] if d["severity"] == level
                        and file["file"] in (d["file"], *(r["file"] for r in d["related"]))]
                self.assertEqual(file[level + "s"], len(told))
        return document


class Statuses(Checks):
    def test_tell_errors_warnings_and_wrong_usage(self):
        self.write("faulty.kcf", FAULTY)
        warned = EXAMPLES / "first-region/setup.kcf"
        for status, arguments in ((1, ["faulty.kcf"]), (0, [warned]), (1, ["--strict", warned]),
                                  (0, ["--strict", EXAMPLES / "linked-regions/setup.kcf"]),
                                  (2, ["none.kcf"]), (2, ["none.kcf", warned]), (2, []),
                                  (2, ["--format", "xml", warned]), (2, ["--jobs", "0", warned]),
                                  (2, ["--jobs", "two", warned]), (2, ["--directory", "none", warned])):
            done = run(*arguments, cwd=self.folder)
            self.assertEqual(done.returncode, status, (arguments, done.stderr))
            self.assertEqual(status == 2, done.stderr != b"", arguments)

    @unittest.skipIf(os.geteuid() == 0, "root reads all files")
    def test_tells_what_may_not_be_read_and_goes_on(self):
        self.write("a.kcf", FAULTY).chmod(0)
        self.write("b.kcf", FAULTY)
        done = run("a.kcf", "b.kcf", cwd=self.folder)
        self.assertEqual(done.returncode, 2)
        self.assertIn(b"kcf: 'a.kcf' cannot be read: Permission denied", done.stderr)
        self.assertIn(b"--> b.kcf:2:3", done.stdout)


class Places(Checks):
    def test_are_those_of_the_text_with_fixes_that_mend_it(self):
        self.write("sub/faulty.kcf", FAULTY)
        document = self.checked("./sub/faulty.kcf", status=1)
        told = {d["code"]: d for d in document["diagnostics"]}
        tag = told["unknown-tag"]
        self.assertEqual((tag["file"], tag["line"], tag["column"], tag["endLine"], tag["endColumn"]),
                         ("sub/faulty.kcf", 2, 3, 2, 8))
        [edit] = tag["fixes"][0]["edits"]
        self.assertEqual(FAULTY[edit["begin"]:edit["end"]], "titel")
        self.assertEqual(edit["text"], "title")
        number = told["not-an-integer"]
        self.assertEqual((number["line"], number["column"], number["endColumn"]), (6, 22, 25))

    def test_columns_count_code_points_and_offsets_bytes(self):
        text = "PROJECT {\n  /* */\n  title = d\u00e9mo \U0001f30a\n \u00fc titel = x\n}\n".encode() + b"\xff = 1\n"
        with self.write("x.kcf", text).open("rb") as source:
            document = self.checked("-", status=1, stdin=source)
        for told in document["diagnostics"]:
            line = text.split(b"\n")[told["line"] - 1].decode("utf-8", "surrogateescape")
            self.assertLessEqual(told["endColumn"], len(line) + 1, told)

    def test_input_has_the_name_and_the_folder_that_are_given(self):
        self.write("sub/inflow.txt", "0 1\n10 2\n")
        setup = (EXAMPLES / "first-region/setup.kcf").read_text()
        self.write("sub/g.2dm", (EXAMPLES / "first-region/g.2dm").read_bytes())
        self.write("setup.kcf", setup)
        for arguments, converts in (([], False), (["--stdin-filepath", "./sub/setup.kcf"], True),
                                    (["--directory", "sub"], True), (["--no-files"], None)):
            with (self.folder / "setup.kcf").open("rb") as source:
                document = self.checked("-", *arguments, stdin=source)
            self.assertEqual(document["files"][0]["converts"], converts, arguments)
            name = "sub/setup.kcf" if "--stdin-filepath" in arguments else "-"
            self.assertEqual(document["files"][0]["file"], name)


    def test_files_that_a_name_may_mean_are_found_from_another_folder(self):
        shutil.copytree(EXAMPLES / "first-region", self.folder / "sub")
        setup = (EXAMPLES / "first-region/setup.kcf").read_text()
        for name, told in (("G.2dm", "write 'g.2dm'"), ("gg.2dm", "write 'g.2dm' if that file is meant"),
                           ("..\\sub\\g.2dm", "write '../sub/g.2dm'")):
            self.write("sub/setup.kcf", setup.replace("g.2dm", name))
            helps = [d["help"] for d in self.checked("sub/setup.kcf", status=1)["diagnostics"] if d["code"].endswith("missing-file")]
            self.assertEqual([help[:len(told)] for help in helps], [told], name)


class Files(Checks):
    def test_of_folders_are_told_in_order_whatever_the_jobs(self):
        for number in range(40):
            self.write(f"many/{number % 7}/{number}.kcf", FAULTY)
        self.write("many/other.txt", "no command file")
        texts = {run("--jobs", jobs, "many", cwd=self.folder).stdout for jobs in (1, 2, 7)}
        self.assertEqual(len(texts), 1)
        document = self.checked("many", "./many/0/0.kcf", status=1)
        names = [file["file"] for file in document["files"]]
        self.assertEqual(names, sorted(names))
        self.assertEqual(len(names), 40)

    def test_without_files_tells_nothing_of_what_they_hold(self):
        for setup in sorted(EXAMPLES.glob("*/*.kcf")):
            def told(*arguments):
                document = self.checked(*arguments, setup)
                return {(each["line"], each["code"]) for each in document["diagnostics"]}
            self.assertLessEqual(told("--no-files"), told(), setup)

    def test_examples_are_judged_as_the_converter_does(self):
        document = self.checked(EXAMPLES)
        for file in document["files"]:
            self.assertEqual(file["converts"], not file["file"].endswith("faulty.kcf"), file)
            self.assertEqual(file["errors"] == 0, file["converts"], file)


class Text(Checks):
    def test_shows_the_line_the_mark_the_help_and_the_mending(self):
        self.write("faulty.kcf", "PROJECT {\n\ttitel = demo\n  author = me\n  author = you\n}\nDOMAIN {\n}\n")
        text = run("faulty.kcf", cwd=self.folder).stdout.decode()
        for part in ("error[unknown-tag]: ", " --> faulty.kcf:2:2\n", "2 |     titel = demo\n  |     ^^^^^\n",
                     "  = help: ", "2 +     title = demo\n", " ::: faulty.kcf:3:3\n",
                     "3 |   author = me\n  |   ------ the first is here\n", " in 1 file\n", "kcf explain "):
            self.assertIn(part, text)
        self.assertNotIn("\x1b", text)

    def test_colors_keep_to_the_option_then_the_environment_then_the_terminal(self):
        path = self.write("faulty.kcf", FAULTY)
        for colored, arguments, environment in (
                (False, [], {}), (True, ["--color", "always"], {"NO_COLOR": "1"}),
                (False, ["--color", "never"], {"CLICOLOR_FORCE": "1"}),
                (True, [], {"CLICOLOR_FORCE": "1"}), (False, [], {"CLICOLOR_FORCE": "0"}),
                (False, [], {"NO_COLOR": "1", "CLICOLOR_FORCE": "1"}), (False, [], {"NO_COLOR": ""})):
            text = run(path, *arguments, env=environment).stdout
            self.assertEqual(b"\x1b[" in text, colored, (arguments, environment))
        plain = run(path).stdout.decode()
        self.assertEqual(ESCAPE.sub("", run("--color", "always", path).stdout.decode()), plain)
        for kind, colored in (("xterm", True), ("dumb", False)):
            self.assertEqual("\x1b[" in self.on_terminal(path, kind), colored)

    def on_terminal(self, path, kind):
        leader, follower = pty.openpty()
        environment = {n: v for n, v in os.environ.items() if n not in ("NO_COLOR", "CLICOLOR_FORCE")}
        with subprocess.Popen([KCF, "check", path], stdin=follower, stdout=follower, stderr=follower,
                              env=environment | {"TERM": kind}) as process:
            os.close(follower)
            text = b""
            try:
                while piece := os.read(leader, 4096):
                    text += piece
            except OSError:
                pass
            process.wait(60)
        os.close(leader)
        return text.decode()

    def test_no_file_reaches_the_terminal_with_what_it_acts_on(self):
        hostile = "".join(map(chr, [*range(1, 10), *range(11, 32), 127, 0x85, 0x9b, 0x200b, 0x202e, 0x2066]))
        self.write("a.kcf", f"PROJECT {{\n  title = x{hostile}y\n  {hostile} = 1\n  t{hostile}itle = 2\n".encode()
                   + b"  title = \xff\xfe\xc0\x80 \xed\xa0\x80\n}\n\x1b]0;name\x07 {\n" + b"\x9b31m = 3\n}\n")
        shown = "".join(c for c in run("a.kcf", cwd=self.folder).stdout.decode("utf-8") if c != "\n")
        self.assertTrue(shown)
        for character in shown:
            self.assertTrue(character.isprintable(), hex(ord(character)))
        self.checked("a.kcf")
        name = b"b\x1b[31m\xff.kcf"
        (Path(os.fsdecode(os.fsencode(self.folder) + b"/" + name))).write_text(FAULTY)
        done = run(os.fsdecode(name), "no\x1b[1m.kcf", cwd=self.folder)
        self.assertNotIn(b"\x1b", done.stdout + done.stderr)
        self.checked(os.fsdecode(name), status=1)

    def test_long_lines_and_wide_characters_keep_the_mark_below_its_text(self):
        long = "x" * 5000
        self.write("a.kcf", f"PROJECT {{ author = {long}\n  title = \u4e2d\u6587 \u4e2d ; \n}}\n"
                            f"DOMAIN {{ PARALLEL {{ number_threads = 2{' ' * 300}y{long}\n}}\n}}\n")
        lines = run("a.kcf", cwd=self.folder).stdout.decode().split("\n")
        self.assertTrue(all(len(line) < 400 for line in lines if " | " in line))
        self.assertTrue(any("..." in line for line in lines))


class OtherForms(Checks):
    def test_sarif_has_the_findings_with_their_rules_and_stable_fingerprints(self):
        def log(text):
            self.write("a folder/\u00fc.kcf", text)
            done = run("--format", "sarif", "a folder", cwd=self.folder)
            self.assertEqual(done.returncode, 1)
            [result] = json.loads(done.stdout.decode("utf-8"))["runs"]
            return result
        found = log(FAULTY)
        rules = {rule["id"] for rule in found["tool"]["driver"]["rules"]}
        self.assertEqual({result["ruleId"] for result in found["results"]}, rules)
        first = next(r for r in found["results"] if r["ruleId"] == "unknown-tag")
        place = first["locations"][0]["physicalLocation"]
        self.assertEqual(place["artifactLocation"]["uri"], "a%20folder/%C3%BC.kcf")
        self.assertEqual(place["region"], {"startLine": 2, "startColumn": 3, "endLine": 2, "endColumn": 8})
        change = first["fixes"][0]["artifactChanges"][0]["replacements"][0]
        self.assertEqual((change["deletedRegion"], change["insertedContent"]), (place["region"], {"text": "title"}))
        prints = [r["partialFingerprints"]["finding/v1"] for r in found["results"]]
        self.assertEqual(len(set(prints)), len(prints))
        moved = log("// a line in front\n" + FAULTY)
        self.assertEqual([r["partialFingerprints"]["finding/v1"] for r in moved["results"]], prints)

    def test_workflow_commands_are_one_line_each(self):
        self.write("a,b.kcf", FAULTY.replace("2.5", "2%0A.5"))
        lines = run("--format", "github", "a,b.kcf", cwd=self.folder).stdout.decode().splitlines()
        self.assertEqual(len(lines), len(self.checked("a,b.kcf")["diagnostics"]))
        self.assertIn("::error file=a%2Cb.kcf,line=2,endLine=2,col=3,endColumn=8,title=unknown-tag::"
                      "there is no tag 'titel' in 'PROJECT'%0Adid you mean 'title'?", lines)
        self.assertTrue(any("%250A.5" in line for line in lines), lines)


class Names(Checks):
    CASES = [  # example, text, in its place, code, place of the name in the line, message
        ("river-reach", "tributary\n          mixture = armour", "tributary\n          mixture = armor",
         "unknown-name", "armor", "there is no MIXTURE named 'armor' in this region"),
        ("river-reach", "string_name = outflow\n        }\n        DIRECTION",
         "string_name = outlet\n        }\n        DIRECTION", "unknown-name", "outlet", "there is no STRINGDEF named 'outlet'"),
        ("river-reach", "soil = (channel bank sill)", "soil = (channel bnak sill)", "unknown-name", "bnak",
         "there is no SOIL_DEF named 'bnak' in this region"),
        ("river-reach", "elem_ids = (26 27)", "elem_ids = (26 2700)", "unknown-name", "2700",
         "the mesh 'reach.2dm' has no element 2700"),
        ("river-1d", "( km_0.0 km_0.6 km_1.0 )", "( km_0.0 km_0.7 km_1.0 )", "unknown-name", "km_0.7",
         "there is no cross section 'km_0.7' in this region"),
        ("linked-regions", "upstream_subdomain = river", "upstream_subdomain = River", "unknown-name", "River",
         "there is no 1D or 2D region named 'River'"),
        ("linked-regions", "upstream_interface = main_weir", "upstream_interface = main_gate", "unknown-name",
         "main_gate", "there is no BOUNDARY or EXTERNAL_SOURCE named 'main_gate' in the region 'river'"),
        ("linked-regions", "kestplane = floodplain", "kestplane = meadow", "unknown-name", "meadow",
         "there is no 2D region named 'meadow'"),
    ]

    def test_that_lead_nowhere_are_told_where_they_stand(self):
        for example, old, new, code, name, message in self.CASES:
            text = (EXAMPLES / example / "setup.kcf").read_text()
            self.assertEqual(text.count(old), 1, old)
            self.write("x.kcf", text.replace(old, new))
            where = ("--directory", EXAMPLES / example)
            before = self.checked(EXAMPLES / example / "setup.kcf", *where)["diagnostics"]
            after = self.checked("x.kcf", *where)
            known = [(d["code"], d["message"]) for d in before]
            [told] = [d for d in after["diagnostics"] if (d["code"], d["message"]) not in known]
            line = text.replace(old, new).splitlines()[told["line"] - 1]
            self.assertEqual((told["code"], told["origin"], line[told["column"] - 1:told["endColumn"] - 1]),
                             (code, "checker", name))
            self.assertIn(message, told["message"])
            self.assertTrue(after["files"][0]["converts"], message)

    def test_of_connections_are_told_in_their_file(self):
        for name in os.listdir(EXAMPLES / "linked-regions"):
            self.write(name, (EXAMPLES / "linked-regions" / name).read_bytes())
        self.assertEqual(codes(self.checked("setup.kcf")), [])
        lines = (self.folder / "connections.txt").read_text().splitlines()
        row = next(i for i, line in enumerate(lines) if line and line[0] not in "#/")
        words = lines[row].split()
        lines[row] = " ".join(["nowhere", words[1], words[2], "987654"])
        self.write("connections.txt", "\n".join(lines) + "\n")
        told = self.checked("setup.kcf", status=1)["diagnostics"]
        self.assertEqual([(d["code"], d["file"], d["line"], d["column"]) for d in told],
                         [("unknown-name", "connections.txt", row + 1, 1),
                          ("unknown-node", "connections.txt", row + 1, len(" ".join(["nowhere", *words[1:3]])) + 2)])
        self.assertTrue(all(d["related"][-1]["file"] == "setup.kcf" for d in told))

    def test_in_tables_of_the_docs_have_the_severity_of_the_code(self):
        rows = re.findall(r"^\| `([a-z0-9-]+)` \| (error|warning) \|", (PROJECT / "docs/check.md").read_text(), re.M)
        self.assertGreater(len(rows), 20)
        for code, severity in rows:
            self.assertIn(severity, run(code, verb="explain").stdout.decode().splitlines()[0], code)


class Encodings(Checks):
    def test_of_command_files_that_others_do_not_read_are_told_once(self):
        setup = (EXAMPLES / "first-region/setup.kcf").read_text()
        for content, code, severity in (
                (setup.encode("utf-16"), "not-text", "error"),
                (setup.replace("\n", "\r").encode(), "foreign-line-ends", "error"),
                (setup.encode() + b"// B\xfcren\n", "foreign-encoding", "warning"),
                (b"\xef\xbb\xbf" + setup.encode(), "byte-order-mark", "error"),
                (setup.replace("\n", "\r\n").encode(), None, None)):
            self.write("x.kcf", content)
            told = self.checked("x.kcf", "--directory", EXAMPLES / "first-region")["diagnostics"]
            told = [(d["code"], d["severity"]) for d in told if d["code"] != "hydraulics/no-boundary"]
            self.assertEqual(told, [(code, severity)] if code else [])


class Silence(Checks):
    def test_is_for_the_warnings_of_the_tag_or_block_and_told_where_needless(self):
        setup = (EXAMPLES / "first-region/setup.kcf").read_text()
        behind = setup.replace("HYDRAULICS {", "HYDRAULICS { // kcf: allow hydraulics/no-boundary")
        above = setup.replace("    HYDRAULICS {", "// why\n  // kcf: allow unknown-tag, hydraulics/no-boundary\n"
                              "  // because\n    HYDRAULICS {")
        within = setup.replace("name = s1", "name = s1 // kcf: allow hydraulics/no-boundary")
        for text, told in ((setup, ["hydraulics/no-boundary"]), (behind, []), (above, ["silences-nothing"]),
                           (within, ["silences-nothing", "hydraulics/no-boundary"])):
            self.write("x.kcf", text)
            document = self.checked("x.kcf", "--directory", EXAMPLES / "first-region", status=0)
            self.assertEqual(codes(document), told)
        self.write("x.kcf", FAULTY.replace("demo", "demo // kcf: allow unknown-tag"))
        self.assertIn("unknown-tag", codes(self.checked("x.kcf", status=1)))


class Fixes(Checks):
    FAULTY = FAULTY.replace("DOMAIN {", "DOMAIN {\n  PHYSICAL_PROPERTIES {\n    gravity = 9,81\n    vicosity = 1e-6\n  }")

    def test_are_applied_until_none_is_left_and_what_was_done_is_told(self):
        path = self.write("a.kcf", self.FAULTY)
        path.chmod(0o640)
        before = self.checked("a.kcf")
        shown = run("--fix", "--diff", "a.kcf", cwd=self.folder)
        self.assertEqual(path.read_text(), self.FAULTY)
        for line in ("-  titel = demo", "+  title = demo", "+    viscosity = 1e-6"):
            self.assertIn(line + "\n", shown.stdout.decode())
        done = run("--fix", "a.kcf", cwd=self.folder)
        self.assertEqual((done.returncode, shown.returncode), (1, 1))
        self.assertIn(b"mended a.kcf:2:3: ", done.stderr)
        mended = path.read_text()
        self.assertEqual(mended.splitlines()[1], "  title = demo")
        self.assertEqual(path.stat().st_mode & 0o777, 0o640)
        after = self.checked("a.kcf")
        self.assertLess(len(after["diagnostics"]), len(before["diagnostics"]))
        again = run("--fix", "a.kcf", cwd=self.folder)
        self.assertEqual((again.stderr, path.read_text()), (b"", mended))
        self.assertEqual(os.listdir(self.folder), ["a.kcf"])

    def test_never_make_a_new_error(self):
        for source in sorted(EXAMPLES.rglob("faulty.kcf")):
            before = self.checked("--no-files", self.write("x.kcf", source.read_bytes()))["files"][0]["errors"]
            run("--fix", "--no-files", "x.kcf", cwd=self.folder)
            self.assertLessEqual(self.checked("--no-files", "x.kcf")["files"][0]["errors"], before, source)

    def test_need_a_file(self):
        self.assertEqual(run("--diff", "x.kcf").returncode, 2)
        self.assertEqual(run("--fix", "-").returncode, 2)


@unittest.skipIf("KESTRIX_SANITIZED" in os.environ, "sanitizers take most of the time")
class Scale(Checks):
    def test_a_fault_in_each_of_many_lines_takes_linear_time(self):
        def seconds(count):
            self.write("many.kcf", "PROJECT {\n  title = a\n" + "".join(f"  titl{i} = 3\n" for i in range(count)) + "}\n")
            before = os.times()
            run("many.kcf", cwd=self.folder)
            after = os.times()
            return after.children_user - before.children_user
        self.assertLess(seconds(40000), 12 * max(seconds(10000), 0.05))


class Explained(Checks):
    def test_each_example_has_its_fault_and_its_mending_has_not(self):
        listed = re.findall(r"^  ([a-z0-9-]+)  ", run(verb="explain").stdout.decode(), re.M)
        self.assertGreater(len(listed), 30)
        shown = 0
        for code in listed:
            text = run(code, verb="explain").stdout.decode()
            self.assertTrue(text.startswith(code + " ("), text)
            pieces = re.findall(r"^(Example|Mended)(?:, in a (mesh|series))?:\n\n((?:    .*\n)+)", text, re.M)
            of = pieces[0][1] if pieces else ""
            for kind, _, piece in pieces:
                piece = re.sub("^    ", "", piece, flags=re.M)
                # A setup of which the mesh, or the series of a boundary, is replaced by the piece.
                shutil.copytree(PROJECT / "tests/check/setup", self.folder, dirs_exist_ok=True)
                name = {"": "x.kcf", "mesh": "reach.2dm", "series": "inflow.txt"}[of]
                self.write(name, piece)
                found = codes(self.checked("setup.kcf" if of else name))
                self.assertEqual(code in found, kind == "Example", (code, kind, found))
                shown += 1
        self.assertGreater(shown, 90)

    def test_all_rules_of_the_sources_are_told(self):
        words = re.compile(r'\{\s*"([a-z0-9-]+)"(?:,(?:\s*"[^" ]* (?:[^"\\]|\\.)*")+){2}\s*\}')
        names = set()
        for source in (PROJECT / "KESTMD_libs/src/KESTparse").rglob("IR*.cpp"):
            text = re.sub(r"\w*neOf\([^()]*\)", "", source.read_text())
            names |= {match[1] for match in words.finditer(text)}
        self.assertGreater(len(names), 100)
        blocks = json.loads(run(verb="vocabulary").stdout)["blocks"]
        told = set()
        for path in {block["path"] for block in blocks}:
            text = run(path, verb="explain").stdout.decode()
            told |= set(re.findall(r"^  [a-z0-9-]+/([a-z0-9-]+) \(", text, re.M))
        self.assertEqual(names - told, set())

    def test_blocks_tags_rules_and_misspelt_names(self):
        for name, part in (("FRICTION", "type"), (".../FRICTION/type", "'strickler'"),
                           ("KESTPLANE_2D/HYDRAULICS/FRICTION/default_friction", "Value: "),
                           ("geometry/missing-file", "To mend it: "), ("BOUNDARY", "kcf explain PATH")):
            done = run(name, verb="explain")
            self.assertEqual((done.returncode, done.stderr), (0, b""), name)
            self.assertIn(part, done.stdout.decode(), name)
        for name, meant in (("unknow-tag", "unknown-tag"), ("FRICTON", "FRICTION"),
                            ("FRICTION/typ", "FRICTION/type")):
            done = run(name, verb="explain")
            self.assertEqual(done.returncode, 1)
            self.assertIn(meant, done.stderr.decode())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
