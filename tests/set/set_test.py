#!/usr/bin/env python3
"""Changes command files as a user does.

    set_test.py KCF CONVERTER EXAMPLES
"""
import difflib
import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

KCF, CONVERTER, EXAMPLES = (Path(p).resolve() for p in sys.argv[1:4])
REGION = "DOMAIN/KESTPLANE_2D[floodplain]"

# What is asked for, and the lines that go (-) and come (+).
CHANGES = [
    ("a value, by the end of its path", ["KESTPLANE_2D/HYDRAULICS/FRICTION/default_friction=32"],
     ["-        default_friction = 25", "+        default_friction = 32"]),
    ("by the whole path with names", [f"/{REGION}/GEOMETRY/STRINGDEF[outflow]/upstream_direction=right"],
     ["-        upstream_direction = left", "+        upstream_direction = right"]),
    ("by a number", ["COUPLING[2]/iter_exchange=7"], ["-      iter_exchange = 5", "+      iter_exchange = 7"]),
    ("a tag in its order", ["KESTPLANE_2D/HYDRAULICS/PARAMETER/riemann_solver=hllc", "author=me"],
     ["+  author = me", "+        riemann_solver = hllc"]),
    ("a block in its order, once for two tags", ["DOMAIN/PHYSICAL_PROPERTIES/gravity=9.8", "PHYSICAL_PROPERTIES/rho_fluid=999"],
     ["+  PHYSICAL_PROPERTIES {", "+    gravity = 9.8", "+    rho_fluid = 999", "+  }"]),
    ("a block with a name", ["KEST_EXTERN/BOUNDARY[gauge]/type=discharge"],
     ["+    BOUNDARY {", "+      name = gauge", "+      type = discharge", "+    }"]),
    ("a block by the next number", ["KESTSUB/BOUNDARY[3]/type=bounce_back", "KESTSUB/BOUNDARY[3]/face=north",
                                    "KESTSUB/BOUNDARY[3]/from_to1=( 0 1 )", "KESTSUB/BOUNDARY[3]/from_to2=( 0 1 )"],
     ["+    BOUNDARY {", "+      type = bounce_back", "+      face = north", "+      from_to1 = ( 0 1 )",
      "+      from_to2 = ( 0 1 )", "+    }"]),
    ("a new name, and what it is called by then", ["BOUNDARY[main_weir]/name=weir", "HYDRAULICS/BOUNDARY[weir]/width=15",
                                                   "COUPLING[1]/HYDRAULICS/upstream_interface=weir", "MANIPULATED_VARIABLE/position=river.weir"],
     ["-        name = main_weir", "+        name = weir", "-        width = 14", "+        width = 15",
      "-        upstream_interface = main_weir", "+        upstream_interface = weir",
      "-      position = river.main_weir", "+      position = river.weir"]),
    ("a tag and a block taken away", ["--delete", "two_way_coupling", "--delete", "COUPLINGS/PARAMETER"],
     ["-      two_way_coupling = yes", "-    PARAMETER {", "-      max_time_level = 8", "-      log_network = on", "-    }"]),
]

# What is asked for, and the whole message.
REFUSED = [
    (["FRICTION/default_friction=32"], 1,
     "kcf: 'FRICTION/default_friction' may be one of several; name more of its path:\n"
     "  DOMAIN/KESTCHAIN_1D[river]/HYDRAULICS/FRICTION/default_friction\n"
     f"  {REGION}/HYDRAULICS/FRICTION/default_friction\n"),
    (["--delete", "STRINGDEF"], 1,
     "kcf: 'STRINGDEF' may be one of several; name more of its path:\n"
     f"  {REGION}/GEOMETRY/STRINGDEF[inflow]\n  {REGION}/GEOMETRY/STRINGDEF[outflow]\n"),
    (["--delete", "wall_fricton"], 1, "kcf: the file has no 'wall_fricton'. Did you mean 'wall_friction'?\n"),
    (["KESTPLANE_2D/HYDRAULICS/FRICTION/defualt_friction=3"], 1,
     "kcf: there is no tag 'defualt_friction' in 'KESTPLANE_2D/HYDRAULICS/FRICTION'. Did you mean 'default_friction'?\n"),
    (["KESTPLANE_2D[floodplane]/GEOMETRY/file=x"], 1,
     f"kcf: there is no KESTPLANE_2D[floodplane]; there are:\n  {REGION}\n"),
    (["KESTPLANE_2D[2]/GEOMETRY/file=x"], 1, "kcf: there is no KESTPLANE_2D[2]: the file has 1 of them\n"),
    (["KESTPLANE_2D/HYDRAULICS[a]/FRICTION/type=manning"], 1,
     "kcf: 'HYDRAULICS' stands once in its block and has neither name nor number\n"),
    (["COUPLING[x]/type=external"], 1, "kcf: a block 'COUPLING' has no name; give its number, such as COUPLING[1]\n"),
    (["MORPHOLOGY/fixed_bed=1"], 1, None),
    (["PROJECT/title=a // b"], 1,
     "kcf: 'PROJECT/title' cannot have this value: a value must be one line, with all parentheses closed and without comments\n"),
    (["PROJECT/title=a\nauthor = b"], 1, None),
    (["PROJECT/title="], 1, "kcf: 'PROJECT/title' is given no value\n"),
    (["PROJECT//title=a"], 1,
     "kcf: 'PROJECT//title' is no path: it must be names with '/' between them, such as FRICTION/type\n"),
    (["BOUNDARY[a/type=x"], 2, None),
    (["title"], 2, "kcf: 'title' is no change: it must be PATH=VALUE, such as FRICTION/default_friction=32\n"
                   "For help: kcf set --help\n"),
    ([], 2, None),
    (["title=a", "--table", "runs.csv"], 2, "kcf: --table and --into need each other\nFor help: kcf set --help\n"),
    (["title=a", "-o", "inflow.txt"], 1, "kcf: 'inflow.txt' is there already; --force replaces it\n"),
    (["title=a", "-o", "nowhere/setup.kcf"], 1, "kcf: 'nowhere/setup.kcf' cannot be written: No such file or directory\n"),
    (["KESTPLANE_2D/HYDRAULICS/FRICTION/type=maning"], 1, None),
    (["GEOMETRY/STRINGDEF[middle]/upstream_direction=right"], 1,
     "kcf: nothing was written, since this would be wrong:\n"
     "  error[stringdef/not-in-mesh]: the mesh 'floodplain.2dm' has no node string named 'middle'\n"
     "    help: name a node string of the mesh, or add a line 'NS' to the mesh that ends in 'middle'\n"),
    (["--delete", "KESTPLANE_2D/GEOMETRY"], 1, None),
]

# A table, what becomes of it.
TABLES = {
    "two columns\nof names and paths": (
        "run,KESTPLANE_2D/HYDRAULICS/FRICTION/default_friction\r\na,30\r\n\"b\",\"31\"\r\n", 0, {"a": "30", "b": "31"}),
    "with a mark, and without a last line end": ("\ufeffrun, KESTPLANE_2D/HYDRAULICS/FRICTION/default_friction\na, 30", 0, {"a": "30"}),
    "an empty cell keeps the value": ("run,KESTPLANE_2D/HYDRAULICS/FRICTION/default_friction\na,\n\nb,31\n", 0, {"a": "25", "b": "31"}),
    "a field of two lines": ("run,KESTPLANE_2D/HYDRAULICS/BOUNDARY[to_plant]/string_name,\"in\n\"\"deed\"\"\"\na,outflow,x\n", 1,
                             "runs.csv: the column 'in\n\"deed\"' is no path"),
    "a wrong column": ("run,KESTPLANE_2D/HYDRAULICS/FRICTION/defaultfriction\na,3\n", 1,
                       "kcf: runs.csv: the column 'KESTPLANE_2D/HYDRAULICS/FRICTION/defaultfriction' is no path, and nothing names it "
                       "as {KESTPLANE_2D/HYDRAULICS/FRICTION/defaultfriction}: there is no tag 'defaultfriction' in "
                       "'KESTPLANE_2D/HYDRAULICS/FRICTION'. Did you mean 'default_friction'?\n"),
    "no column for the name": ("ran,title\na,3\n", 1, "kcf: there is no column for '{run}'; the table has 'ran', 'title'\n"),
    "a row of another length": ("run,title\na,3\nb\n", 1, "kcf: runs.csv: line 3: there are 1 fields for 2 columns\n"),
    "a quote that is never closed": ("run,title\na,\"3\nb,4\n", 1, "kcf: runs.csv: line 2: the quote of a field is never closed\n"),
    "text behind a quote": ("run,title\na,\"3\"4\n", 1, "kcf: runs.csv: line 2: text stands behind the closing quote of a field\n"),
    "two columns of a name": ("run,run\na,3\n", 1, "kcf: runs.csv: line 1: two columns are called 'run'\n"),
    "nothing": ("", 1, "kcf: runs.csv: it is empty; its first line must name the columns\n"),
    "no rows": ("run,title\n", 1, "kcf: runs.csv: it has no rows below the names of its columns\n"),
    "no text": ("run\0", 1, "kcf: runs.csv: it is no text\n"),
    "two rows for one file": ("run,title\na,3\na,4\n", 1,
                              "runs.csv: line 3: 'runs/a/setup.kcf' would be written twice, by line 2 too\n"
                              "kcf: nothing was written: 1 of 2 rows is wrong\n"),
    "a way out": ("run,title\n..,3\n", 1, "runs.csv: line 2: '..' cannot be a part of a file name\n"
                                          "kcf: nothing was written: 1 of 1 rows is wrong\n"),
    "one wrong value among three": ("run,KESTPLANE_2D/HYDRAULICS/FRICTION/default_friction\na,30\nb,-1\nc,x\n", 1,
                                    "kcf: nothing was written: 2 of 3 rows are wrong\n"),
}


class Set(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name) / "linked"
        shutil.copytree(EXAMPLES / "linked-regions", self.folder)
        self.file = self.folder / "setup.kcf"
        self.before = self.file.read_bytes()

    def run_set(self, *arguments, file="setup.kcf", **options):
        return subprocess.run([KCF, "set", file, *arguments], cwd=self.folder, capture_output=True, timeout=120, check=False,
                              **options)

    def held(self):
        return {p.relative_to(self.folder).as_posix(): p.read_bytes() for p in self.folder.rglob("*") if p.is_file()}

    def test_changes_what_is_asked_for_and_nothing_else(self):
        for name, arguments, expected in CHANGES:
            for line_end in (b"\n", b"\r\n"):
                text = self.before.replace(b"\n", line_end)
                done = self.run_set(*arguments, "-o", "-", file="-", input=text)
                self.assertEqual(done.returncode, 0, (name, done.stderr))
                self.assertEqual(done.stdout.count(b"\n"), done.stdout.count(line_end), name)
                lines = [t.decode().split(line_end.decode()) for t in (text, done.stdout)]
                changed = [line for line in difflib.unified_diff(*lines, lineterm="", n=0) if not line.startswith(("---", "+++", "@@"))]
                self.assertEqual(sorted(changed), sorted(expected), name)
                json_name = "changed.json"
                (self.folder / "changed.kcf").write_bytes(done.stdout)
                subprocess.run([CONVERTER, "changed.kcf", "-o", json_name], cwd=self.folder, capture_output=True, check=True)
        self.assertEqual(self.file.read_bytes(), self.before)

    def test_places_what_is_added_between_comments_and_on_narrow_lines(self):
        texts = {
            "PROJECT { // the project\n    title = a // why\n\n  // behind\n}\n":
                "PROJECT { // the project\n    title = a // why\n    author = b\n\n  // behind\n}\n",
            "PROJECT { }\n": "PROJECT { \n  author = b\n}\n",
            "PROJECT { title = a /* x\n y */ } // z": "PROJECT { title = a /* x\n y */ \n  author = b\n} // z",
            "// only a comment\n": None,
            "PROJECT {\n\tdate = 1\n\ttitle = a\n}\n": "PROJECT {\n\tdate = 1\n\ttitle = a\n\tauthor = b\n}\n",
            "DOMAIN {\n}": "PROJECT {\n  author = b\n}\nDOMAIN {\n}",
            "PROJECT {\n  author = // none\n}\n": "PROJECT {\n  author = b // none\n}\n",
            "PROJECT {\n  author = ( a\n b ) // x\n}\n": "PROJECT {\n  author = b // x\n}\n",
        }
        for text, expected in texts.items():
            done = self.run_set("PROJECT/author=b", file="-", input=text.encode())
            if expected is not None:
                self.assertEqual(done.stdout.decode() if done.returncode == 0 else done.stderr, expected, text)
        for text, expected in {
            "PROJECT {\n  // above\n  author = a // b\n  title = c\n}\n": "PROJECT {\n  // above\n  title = c\n}\n",
            "PROJECT { title = c\n author = a /* x\n y */\n}\n": "PROJECT { title = c\n  /* x\n y */\n}\n",
            "PROJECT { author = a\n}": "PROJECT { \n}",
        }.items():
            self.assertEqual(self.run_set("--delete", "author", file="-", input=text.encode()).stdout.decode(), expected)

    def test_refuses_with_one_message_and_writes_nothing(self):
        held = self.held()
        for arguments, status, told in REFUSED:
            done = self.run_set(*arguments)
            self.assertEqual((done.returncode, done.stdout), (status, b""), arguments)
            self.assertTrue(done.stderr, arguments)
            if told is not None:
                self.assertEqual(done.stderr.decode(), told)
            self.assertEqual(self.held(), held, arguments)
        done = self.run_set("KESTPLANE_2D/HYDRAULICS/FRICTION/default_friction=-3")
        self.assertIn(b"nothing was written, since this would be wrong:\n  error[out-of-range]: 'default_friction' is -3,", done.stderr)
        for name, told in (("none.kcf", b"kcf: 'none.kcf' does not exist\n"), (".", b"kcf: '.' cannot be read: Is a directory\n")):
            self.assertEqual(self.run_set("title=a", file=name).stderr, told)
        (self.folder / "binary.kcf").write_bytes(KCF.read_bytes()[:5000])
        self.assertEqual(self.run_set("title=a", file="binary.kcf").stderr,
                         b"kcf: binary.kcf: the text has faults of syntax, which kcf check tells\n")

    def test_old_errors_do_not_matter(self):
        self.file.write_bytes(self.before.replace(b"max_time_level = 8", b"max_time_level = -8"))
        self.assertEqual(self.run_set("title=a").returncode, 0)
        self.assertIn(b"title = a\n", self.file.read_bytes())

    def test_replaces_files_whole_or_not_at_all(self):
        self.file.chmod(0o640)
        self.assertEqual(self.run_set("title=a").returncode, 0)
        self.assertEqual(self.file.stat().st_mode & 0o777, 0o640)
        self.file.write_bytes(self.before)
        for arguments in (["title=a"], ["title=a", "-o", "new.kcf"]):
            done = subprocess.run(["sh", "-c", 'ulimit -f 0; trap "" XFSZ; exec "$0" set setup.kcf "$@"', KCF, *arguments],
                                  cwd=self.folder, capture_output=True, check=False)
            self.assertEqual(done.returncode, 1)
            self.assertIn(b"cannot be written", done.stderr)
            self.assertEqual(self.file.read_bytes(), self.before)
            self.assertFalse([p for p in os.listdir(self.folder) if p.startswith(".") or p == "new.kcf"])
        (self.folder / "new.kcf").write_text("old")
        self.assertEqual(self.run_set("title=a", "-o", "new.kcf", "--force").returncode, 0)
        self.assertEqual((self.folder / "new.kcf").read_bytes(), self.before.replace(b"linked_regions", b"a"))

    def test_tables(self):
        for name, (table, status, result) in TABLES.items():
            shutil.rmtree(self.folder / "runs", ignore_errors=True)
            (self.folder / "runs.csv").write_bytes(table.encode())
            held = self.held()
            done = self.run_set("--table", "runs.csv", "--into", "runs/{run}/setup.kcf")
            self.assertEqual(done.returncode, status, (name, done.stderr))
            if status != 0:
                self.assertEqual(self.held(), held, name)
                self.assertTrue(result in done.stderr.decode(), (name, done.stderr.decode()))
                continue
            self.assertEqual(sorted(os.listdir(self.folder / "runs")), sorted(result), name)
            for run, value in result.items():
                folder = self.folder / "runs" / run
                self.assertEqual((folder / "setup.kcf").read_bytes(), self.before.replace(b"default_friction = 25", f"default_friction = {value}".encode()))
                self.assertTrue((folder / "floodplain.2dm").is_symlink())
                done = subprocess.run([CONVERTER, "setup.kcf", "-o", "setup.json"], cwd=folder, capture_output=True, check=True)
                regions = json.loads((folder / "setup.json").read_text())["SETUP"]["KESTMD"]["KESTPLANE_2D"]
                self.assertEqual(regions[0]["HYDRAULICS"]["FRICTION"]["default_friction"], float(value))

    def test_names_in_changes_and_copies(self):
        (self.folder / "runs.csv").write_text("site,friction\nup,30\ndown,31\n")
        arguments = ["title={site}_{row}", "KESTPLANE_2D/HYDRAULICS/FRICTION/default_friction={friction}", "--table", "runs.csv",
                     "--into", "{site}_{row}.d/setup.kcf", "--copy"]
        self.assertEqual(self.run_set(*arguments).stdout, b"2 command files written\n")
        text = (self.folder / "down_2.d/setup.kcf").read_text()
        self.assertIn("title = down_2\n", text)
        self.assertIn("default_friction = 31\n", text)
        self.assertFalse((self.folder / "down_2.d/channel.kgf").is_symlink())
        held = self.held()
        self.assertEqual(self.run_set(*arguments).returncode, 1)
        self.assertEqual(self.held(), held)
        self.assertEqual(self.run_set(*arguments, "--force").returncode, 0)
        self.assertEqual(self.held(), held)

    def test_files_in_other_folders_are_found_from_each_run(self):
        (self.folder / "mesh").mkdir()
        (self.folder / "floodplain.2dm").rename(self.folder / "mesh/plain.2dm")
        (self.folder / "setups").mkdir()
        text = self.before.decode().replace("floodplain.2dm", "../mesh/plain.2dm")
        for name in os.listdir(self.folder):
            if name.endswith((".txt", ".kgf")):
                text = text.replace(name, f"../{name}")
        (self.folder / "setups/setup.kcf").write_text(text)
        (self.folder / "runs.csv").write_text("title\na\nb\n")
        done = self.run_set("--table", "runs.csv", "--into", "runs/{row}/setup.kcf", file="setups/setup.kcf")
        self.assertEqual(done.returncode, 0, done.stderr)
        for row in ("1", "2"):
            subprocess.run([CONVERTER, "setup.kcf", "-o", "s.json"], cwd=self.folder / "runs" / row, capture_output=True, check=True)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
