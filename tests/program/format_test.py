#!/usr/bin/env python3
"""Formats command files as a user does, and holds the result against the converter.

    format_test.py KCF CONVERTER FOLDER...
"""
import os
import re
import shutil
import stat
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

KCF, CONVERTER = (Path(p).resolve() for p in sys.argv[1:3])
FOLDERS = [Path(p).resolve() for p in sys.argv[3:]]

UNTIDY = b"""

// head
PROJECT{ title=demo   // the title
   author = me/* c */
       date=1.1.2020     // date
                         // goes on
}
DOMAIN  // about it
{ // more
 multiregion = x\r


   /* a block
        comment
   */
   KESTPLANE_2D {
    region_name /* n */ = r
    HYDRAULICS { FRICTION {
        friction = (  30   40
   50 // x
   60
   // own
   70 /* in */ 80 )   // tail
        index = ( 1,  2 )
        friction = ( """ + b"100 " * 30 + b""")
        input_type = ( text
             as it is )
    // kcf: format off
        friction = ( 1    2
             3 )
      // kcf: format on
        unknown   =  a  b

      }
     }}
}"""

TIDY = b"""// head
PROJECT {
  title = demo     // the title
  author = me      /* c */
  date = 1.1.2020  // date
                   // goes on
}
DOMAIN {  // about it
  // more
  multiregion = x

  /* a block
       comment
  */
  KESTPLANE_2D {
    region_name /* n */ = r
    HYDRAULICS {
      FRICTION {
        friction = (
          30 40 50  // x
          60
          // own
          70 /* in */ 80
        )  // tail
        index = ( 1,  2 )
        friction = (
          """ + b"100 " * 21 + b"100\n          " + b"100 " * 7 + b"""100
        )
        input_type = ( text
             as it is )
        // kcf: format off
        friction = ( 1    2
             3 )
        // kcf: format on
        unknown = a  b
      }
    }
  }
}
"""

FAULTY = {
    b"PROJECT {\n title = a\n": b"f.kcf:1:1: the block 'PROJECT' is never closed\n",
    b"PROJECT {x title = a\n}\n": b"f.kcf:1:10: 'x' is lost, since it stands right behind the brace: a blank is missing\n",
    b"PROJECT {\n title = a": b"the file ends within 'title': a line feed is missing behind it\n",
    b"DOMAIN {\n}\n}\n": b"f.kcf:3:1: this brace closes no block\n",
}


def run(*arguments, cwd=None, **options):
    return subprocess.run([KCF, "format", *arguments], cwd=cwd, capture_output=True, timeout=60, check=False, **options)


def converted(setup):
    """What the converter makes of a file, without the places in it."""
    target = setup.with_suffix(".json")
    target.unlink(missing_ok=True)
    done = subprocess.run([CONVERTER, setup.name, "-o", target.name], cwd=setup.parent, capture_output=True, timeout=60,
                          check=False)
    places = re.compile(rb"\(on\s+line\s+\d+|near\s+line\s+\d+,\s+col\s+\d+|started\s+on\s+line\s+\d+")
    # Places may move the breaks of wrapped lines.
    told = [b" ".join(places.sub(b"", text).split()) for text in (done.stdout, done.stderr)]
    return done.returncode, told, target.read_bytes() if target.exists() else None


class Format(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.file = self.folder / "f.kcf"

    def test_writes_the_one_style(self):
        done = run("-", input=UNTIDY + b"\n")
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        self.assertEqual(done.stdout.decode(), TIDY.decode())
        self.assertEqual(run("-", input=TIDY).stdout, TIDY)

    def test_check_and_diff_change_nothing(self):
        self.file.write_bytes(UNTIDY + b"\n")
        (self.folder / "tidy.kcf").write_bytes(TIDY)
        done = run("--check", ".", cwd=self.folder)
        self.assertEqual((done.returncode, done.stdout), (1, b"f.kcf\n"))
        done = run("--diff", ".", cwd=self.folder)
        self.assertEqual(done.returncode, 0)
        self.assertEqual(self.file.read_bytes(), UNTIDY + b"\n")
        patched = subprocess.run(["git", "apply", "-p0", "--whitespace=nowarn", "-"], cwd=self.folder, input=done.stdout,
                                 capture_output=True, check=False)
        self.assertEqual((patched.returncode, patched.stderr), (0, b""))
        self.assertEqual(self.file.read_bytes(), TIDY)
        self.assertEqual(run("--check", ".", cwd=self.folder).returncode, 0)

    def test_faulty_files_stay_and_are_told(self):
        for text, told in FAULTY.items():
            self.file.write_bytes(text)
            done = run("f.kcf", cwd=self.folder)
            self.assertEqual((done.returncode, done.stdout), (1, b""), text)
            self.assertIn(told, done.stderr)
            self.assertEqual(self.file.read_bytes(), text)
        done = run("--stdin-filepath", "f.kcf", "-", input=b"DOMAIN {\n}\n}\n")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (1, b"", b"f.kcf:3:1: this brace closes no block\n"))

    def test_replaces_through_links_and_keeps_permissions(self):
        self.file.write_bytes(b"DOMAIN{ \n}")
        self.file.chmod(0o640)
        (self.folder / "sub").mkdir()
        link = self.folder / "sub" / "link.kcf"
        link.symlink_to("../f.kcf")
        self.assertEqual(run(link).returncode, 0)
        self.assertTrue(link.is_symlink())
        self.assertEqual(self.file.read_bytes(), b"DOMAIN {\n}\n")
        self.assertEqual(stat.S_IMODE(self.file.stat().st_mode), 0o640)
        self.assertEqual(sorted(os.listdir(self.folder)), ["f.kcf", "sub"])

    def test_a_file_that_cannot_be_replaced_stays_whole(self):
        self.file.write_bytes(UNTIDY + b"\n")
        done = subprocess.run(["sh", "-c", 'ulimit -f 0; trap "" XFSZ; exec "$0" format f.kcf', KCF], cwd=self.folder,
                              capture_output=True, check=False)
        self.assertEqual(done.returncode, 2)
        self.assertIn(b"'f.kcf' cannot be written", done.stderr)
        self.assertEqual(self.file.read_bytes(), UNTIDY + b"\n")
        self.assertEqual(os.listdir(self.folder), ["f.kcf"])
        done = run("missing.kcf", "f.kcf", cwd=self.folder)
        self.assertEqual((done.returncode, done.stderr), (2, b"kcf: 'missing.kcf' does not exist\n"))
        self.assertEqual(self.file.read_bytes(), TIDY)

    def test_hostile_texts_take_no_time(self):
        for text in (b"A { " * 100000 + b"} " * 100000, b"a = (" + b"\n" * 2000000, b"/* x */ " * 300000, b"/* x\n */ " * 200000,
                     b"a = 1 // c\n" * 200000, b"a =\n//\n" * 200000):
            run("--diff", "-", input=text)

    def test_the_converter_makes_the_same_of_it(self):
        checked = 0
        for number, folder in enumerate(FOLDERS):
            copy = self.folder / str(number)
            shutil.copytree(folder, copy)
            for setup in sorted(copy.rglob("*.kcf")):
                before = converted(setup)
                status = run(setup).returncode
                self.assertEqual(converted(setup), before, setup)
                if status == 0:
                    checked += 1
                    self.assertEqual(run("--check", setup).returncode, 0, setup)
        self.assertGreater(checked, 50)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
