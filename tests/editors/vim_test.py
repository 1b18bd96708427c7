#!/usr/bin/env python3
"""Opens command files in Vim and Neovim, without a terminal.

    vim_test.py VIM-PROGRAM KCF PROJECT-FOLDER
"""
import json
import os
import subprocess
import sys
import unittest
from pathlib import Path

import tables

VIM = sys.argv[1]
KCF = Path(sys.argv[2]).resolve()
PROJECT = Path(sys.argv[3]).resolve()
PLUGIN = PROJECT / "editors/vim"
IS_NEOVIM = Path(VIM).name == "nvim"

KINDS = {"kcfLineComment": "comment", "kcfBlockComment": "comment", "kcfBlock": "block",
         "kcfNumberTag": "tag", "kcfChoiceTag": "tag", "kcfMixedTag": "tag", "kcfTextTag": "tag",
         "kcfChoice": "choice", "kcfNumber": "number", "kcfTextValue": "text", "kcfTextList": "text",
         "kcfFault": "fault", "kcfNoValue": "fault",
         "kcfNoList": "fault"}


class Editing(tables.Colours, tables.Folder):
    project = PROJECT

    def edit(self, name, script, serves=False):
        """Opens a file, runs lines of Vim script, and returns what they leave in `g:told`."""
        told = self.folder / "told.json"
        lines = [*script, f"call writefile([json_encode(g:told)], '{told}')", "qall!"]
        (self.folder / "script.vim").write_text("\n".join(lines) + "\n")
        start = ["--headless"] if IS_NEOVIM else ["-e", "-s"]
        done = subprocess.run(
            [VIM, "-u", "NONE", "-i", "NONE", "-n", *start, "--cmd", "set nocompatible",
             "--cmd", f"set runtimepath^={PLUGIN}", "--cmd", "filetype plugin indent on | syntax on",
             "--cmd", f"let g:kcf_server = v:{str(serves).lower()}", name, "-S", "script.vim"],
            cwd=self.folder, stdin=subprocess.DEVNULL, capture_output=True, timeout=60, check=False,
            env={**os.environ, "PATH": f"{KCF.parent}:{os.environ['PATH']}", "HOME": str(self.folder)})
        self.assertTrue(told.exists(), done)
        return json.loads(told.read_text())

    def kinds(self, path):
        lines = self.edit(path, [
            "let g:told = []",
            "for lnum in range(1, line('$'))",
            "  call add(g:told, map(range(1, col([lnum, '$'])),"
            "   'synIDattr(synID(' . lnum . ', v:val, 1), \"name\")'))",
            "endfor"])
        return [[KINDS.get(name) for name in line] for line in lines]

    def test_indentation_is_that_of_the_formatter(self):
        for name, flat, text in tables.unindented(PROJECT, KCF):
            (self.folder / "flat.kcf").write_text(flat)
            told = self.edit("flat.kcf", ["normal! gg=G", "let g:told = getline(1, '$')"])
            self.assertEqual(told, text.splitlines(), name)

    def test_comments_and_blocks(self):
        (self.folder / "a.kcf").write_text("DOMAIN {\n  PARALLEL {\n    number_threads = 2\n  }\n}\n")
        told = self.edit("a.kcf", [
            "execute \"normal! ggA\\<CR>// one\\<CR>two\"",
            "let g:told = [getline(1, 3), &commentstring, foldlevel(1), foldlevel(5), foldclosed(1),"
            " &shiftwidth, &filetype]"])
        self.assertEqual(told, [["DOMAIN {", "  // one", "  // two"], "// %s", 1, 2, -1, 2, "kcf"])

    def test_make_jumps_to_the_fault(self):
        (self.folder / "a b.kcf").write_text("PROJECT {\n  title = demo\n  autor = me\n}\n")
        told = self.edit("a b.kcf", [
            "silent make!", "clast", "let last = getqflist()[-1]",
            "let g:told = [[line('.'), col('.')], last.type, last.text]"])
        self.assertEqual(told, [[3, 3], "E", "there is no tag 'autor' in 'PROJECT'"])

    @unittest.skipUnless(IS_NEOVIM, "Vim has no client")
    def test_the_server_tells_faults_in_all_windows(self):
        for name in ("a.kcf", "b.kcf"):
            (self.folder / name).write_text("PROJECT {\n  title = demo\n  autor = me\n}\n")
        told = self.edit("a.kcf", [
            "edit b.kcf",
            "lua vim.wait(20000, function() return #vim.diagnostic.get(1) * #vim.diagnostic.get(2) > 0 end, 20)",
            "lua vim.g.places = vim.tbl_map(function(told) return {told.bufnr, told.lnum, told.col} end,"
            " vim.diagnostic.get())",
            "let g:told = [g:places, luaeval('#vim.lsp.get_active_clients()')]"], serves=True)
        self.assertIn([1, 2, 2], told[0])
        self.assertIn([2, 2, 2], told[0])
        self.assertEqual(told[1], 1)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0]])
