#!/usr/bin/env python3
"""Edits a setup in neovim, whose own client starts kcf language-server.

    neovim_test.py KCF EXAMPLES
"""
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

KCF = Path(sys.argv[1]).resolve()
EXAMPLES = Path(sys.argv[2]).resolve()
FAULTY = "PROJECT {\n  titel = demo\n}\nDOMAIN {\n  multiregion = a\n}\n"


class Neovim(unittest.TestCase):
    def test_works_on_a_setup(self):
        with tempfile.TemporaryDirectory() as name:
            folder = Path(name)
            shutil.copytree(EXAMPLES / "linked-regions", folder / "setup")
            (folder / "faulty.kcf").write_text(FAULTY)
            environment = {**os.environ, "KCF": str(KCF), "SETUP": str(folder / "setup/setup.kcf"),
                           "FAULTY": str(folder / "faulty.kcf"), "HOME": name, "XDG_STATE_HOME": name,
                           "XDG_CACHE_HOME": name, "TERM": "xterm"}
            done = subprocess.run(["nvim", "--clean", "--headless", "-n", "-c",
                                   "luafile " + str(Path(__file__).parent / "neovim.lua")],
                                  env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                  stderr=subprocess.STDOUT, timeout=120, text=True, check=False)
            self.assertEqual(done.returncode, 0, done.stdout)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
