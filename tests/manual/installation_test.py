#!/usr/bin/env python3
"""Installs the programs and uses their manual pages and completions: the pages in the programs that show
them, the completions in the shells themselves.

    installation_test.py CMAKE BUILD-FOLDER
"""
import os
import pty
import re
import select
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

CMAKE, BUILD = sys.argv[1:3]
WAIT_LIMIT = 20
PROMPT = "READY>"


class Shell:
    """An interactive shell in which the programs only show their arguments."""

    def __init__(self, command, folder, prepare):
        self.process, self.terminal = pty.fork()
        if self.process == 0:
            os.chdir(folder)
            os.environ.update(HOME=str(folder), TERM="dumb", LC_ALL="C.UTF-8")
            os.execvp(command[0], command)
        self.send(f"PS1='REA''DY>'; {prepare}; kcf() {{ printf '[%s]' \"$@\"; }}; main-converter() {{ kcf \"$@\"; }}\n")

    def send(self, text):
        """What the shell shows from then on to its next prompt."""
        os.write(self.terminal, text.encode())
        shown, end = "", time.monotonic() + WAIT_LIMIT
        while not shown.rstrip().endswith(PROMPT):
            if not select.select([self.terminal], [], [], max(0, end - time.monotonic()))[0]:
                raise AssertionError(f"the shell hangs at {text!r}: {shown!r}")
            shown += os.read(self.terminal, 65536).decode(errors="replace")
        return shown

    def arguments(self, line):
        """The arguments of a program after the tabulators in `line` did their work."""
        return re.findall(r"\[([^\[\]]*)\]", self.send(line + "\n").split("\n", 1)[1])

    def close(self):
        os.close(self.terminal)
        os.waitpid(self.process, 0)


class Installation(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(temporary.cleanup)
        cls.prefix = Path(temporary.name) / "prefix"
        subprocess.run([CMAKE, "--install", BUILD, "--prefix", cls.prefix], check=True, stdout=subprocess.DEVNULL)
        cls.share = cls.prefix / "share"
        cls.folder = Path(temporary.name) / "work"
        cls.folder.mkdir()
        (cls.folder / "setup of mine.kcf").touch()

    def program(self, name, *arguments):
        return subprocess.run([self.prefix / "bin" / name, *arguments], capture_output=True, text=True, check=True).stdout

    def verbs(self):
        return re.findall(r"^  ([a-z-]+)  ", self.program("kcf", "--help").split("\nOptions:")[0], re.MULTILINE)

    def test_the_help_fits_a_screen(self):
        text = self.program("kcf", "--help")
        self.assertLessEqual(len(text.split("\n")), 40)
        for verb in self.verbs():
            text += self.program("kcf", verb, "--help")
        self.assertEqual([line for line in text.split("\n") if len(line) > 100], [])

    def test_each_program_and_verb_has_a_manual_page(self):
        pages = {path.stem: path for path in (self.share / "man/man1").iterdir()}
        self.assertEqual(set(pages), {"kcf", "main-converter"} | {"kcf-" + verb for verb in self.verbs()})
        for name, path in pages.items():
            for check in (["mandoc", "-T", "lint", "-W", "warning"], ["groff", "-ww", "-man", "-T", "utf8", "-z"]):
                done = subprocess.run([*check, path], capture_output=True, text=True, check=False)
                self.assertEqual((done.returncode, done.stdout + done.stderr), (0, ""), name)
            shown = subprocess.run(["man", "-l", path], capture_output=True, text=True, check=True,
                                   env={**os.environ, "MANWIDTH": "100", "LC_ALL": "C.UTF-8"}).stdout
            for link in re.findall(r"([a-z-]+)\(1\)", shown):
                self.assertIn(link, pages, name)
            # What the page says of options is what the program's own help says.
            words = name.split("-", 1) if name.startswith("kcf-") else [name]
            options = set(re.findall(r"--[a-z_]+", self.program(*words, "--help")))
            self.assertLessEqual(options, set(re.findall(r"--[a-z_]+", shown)), name)

    def check_completions(self, shell):
        try:
            for line, expected in (("kcf templ\t", ["template"]),
                                   ("kcf --vers\t", ["--version"]),
                                   ("kcf vocabulary --he\t", ["vocabulary", "--help"]),
                                   ("kcf manual -o setu\t", ["manual", "-o", "setup of mine.kcf"]),
                                   ("kcf manual --output=setu\t", ["manual", "--output=setup of mine.kcf"]),
                                   ("kcf template /PROJ\t", ["template", "/PROJECT"]),
                                   ("kcf template /PROJECT /DOMAIN/PAR\t", ["template", "/PROJECT", "/DOMAIN/PARALLEL"]),
                                   ("main-converter setu\t", ["setup of mine.kcf"]),
                                   ("main-converter -o setu\t", ["-o", "setup of mine.kcf"]),
                                   ("main-converter --vers\t", ["--version"])):
                with self.subTest(line):
                    self.assertEqual(shell.arguments(line), expected)
        finally:
            shell.close()

    def test_bash_completes(self):
        folder = self.share / "bash-completion/completions"
        self.check_completions(Shell(["bash", "--noprofile", "--norc", "-i"], self.folder,
                                     f"bind 'set enable-bracketed-paste off'; . {folder}/kcf; . {folder}/main-converter"))

    def test_zsh_completes(self):
        self.check_completions(Shell(["zsh", "-f", "-i"], self.folder,
                                     f"unsetopt zle_bracketed_paste 2>/dev/null; unset zle_bracketed_paste; "
                                     f"fpath=({self.share}/zsh/site-functions $fpath); autoload -U compinit; compinit -u -D"))

    def test_fish_completes(self):
        def completed(line):
            return subprocess.run(["fish", "--no-config", "-c",
                                   f"for f in {self.share}/fish/vendor_completions.d/*; source $f; end; complete -C '{line}'"],
                                  capture_output=True, text=True, check=True, cwd=self.folder,
                                  env={**os.environ, "HOME": str(self.folder)}).stdout

        for line, expected in (("kcf templ", "template\t"), ("kcf vocabulary --he", "--help\t"),
                               ("kcf manual -o setu", "setup of mine.kcf"), ("kcf template /PROJ", "/PROJECT"),
                               ("main-converter setu", "setup of mine.kcf"), ("main-converter -o setu", "setup of mine.kcf")):
            with self.subTest(line):
                self.assertIn(expected, completed(line))
        self.assertEqual(completed("kcf setu"), "")


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], "-v"])
