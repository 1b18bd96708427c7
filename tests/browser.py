"""A headless browser for tests, driven by its WebDriver.

KESTRIX_SCREENSHOTS=DIR keeps what the tests look at.
"""
import base64
import json
import os
import shutil
import socket
import subprocess
import time
import urllib.error
import urllib.request
from pathlib import Path

SCREENSHOTS = os.environ.get("KESTRIX_SCREENSHOTS")
PATIENCE = 300  # seconds; a busy machine takes long to print hundreds of pages
ELEMENT = "element-6066-11e4-a52e-4f735466cecf"  # the key of an element in the protocol
CHROMIUM = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
            "--disable-background-networking", "--disable-component-update", "--disable-sync",
            "--disable-dev-shm-usage"]
START_LIMIT = 60


class Browser:
    """A headless browser that is driven by its WebDriver."""

    def __init__(self, folder, arguments=[]):
        with socket.socket() as probe:
            probe.bind(("127.0.0.1", 0))
            port = probe.getsockname()[1]
        self.url = f"http://127.0.0.1:{port}"
        self.opener = urllib.request.build_opener(urllib.request.ProxyHandler({}))
        with (Path(folder) / "driver.log").open("wb") as log:
            self.driver = subprocess.Popen([shutil.which("chromedriver"), f"--port={port}"], stdout=log, stderr=log)
        end = time.monotonic() + START_LIMIT
        while not self.is_ready():
            if time.monotonic() > end or self.driver.poll() is not None:
                raise RuntimeError("the driver of the browser does not start: " + (Path(folder) / "driver.log").read_text())
            time.sleep(0.1)
        options = {"args": CHROMIUM + arguments + [f"--user-data-dir={folder}/profile"], "binary": shutil.which("chromium")}
        wanted = {"goog:chromeOptions": options, "timeouts": {"script": 1000 * PATIENCE}}
        session = self.ask("POST", "/session", {"capabilities": {"alwaysMatch": wanted}})
        self.url += "/session/" + session["sessionId"]

    def is_ready(self):
        try:
            return self.ask("GET", "/status")["ready"]
        except OSError:
            return False

    def ask(self, method, path, body=None):
        data = None if body is None else json.dumps(body).encode()
        request = urllib.request.Request(self.url + path, data, {"Content-Type": "application/json"}, method=method)
        try:
            with self.opener.open(request, timeout=PATIENCE) as answer:
                return json.load(answer)["value"]
        except urllib.error.HTTPError as fault:
            raise RuntimeError(fault.read().decode()) from fault

    def open(self, path):
        self.ask("POST", "/url", {"url": path})

    def run(self, script, *arguments):
        return self.ask("POST", "/execute/sync", {"script": script, "args": list(arguments)})

    def find(self, selector):
        return self.ask("POST", "/element", {"using": "css selector", "value": selector})[ELEMENT]

    def click(self, selector):
        self.ask("POST", f"/element/{self.find(selector)}/click", {})

    def type(self, selector, text):
        self.ask("POST", f"/element/{self.find(selector)}/value", {"text": text})

    def press(self, key):
        actions = [{"type": kind, "value": key} for kind in ("keyDown", "keyUp")]
        self.ask("POST", "/actions", {"actions": [{"type": "key", "id": "keys", "actions": actions}]})

    def command(self, name, **parameters):
        return self.ask("POST", "/goog/cdp/execute", {"cmd": name, "params": parameters})

    def resize(self, width, height, is_mobile=False):
        self.command("Emulation.setDeviceMetricsOverride", width=width, height=height,
                     deviceScaleFactor=2 if is_mobile else 1, mobile=is_mobile)

    def keep_screenshot(self, name):
        if SCREENSHOTS:
            (Path(SCREENSHOTS) / name).write_bytes(base64.b64decode(self.ask("GET", "/screenshot")))

    def close(self):
        try:
            self.ask("DELETE", "")
        finally:
            self.driver.terminate()
            self.driver.wait()
