#!/usr/bin/env python3
"""Lets the client library of npm speak with kcf language-server, and the compiler of its types judge the answers.

    peer_test.py KCF EXAMPLES

KESTRIX_NPM names the folder into which scripts/install-npm fetched the packages.
"""
import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

KCF = Path(sys.argv[1]).resolve()
EXAMPLES = Path(sys.argv[2]).resolve()
NPM = Path(os.environ["KESTRIX_NPM"])
MODULES = NPM / "vscode-languageserver-protocol_3.17.5/node_modules"
COMPILER = NPM / "typescript_5.4.5/node_modules/typescript/bin/tsc"


class Peer(unittest.TestCase):
    def test_understands_each_answer(self):
        with tempfile.TemporaryDirectory() as name:
            folder = Path(name)
            shutil.copytree(EXAMPLES / "linked-regions", folder / "setup")
            (folder / "node_modules").symlink_to(MODULES)
            shutil.copy(Path(__file__).parent / "peer.js", folder)
            done = subprocess.run(["node", "peer.js", KCF, folder / "setup", "messages.ts"], cwd=folder, timeout=180,
                                  stderr=subprocess.PIPE, text=True, check=False)
            self.assertEqual(done.returncode, 0, done.stderr)
            messages = (folder / "messages.ts").read_text()
            self.assertGreater(messages.count("check<"), 60)
            self.assertEqual(self.compile(folder), "")
            # The types do find what is wrong.
            for right, wrong in (('"selectionRange"', '"selectionRang"'), ('"kind":"quickfix"', '"kind":3'),
                                 ('"positionEncoding":"utf-16"', '"positionEncoding":16')):
                self.assertIn(right, messages)
                messages = messages.replace(right, wrong, 1)
            (folder / "messages.ts").write_text(messages)
            self.assertGreaterEqual(self.compile(folder).count("error TS"), 3)

    def compile(self, folder):
        (folder / "tsconfig.json").write_text(json.dumps({
            "compilerOptions": {"strict": True, "noEmit": True, "skipLibCheck": True, "target": "es2020",
                                "module": "node16", "moduleResolution": "node16", "types": [],
                                "preserveSymlinks": True},
            "files": ["messages.ts"]}))
        return subprocess.run(["node", COMPILER, "-p", "."], cwd=folder, text=True, timeout=180,
                              stdout=subprocess.PIPE, check=False).stdout[:3000]


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
