"""A client of the language server, as plain as can be."""
import json
import os
import select
import subprocess
import time
from pathlib import Path


def frame(message):
    body = message if isinstance(message, bytes) else json.dumps(message).encode()
    return b"Content-Length: %d\r\n\r\n" % len(body) + body


class Refused(Exception):
    """The answer to a request is an error; its arguments are code and message."""


class Client:
    """Starts a server; `messages` are all that it sent."""

    def __init__(self, program, folder=".", capabilities=None, options=None, initialize=True):
        self.process = self.start(program)
        self.buffer = b""
        self.messages = []
        self.last = 0
        self.folder = Path(folder).resolve()
        if initialize:
            self.capabilities = self.request("initialize", {
                "processId": os.getpid(), "rootUri": self.folder.as_uri(), "capabilities": capabilities or {},
                "initializationOptions": {"checkDelay": 20, **(options or {})}})["capabilities"]
            self.notify("initialized", {})

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()
        for stream in (self.process.stdin, self.process.stdout, self.process.stderr):
            if stream:
                stream.close()

    def start(self, program):
        return subprocess.Popen([program, "language-server", "--stdio"], stdin=subprocess.PIPE,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def reply(self, number, result):
        self.send(frame({"jsonrpc": "2.0", "id": number, "result": result}))

    def send(self, data):
        self.process.stdin.write(data)
        self.process.stdin.flush()

    def notify(self, method, params):
        self.send(frame({"jsonrpc": "2.0", "method": method, "params": params}))

    def begin(self, method, params):
        self.last += 1
        self.send(frame({"jsonrpc": "2.0", "id": self.last, "method": method, "params": params}))
        return self.last

    def request(self, method, params, timeout=60):
        return self.answer(self.begin(method, params), timeout)

    def answer(self, number, timeout=60):
        message = self.wait(lambda each: each.get("id") == number and "method" not in each, timeout)
        if "error" in message:
            raise Refused(message["error"]["code"], message["error"]["message"])
        return message["result"]

    def receive(self, timeout):
        """The next message of the server; None when there is none in time."""
        end = time.monotonic() + timeout
        while True:
            head, _, rest = self.buffer.partition(b"\r\n\r\n")
            length = int(head.split(b":")[1]) if _ else 0
            if _ and len(rest) >= length:
                self.buffer = rest[length:]
                message = json.loads(rest[:length])
                self.messages.append(message)
                return message
            if not select.select([self.process.stdout], [], [], max(0, end - time.monotonic()))[0]:
                return None
            piece = os.read(self.process.stdout.fileno(), 1 << 20)
            if not piece:
                return None
            self.buffer += piece

    def wait(self, wanted, timeout=60):
        """The next message, or one that came meanwhile, for which `wanted` holds."""
        for message in self.messages:
            if wanted(message):
                return message
        end = time.monotonic() + timeout
        while message := self.receive(end - time.monotonic()):
            if wanted(message):
                return message
        raise TimeoutError(f"the server sent {self.messages[-3:]}")

    def open(self, path, text=None):
        uri = (self.folder / path).as_uri()
        text = (self.folder / path).read_text() if text is None else text
        self.notify("textDocument/didOpen", {"textDocument": {
            "uri": uri, "languageId": "kcf", "version": 1, "text": text}})
        return uri

    def change(self, uri, version, *changes):
        self.notify("textDocument/didChange", {"textDocument": {"uri": uri, "version": version},
                                               "contentChanges": list(changes)})

    def diagnostics(self, uri, version=None, timeout=60):
        """What the server tells of a version of a file."""
        return self.wait(lambda each: each.get("method") == "textDocument/publishDiagnostics"
                         and each["params"]["uri"] == uri
                         and each["params"].get("version") == version, timeout)["params"]["diagnostics"]

    def end(self):
        self.request("shutdown", None)
        self.notify("exit", {})
        return self.process.wait(10)


def edit(begin, end, text):
    """A change of the text between two (line, character)."""
    return {"range": span(begin, end), "text": text}


def span(begin, end):
    return {"start": place(*begin), "end": place(*end)}


def place(line, character):
    return {"line": line, "character": character}


def applied(text, edits):
    """A text of plain letters with edits of the protocol."""
    starts = [0]
    for line in text.splitlines(keepends=True):
        starts.append(starts[-1] + len(line))
    for each in sorted(edits, key=lambda e: (e["range"]["start"]["line"], e["range"]["start"]["character"]),
                       reverse=True):
        begin, end = (starts[p["line"]] + p["character"] for p in (each["range"]["start"], each["range"]["end"]))
        text = text[:begin] + each["newText"] + text[end:]
    return text
