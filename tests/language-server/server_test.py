#!/usr/bin/env python3
"""Runs kcf language-server as an editor does.

    server_test.py KCF EXAMPLES
"""
import os
import random
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

from client import Client, Refused, applied, edit, frame, place, span

KCF = Path(sys.argv[1]).resolve()
EXAMPLES = Path(sys.argv[2]).resolve()
SNIPPETS = {"textDocument": {"completion": {"completionItem": {"snippetSupport": True}}}}
FAULTY = "PROJECT {\n  titel = demo\n}\nDOMAIN {\n  PARALLEL {\n    number_threads = 2.5\n  }\n}\n"


class Sessions(unittest.TestCase):
    """Sessions in a copy of the example of linked regions."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name) / "setup"
        shutil.copytree(EXAMPLES / "linked-regions", self.folder)
        self.text = (self.folder / "setup.kcf").read_text()

    def start(self, **options):
        client = Client(KCF, self.folder, **options)
        self.addCleanup(client.__exit__)
        return client

    def at(self, text, found=None):
        """The place behind `found` in the first line that holds it."""
        begin = (found or self.text).index(text) + len(text)
        before = (found or self.text)[:begin]
        return place(before.count("\n"), begin - before.rfind("\n") - 1)


class Framing(Sessions):
    def test_takes_messages_in_any_pieces(self):
        client = self.start(initialize=False)
        data = frame({"jsonrpc": "2.0", "id": 1, "method": "initialize", "params": {"capabilities": {}}})
        data = data.replace(b"\r\n\r\n", b"\r\ncontent-type: application/vscode-jsonrpc; charset=utf-8\r\n\r\n")
        for i in range(len(data)):
            client.send(data[i:i + 1])
        self.assertIn("capabilities", client.answer(1))
        client.send(b"".join(frame({"jsonrpc": "2.0", "id": i, "method": "shutdown"}) for i in (2, 3)))
        self.assertIsNone(client.answer(2))
        with self.assertRaisesRegex(Refused, "-32600"):
            client.answer(3)
        client.notify("exit", {})
        self.assertEqual(client.process.wait(10), 0)

    def test_ends_with_one_message_at_hostile_headers(self):
        for header in (b"Content-Length: -1\r\n\r\n{}", b"Content-Length: 99999999999999999999\r\n\r\n",
                       b"Content-Length: 4611686018427387904\r\n\r\n", b"Content-Length: x\r\n\r\n",
                       b"Content-Type: a\r\n\r\n{}", b"\r\n\r\n", b"no colon\r\n\r\n", b"\xff\x00" * 4000,
                       b"Content-Length: 2\r\nContent-Length: 3\r\n\r\n{}", b"{\"jsonrpc\": \"2.0\"}\n" * 400):
            done = subprocess.run([KCF, "language-server"], input=header, capture_output=True, timeout=20,
                                  check=False)
            self.assertEqual((done.returncode, done.stdout), (1, b""), header[:40])
            self.assertRegex(done.stderr, rb"^kcf: the client sends no messages: [^\n]+\n$", header[:40])
        cut = subprocess.run([KCF, "language-server"], input=b"Content-Length: 10\r\n\r\n{", capture_output=True,
                             timeout=20, check=False)
        self.assertEqual((cut.returncode, cut.stdout, cut.stderr), (1, b"", b"kcf: the client went away without 'shutdown'\n"))

    def test_answers_each_hostile_message_and_lives(self):
        client = self.start()
        for body, code in ((b"", -32700), (b"{", -32700), (b"[]", -32600), (b"null", -32600), (b"\xff", -32700),
                           (b'{"id": {}, "method": "a"}', -32600), (b'{"id": 1.5, "method": "a"}', -32600),
                           (b'{"id": "x", "method": 1}', -32600), (b'{"id": "x", "method": "a", "params": 3}', -32600),
                           (b'{"id": "x", "method": "initialize"}', -32600),
                           (b'{"id": "x", "method": "none/such"}', -32601),
                           (b'{"id": "x", "method": "textDocument/hover", "params": {"textDocument": 3}}', -32602),
                           (b'{"id": "x", "method": "textDocument/hover", "params": []}', -32602),
                           (b'{"id": "x", "method": "textDocument/hover", '
                            b'"params": {"textDocument": {"uri": "file:///none"}, "position": {}}}', -32602),
                           (b"[" * 100000 + b"]" * 100000, -32600),
                           (b'{"method": "$/cancelRequest", "params": {"id": ' + b"[" * 9999, -32600)):
            client.messages.clear()
            client.send(frame(body))
            self.assertEqual(client.receive(20)["error"]["code"], code, body[:80])
        for body in (b'{"method": "textDocument/didChange", "params": {}}', b'{"id": "y", "result": {}}',
                     b'{"method": "$/cancelRequest", "params": {"id": [1]}}', b'{"method": "none"}'):
            client.send(frame(body))
        self.assertEqual(client.end(), 0)

    def test_knows_the_life_of_a_session(self):
        client = self.start(initialize=False)
        with self.assertRaisesRegex(Refused, "-32002"):
            client.request("textDocument/hover", {})
        client.notify("exit", {})
        self.assertEqual(client.process.wait(10), 1)


class Texts(Sessions):
    def test_follow_random_edits_in_both_encodings(self):
        """Behind each burst of edits the server formats the text; what it leaves is what was kept here."""
        for encoding, units in (("utf-16", lambda t: len(t.encode("utf-16-le")) // 2),
                                ("utf-8", lambda t: len(t.encode()))):
            client = self.start(capabilities={"general": {"positionEncodings": [encoding]}})
            self.assertEqual(client.capabilities["positionEncoding"], encoding)
            chosen = random.Random(encoding)
            text = "// a\n"
            uri = client.open("random.kcf", text)
            pieces = ["\n", "\r\n", "\r", "x", "\u00e4", "\U0001f30a", "// \u20ac\n", "A {\n", "}\n", " b = 1\n", ""]
            for version in range(2, 60):
                changes = []
                for _ in range(chosen.randrange(1, 6)):
                    begin = chosen.randrange(len(text) + 1)
                    end = min(len(text), begin + chosen.choice((0, 0, 1, 2, 9)))
                    if text[begin - 1:begin + 1] == "\r\n" or text[end - 1:end + 1] == "\r\n":
                        continue  # no client counts within a line end
                    ends = []
                    for at in (begin, end):
                        lines = text[:at].replace("\r\n", "\n").replace("\r", "\n").split("\n")
                        ends.append((len(lines) - 1, units(lines[-1])))
                    fresh = "".join(chosen.choices(pieces, k=chosen.randrange(4)))
                    text = text[:begin] + fresh + text[end:]
                    changes.append(edit(*ends, fresh))
                if not changes:
                    continue
                client.change(uri, version, *changes)
                ranges = client.request("textDocument/selectionRange", {
                    "textDocument": {"uri": uri}, "positions": [place(0, 0), place(10 ** 6, 0)]})
                for found in ranges:
                    while "parent" in found:
                        found = found["parent"]
                    lines = text.replace("\r\n", "\n").replace("\r", "\n").split("\n")
                    self.assertEqual(found["range"]["end"], place(len(lines) - 1, units(lines[-1])), repr(text))

    def test_tell_what_is_wrong_with_the_newest(self):
        client = self.start(capabilities={"textDocument": {"publishDiagnostics": {"relatedInformation": True}}})
        uri = client.open("new.kcf", FAULTY)
        self.assertIn("unknown-tag", [told["code"] for told in client.diagnostics(uri, 1)])
        client.change(uri, 2, edit((1, 2), (1, 7), "title"))
        client.change(uri, 3, edit((5, 21), (5, 24), "\U0001f30a"))
        told = client.diagnostics(uri, 3)
        self.assertNotIn("unknown-tag", [each["code"] for each in told])
        [wrong] = [each for each in told if each["code"] == "not-an-integer"]
        self.assertEqual(wrong["range"], span((5, 21), (5, 23)))
        client.notify("textDocument/didClose", {"textDocument": {"uri": uri}})
        self.assertEqual(client.diagnostics(uri), [])

    def test_are_held_against_kcf_check(self):
        for path in sorted(EXAMPLES.glob("*/*.kcf")):
            with Client(KCF, path.parent) as client:
                told = client.diagnostics(client.open(path), 1)
            done = subprocess.run([KCF, "check", "--format", "github", path], capture_output=True, text=True,
                                  check=False)
            self.assertEqual(len(told), done.stdout.count("::error") + done.stdout.count("::warning"), path)

    def test_are_checked_again_when_their_files_change(self):
        client = self.start()
        uri = client.open("setup.kcf")
        self.assertEqual(client.diagnostics(uri, 1), [])
        for content, count in (("0 1\n1 2 3\n", 1), ("0 10\n3600 25\n7200 12\n", 0)):
            time.sleep(0.1)
            (self.folder / "inflow.txt").write_text(content)
            client.messages.clear()
            client.notify("workspace/didChangeWatchedFiles", {"changes": []})
            self.assertEqual(len(client.diagnostics(uri, 1)) > 0, count > 0)

    def test_may_name_files_that_are_not_opened(self):
        (self.folder / "inflow.txt").unlink()
        for options, fails in (({}, True), ({"readFiles": False}, False), ({"directory": ".."}, True)):
            client = self.start(options=options)
            told = client.diagnostics(client.open("setup.kcf"), 1)
            self.assertEqual("inflow.txt" in str(told), fails, options)


class Completion(Sessions):
    def labels(self, client, uri, where, resolve=None):
        found = client.request("textDocument/completion", {"textDocument": {"uri": uri}, "position": where})
        items = sorted(found["items"], key=lambda item: item["sortText"])
        self.items = {item["label"]: item for item in items}
        return [item["label"] for item in items]

    def test_of_values(self):
        client = self.start()
        uri = client.open("setup.kcf")
        for behind, first in (("type = strick", "manning"), ("string_name = in", "inflow"),
                              ("STRINGDEF {\n        name = in", "inflow"), ("file = chan", "channel.kgf"),
                              ("position = ri", "floodplain"), ("position = river.main", "river.main_weir"),
                              ("position = river.km", "river.km_0000"), ("downstream_interface = ", "from_river"),
                              ("zone = gra", "gravel"), ("kestchain = ", "river"), ("iter_exchange = ", "1"),
                              ("coefficients = ma", "main_weir_crest"), ("file = inf", "connections.txt"),
                              ("values = ( depth ", "depth"), ("external_interface = sur", "surface")):
            self.assertEqual(self.labels(client, uri, self.at(behind))[:1], [first], behind)

    def test_of_names_puts_the_needed_first(self):
        client = self.start(capabilities=SNIPPETS)
        begin = "DOMAIN {\n  KESTPLANE_2D {\n    HYDRAULICS {\n      BOUNDARY {\n        "
        text = begin + "type = weir\n        \n      }\n    }\n  }\n}\n"
        uri = client.open("new.kcf", text)
        labels = self.labels(client, uri, self.at("weir\n        ", text))
        self.assertEqual(labels[:1], ["string_name"])
        self.assertNotIn("type", labels)
        self.assertLess(labels.index("file"), labels.index("slope"))
        resolved = client.request("completionItem/resolve", self.items["file"])
        self.assertNotIn("documentation", self.items["file"])
        self.assertRegex(resolved["documentation"]["value"], "(?s)^\\*\\*file.*Value: ")
        client.change(uri, 2, edit((4, 8), (4, 19), "t"))
        self.assertIn("type", self.labels(client, uri, place(4, 9)))
        self.assertEqual(self.items["type"]["textEdit"]["range"], span((4, 8), (4, 9)))
        self.assertRegex(self.items["type"]["textEdit"]["newText"], r"^type = \$\{1\|\w+,")
        client.change(uri, 3, {"text": "DOMAIN {}"})
        self.assertEqual(self.labels(client, uri, place(0, 8))[:1], ["multiregion"])
        self.assertTrue(self.items["KESTPLANE_2D"]["textEdit"]["newText"].startswith(" KESTPLANE_2D {\n"))
        self.assertIsNone(client.request("textDocument/completion", {
            "textDocument": {"uri": uri}, "position": place(0, 8),
            "context": {"triggerKind": 2, "triggerCharacter": " "}}))
        client.change(uri, 4, {"text": "// DOM"})
        self.assertEqual(self.labels(client, uri, place(0, 6)), [])
        client.change(uri, 5, {"text": "NONE {\n  "})
        self.assertEqual(self.labels(client, uri, place(1, 2)), [])

    def test_of_blocks_writes_what_converts_or_tells_what_is_missing(self):
        """No block comes with a fault but for what it names elsewhere."""
        client = self.start()
        text = "DOMAIN {\n  multiregion = a\n  \n}\n"
        uri = client.open("new.kcf", text)
        self.labels(client, uri, place(2, 2))
        for number, (label, item) in enumerate(sorted(self.items.items())):
            if item["kind"] == 9:
                fresh = applied(text, [item["textEdit"]])
                version = number + 2
                client.change(uri, version, {"text": fresh})
                codes = {told["code"] for told in client.diagnostics(uri, version)}
                self.assertFalse(codes & {"missing-tag", "unknown-tag", "missing-value", "not-a-choice"}, (label, codes))
                client.change(uri, version, {"text": text})


class Places(Sessions):
    def ask(self, client, uri, method, behind, **more):
        return client.request("textDocument/" + method, {"textDocument": {"uri": uri}, "position": self.at(behind),
                                                         **more})

    def line(self, number):
        return (self.text.splitlines() + [""])[number]

    def test_hover_tells_what_the_manual_and_the_files_say(self):
        client = self.start()
        uri = client.open("setup.kcf")
        for behind, told in (("KESTCH", r"\*\*KESTCHAIN_1D\*\* \(block"), ("wall_fric", "Value: One of 'on', 'off'"),
                             ("slope", "per mill"), ("type = strick", r"\*\*type\*\*"), ("file = inflow", "3 rows of 2 numbers, "
                              "from 0 to 7200"), ("file = floodplain", r"(?s)3 nodes|nodes.*'inflow', 'outflow'"),
                             ("name = main_w", "(?s)used by `upstream_interface`.*used by `position`"),
                             ("name = inf", "(?s)`string_name` of BOUNDARY.*node string of floodplain.2dm")):
            found = self.ask(client, uri, "hover", behind)
            self.assertRegex(found["contents"]["value"], told, behind)
        self.assertIsNone(self.ask(client, uri, "hover", "// A riv"))

    def test_names_lead_to_where_they_are_given(self):
        client = self.start()
        uri = client.open("setup.kcf")
        for behind, target in (("string_name = inf", "name = inflow"), ("upstream_interface = main", "name = main_weir"),
                               ("position = river.main", "name = main_weir"), ("position = river.km", "cross_section_order"),
                               ("position = riv", "region_name = river"), ("kestchain = RIV", "region_name = river"),
                               ("zone = gra", "name = gravel"), ("kestrix_interface = to", "name = to_plant"),
                               ("coefficients = main", "name = main_weir_crest")):
            found = self.ask(client, uri, "definition", behind)
            self.assertEqual(len(found), 1, (behind, found))
            self.assertIn(target, self.line(found[0]["range"]["start"]["line"]), behind)
        for behind, file, line in (("STRINGDEF {\n        name = inf", "floodplain.2dm", 11), ("file = inf", "inflow.txt", 0)):
            found = self.ask(client, uri, "definition", behind)
            self.assertEqual((found[0]["uri"].rsplit("/")[-1], found[0]["range"]["start"]["line"]), (file, line))
        uses = self.ask(client, uri, "references", "region_name = flood", context={"includeDeclaration": False})
        self.assertEqual(len(uses), self.text.count("= floodplain\n") - 1)
        kinds = [each["kind"] for each in self.ask(client, uri, "documentHighlight", "zone = gra")]
        self.assertEqual(sorted(kinds), [2, 3])
        names = client.request("workspace/symbol", {"query": "main_weir"})
        self.assertEqual({each["name"] for each in names if each["location"]["uri"] == uri},
                         {"main_weir", "main_weir_crest"})

    def test_rename_changes_blocks_and_meshes_or_nothing(self):
        client = self.start()
        uri = client.open("setup.kcf")
        client.diagnostics(uri, 1)
        for version, (behind, old, fresh, files) in enumerate((
                ("string_name = inf", "inflow", "einlauf", {"setup.kcf", "floodplain.2dm"}),
                ("upstream_interface = main", "main_weir", "wehr", {"setup.kcf"}),
                ("position = riv", "river", "fluss", {"setup.kcf"})), 2):
            asked = self.ask(client, uri, "prepareRename", behind)
            self.assertEqual(asked["placeholder"], old)
            changes = self.ask(client, uri, "rename", behind, newName=fresh)["changes"]
            self.assertEqual({name.rsplit("/")[-1] for name in changes}, files)
            for name, edits in changes.items():
                path = self.folder / name.rsplit("/")[-1]
                path.write_text(applied(path.read_text(), edits))
            self.text = (self.folder / "setup.kcf").read_text()
            client.change(uri, version, {"text": self.text})
            client.notify("textDocument/didSave", {"textDocument": {"uri": uri}})
            self.assertEqual(client.diagnostics(uri, version), [], fresh)
        for behind, fresh, reason in (("string_name = ein", "outflow", "has a node string 'outflow' already"),
                                      ("position = flu", "a b", "is no name"), ("PROJ", "x", "no name here")):
            with self.assertRaisesRegex(Refused, reason):
                self.ask(client, uri, "rename", behind, newName=fresh)
        (self.folder / "floodplain.2dm").unlink()
        with self.assertRaisesRegex(Refused, "cannot be read"):
            self.ask(client, uri, "rename", "string_name = ein", newName="x")


class Mending(Sessions):
    def test_quick_fixes_and_all_of_them(self):
        client = self.start()
        text = FAULTY.replace("number_threads", "number_thread")
        uri = client.open("new.kcf", text)
        told = client.diagnostics(uri, 1)
        actions = client.request("textDocument/codeAction", {
            "textDocument": {"uri": uri}, "range": span((1, 3), (1, 3)), "context": {"diagnostics": told}})
        self.assertEqual([each["kind"] for each in actions], ["quickfix", "source.fixAll"])
        self.assertIn("title = demo", applied(text, actions[0]["edit"]["changes"][uri]))
        path = self.folder / "fixed.kcf"
        path.write_text(text)
        subprocess.run([KCF, "check", "--fix", path], capture_output=True, check=False)
        self.assertEqual(applied(text, actions[1]["edit"]["changes"][uri]), path.read_text())
        only = client.request("textDocument/codeAction", {
            "textDocument": {"uri": uri}, "range": span((1, 3), (1, 3)),
            "context": {"diagnostics": told, "only": ["source"]}})
        self.assertEqual([each["kind"] for each in only], ["source.fixAll"])

    def test_formatting_is_that_of_kcf_format(self):
        client = self.start()
        untidy = "\n".join("\t" + line.strip() for line in self.text.split("\n"))
        uri = client.open("setup.kcf", untidy)
        edits = client.request("textDocument/formatting", {"textDocument": {"uri": uri}, "options": {}})
        done = subprocess.run([KCF, "format", "-"], input=untidy, capture_output=True, text=True, check=True)
        self.assertEqual(applied(untidy, edits), done.stdout)
        some = client.request("textDocument/rangeFormatting", {
            "textDocument": {"uri": uri}, "options": {}, "range": span((3, 0), (3, 4))})
        changed = [i for i, (a, b) in enumerate(zip(untidy.split("\n"), applied(untidy, some).split("\n"))) if a != b]
        self.assertTrue(changed and set(changed) <= {2, 3, 4}, changed)
        client.change(uri, 2, {"text": "A {"})
        self.assertIsNone(client.request("textDocument/formatting", {"textDocument": {"uri": uri}, "options": {}}))


class Structure(Sessions):
    def test_of_the_whole_file(self):
        client = self.start(capabilities={"textDocument": {"documentSymbol": {"hierarchicalDocumentSymbolSupport": True}}})
        uri = client.open("setup.kcf")
        ask = lambda method, **more: client.request("textDocument/" + method, {"textDocument": {"uri": uri}, **more})
        symbols = ask("documentSymbol")
        self.assertEqual([each["name"] for each in symbols], ["PROJECT", "DOMAIN"])
        self.assertEqual([(each["name"], each["detail"]) for each in symbols[1]["children"]][1:3],
                         [("KESTCHAIN_1D", "river"), ("KESTPLANE_2D", "floodplain")])
        folds = [(each["startLine"], each["endLine"]) for each in ask("foldingRange")]
        self.assertEqual((folds[0], folds[-1]), ((2, 3), (0, 1)))
        targets = [each["target"].rsplit("/")[-1] for each in ask("documentLink")]
        self.assertEqual(sorted(set(targets)), ["channel.kgf", "connections.txt", "floodplain.2dm", "head.txt",
                                                "inflow.txt", "target.txt"])
        hints = {each["position"]["line"]: each["label"] for each in ask("inlayHint", range=span((0, 0), (300, 0)))}
        self.assertEqual({"m", "m2", "per mill", "s"} - set(hints.values()), set())
        self.assertEqual(hints[self.text[:self.text.index("slope")].count("\n")], "per mill")

    def test_tokens_cover_names_and_values_in_order(self):
        client = self.start()
        uri = client.open("setup.kcf")
        legend = client.capabilities["semanticTokensProvider"]["legend"]["tokenTypes"]
        for method, more in (("full", {}), ("range", {"range": span((0, 0), (999, 0))})):
            data = client.request("textDocument/semanticTokens/" + method, {"textDocument": {"uri": uri}, **more})["data"]
            line = character = 0
            found = {}
            lines = self.text.splitlines()
            for i in range(0, len(data), 5):
                character = character + data[i + 1] if data[i] == 0 else data[i + 1]
                line += data[i]
                found.setdefault(legend[data[i + 3]], []).append(lines[line][character:character + data[i + 2]])
            self.assertEqual(found["class"].count("BOUNDARY"), self.text.count("BOUNDARY {"))
            self.assertIn("minimum_water_depth", found["property"])
            self.assertIn("0.05", found["number"])
            self.assertIn("strickler", found["enumMember"])
            self.assertIn("channel.kgf", found["string"])
            self.assertEqual(len(found["comment"]), 2)


class Endurance(Sessions):
    def memory(self, client):
        fields = Path(f"/proc/{client.process.pid}/statm").read_text().split()
        return int(fields[1]) * os.sysconf("SC_PAGE_SIZE")

    def test_cancelled_requests_are_answered_as_such(self):
        client = self.start()
        uri = client.open("setup.kcf", self.text * 200)
        numbers = [client.begin("textDocument/documentSymbol", {"textDocument": {"uri": uri}}) for _ in range(6)]
        for number in numbers[1:]:
            client.notify("$/cancelRequest", {"id": number})
        self.assertIsInstance(client.answer(numbers[0]), list)
        with self.assertRaisesRegex(Refused, "-32800"):
            client.answer(numbers[-1])

    @unittest.skipIf("KESTRIX_SANITIZED" in os.environ, "the sanitizer keeps what is given back")
    def test_a_thousand_edits_leave_no_memory_behind(self):
        client = self.start()
        uri = client.open("setup.kcf")
        version = 1
        sizes = []
        for _ in range(4):
            for _ in range(250):
                version += 2
                client.change(uri, version - 1, edit((3, 2), (3, 2), "x"))
                client.change(uri, version, edit((3, 2), (3, 3), ""))
                client.request("textDocument/completion", {"textDocument": {"uri": uri}, "position": place(14, 8)})
            client.request("textDocument/foldingRange", {"textDocument": {"uri": uri}})
            sizes.append(self.memory(client))
        self.assertLess(sizes[-1], sizes[1] + 4e6, sizes)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
