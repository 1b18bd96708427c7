#!/usr/bin/env python3
"""Opens command files in Emacs, without a terminal.

    emacs_test.py KCF PROJECT-FOLDER
"""
import json
import os
import subprocess
import sys
import unittest
from pathlib import Path

import tables

KCF = Path(sys.argv[1]).resolve()
PROJECT = Path(sys.argv[2]).resolve()
MODE = PROJECT / "editors/emacs/kcf-mode.el"

KINDS = {"font-lock-comment-face": "comment", "font-lock-comment-delimiter-face": "comment",
         "kcf-block": "block", "kcf-tag": "tag", "kcf-choice": "choice", "kcf-number": "number",
         "kcf-text": "text", "kcf-fault": "fault"}


class Editing(tables.Colours, tables.Folder):
    project = PROJECT

    def edit(self, name, form):
        """Opens a file and returns what a form there gives, by way of JSON."""
        (self.folder / "script.el").write_text(f"""
            (require 'json)
            (find-file "{name}")
            (let ((told {form}))
              (with-temp-file "{self.folder / "told.json"}" (insert (json-encode told))))""")
        done = subprocess.run(
            ["emacs", "--batch", "-Q", "-l", MODE, "-l", "script.el"], cwd=self.folder,
            capture_output=True, timeout=60, check=False,
            env={**os.environ, "PATH": f"{KCF.parent}:{os.environ['PATH']}", "HOME": str(self.folder)})
        self.assertEqual(done.returncode, 0, done.stderr.decode())
        return json.loads((self.folder / "told.json").read_text())

    def test_the_mode_compiles_without_warnings(self):
        copy = self.folder / MODE.name
        copy.write_bytes(MODE.read_bytes())
        subprocess.run(["emacs", "--batch", "-Q", "--eval", "(setq byte-compile-error-on-warn t)",
                        "-f", "batch-byte-compile", copy], check=True, timeout=60)

    def kinds(self, path):
        # The text is coloured from its begin, and then line by line from its end, as edits do it.
        names = self.edit(path, """
            (progn
              (font-lock-ensure)
              (goto-char (point-max))
              (while (not (bobp))
                (forward-line -1)
                (font-lock-flush (point) (line-end-position))
                (font-lock-ensure (point) (line-end-position)))
              (mapcar (lambda (at) (let ((face (get-text-property at 'face)))
                                     (if (consp face) (car face) face)))
                      (number-sequence 1 (1- (point-max)))))""")
        kinds = iter(KINDS.get(name) for name in names)
        return [[next(kinds) for _ in line] for line in path.read_text().splitlines(keepends=True)]

    def test_indentation_is_that_of_the_formatter(self):
        for name, flat, text in tables.unindented(PROJECT, KCF):
            (self.folder / "flat.kcf").write_text(flat)
            told = self.edit("flat.kcf", "(progn (indent-region (point-min) (point-max)) (buffer-string))")
            self.assertEqual(told, text, name)

    def test_comments_folding_and_outline(self):
        (self.folder / "a.kcf").write_text(
            "DOMAIN {\n  // {\n  PARALLEL {\n    number_threads = 2\n    }\n  multiregion = a{\n}\nPROJECT\n{\n}\n")
        told = self.edit("a.kcf", """
            (let ((at (lambda (line) (goto-char (point-min)) (forward-line (1- line)) (point))))
              (funcall at 4)
              (comment-line 1)
              (funcall at 3)
              (end-of-line)
              (hs-minor-mode)
              (hs-hide-block)
              (list (seq-filter (lambda (line) (invisible-p (funcall at line))) '(1 2 3 4 5 6 7))
                    (buffer-substring (funcall at 4) (line-end-position))
                    (mapcar (lambda (entry) (list (car entry) (line-number-at-pos (cdr entry))))
                            (funcall imenu-create-index-function))))""")
        self.assertEqual(told, [[4, 5], "    // number_threads = 2",
                                {"DOMAIN": [1], "DOMAIN/PARALLEL": [3], "PROJECT": [8]}])

    def test_compile_jumps_to_the_fault(self):
        (self.folder / "a b.kcf").write_text("PROJECT {\n  title = demo\n  autor = me\n}\n")
        told = self.edit("a b.kcf", """
            (progn
              (compile compile-command)
              (let ((process (get-buffer-process "*compilation*")))
                (while (and process (process-live-p process)) (accept-process-output process 0.1)))
              (accept-process-output nil 0.1)
              (next-error) (next-error)
              (list (buffer-name) (line-number-at-pos) (current-column)))""")
        self.assertEqual(told, ["a b.kcf", 3, 2])

    def test_eglot_shows_the_faults_of_the_server(self):
        (self.folder / "a.kcf").write_text("PROJECT {\n  title = demo\n  autor = me\n}\n")
        told = self.edit("a.kcf", """
            (progn
              ;; It is a package of the system here, and a part of Emacs from 29 on.
              (setq package-directory-list '("/usr/share/emacs/site-lisp/elpa"))
              (package-initialize)
              (require 'eglot)
              (apply #'eglot--connect (eglot--guess-contact))
              (with-timeout (20)
                (while (not (flymake-diagnostics)) (accept-process-output nil 0.1)))
              (prog1 (mapcar (lambda (each) (line-number-at-pos (flymake-diagnostic-beg each)))
                             (flymake-diagnostics))
                ;; What the server still asks would find no Emacs to answer.
                (eglot-shutdown (eglot-current-server))))""")
        self.assertIn(3, told)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0]])
