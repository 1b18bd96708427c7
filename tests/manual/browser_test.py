#!/usr/bin/env python3
"""Uses the manual as a reader does, in headless Chromium.

    browser_test.py KCF-REFERENCE

The pages are opened from the file system. KESTRIX_SCREENSHOTS=DIR keeps what the reader sees there: on
a desk, on a phone, in the dark, and printed.
"""
import base64
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent))
from browser import SCREENSHOTS, Browser

REFERENCE = Path(sys.argv[1]).resolve()
ENTER, DOWN, ESCAPE = "\ue007", "\ue015", "\ue00c"
WAIT_LIMIT = 20
A4_WIDTH = 703  # of a sheet within its margins
FRICTION = "DOMAIN.KESTPLANE_2D.HYDRAULICS.FRICTION.html"


class Manual(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.temporary = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        cls.addClassCleanup(cls.temporary.cleanup)
        cls.folder = Path(cls.temporary.name) / "manual"
        subprocess.run([REFERENCE, "manual", "--output", cls.folder], check=True)
        cls.browser = Browser(cls.temporary.name)
        cls.addClassCleanup(cls.browser.close)

    def setUp(self):
        self.browser.resize(1440, 1000)

    def open(self, page, anchor=""):
        self.browser.open((self.folder / page).as_uri() + anchor)

    def wait_for(self, what, script, *arguments):
        end = time.monotonic() + WAIT_LIMIT
        while True:
            value = self.browser.run(script, *arguments)
            if value:
                return value
            self.assertLess(time.monotonic(), end, f"waited in vain for {what}")
            time.sleep(0.05)

    def shown_hits(self):
        return self.browser.run("return [...document.querySelectorAll('#hits a')].filter((a) => a.checkVisibility())"
                                ".map((a) => [a.querySelector('.name').textContent, a.querySelector('.where').textContent]);")

    def check_row(self, tag):
        """The row of the tag is the target, within the window, and not below what sticks to its top."""
        row = self.wait_for("the row", "const row = document.querySelector('tr:target'); return row && {"
                            "id: row.id, text: row.innerText, top: row.getBoundingClientRect().top,"
                            "height: innerHeight, covered: Math.max(...[...document.querySelectorAll('header, thead th')]"
                            ".map((e) => e.checkVisibility() ? e.getBoundingClientRect().bottom : 0))};")
        self.assertEqual(row["id"], "tag-" + tag)
        self.assertIn(tag, row["text"])
        self.assertGreaterEqual(row["top"] + 1, row["covered"])
        self.assertLess(row["top"], row["height"])
        return row["text"]

    def test_search_leads_to_the_row_of_a_tag(self):
        self.open("index.html")
        self.browser.keep_screenshot("index.png")
        self.browser.type("#search", "wall_fric")
        self.assertEqual(self.shown_hits(), [[name, "tag in /DOMAIN/KESTPLANE_2D/HYDRAULICS/FRICTION"]
                                             for name in ("wall_friction", "wall_friction_factor")])
        self.browser.keep_screenshot("hits.png")
        self.browser.click("#hits li:nth-child(2) a")
        text = self.check_row("wall_friction_factor")
        self.assertTrue(self.browser.run("return location.href;").startswith("file:///"))
        self.assertIn("x > 0", text)
        self.assertIn("used if wall_friction is on", text)
        self.browser.keep_screenshot("row.png")
        self.assertEqual(self.shown_hits(), [])
        # The condition leads to the tag that it looks at.
        self.browser.click("tr:target td[data-label=Condition] a")
        self.check_row("wall_friction")

    def test_search_by_keyboard(self):
        self.open(FRICTION)
        self.browser.press("/")
        self.browser.press("c")
        self.browser.press("f")
        self.browser.press("l")
        self.assertIn(["CFL", "tag in /DOMAIN/KESTPLANE_2D/TIMESTEP"], self.shown_hits())
        self.browser.press(DOWN)
        self.browser.press(DOWN)
        self.assertEqual(self.browser.run("return document.activeElement.querySelector('.where').textContent;"),
                         "tag in /DOMAIN/KESTPLANE_2D/TIMESTEP")
        self.browser.press(ENTER)
        self.check_row("CFL")
        self.browser.press("/")
        self.browser.type("#search", "no such name")
        self.assertEqual(self.browser.run("return document.getElementById('hits').innerText;"), "Nothing found")
        self.browser.press(ESCAPE)
        self.assertFalse(self.browser.run("return document.getElementById('hits').checkVisibility();"))

    def test_search_finds_by_name_and_path(self):
        self.open("index.html")
        self.browser.type("#search", "2d friction type")
        self.assertEqual(self.shown_hits()[0], ["type", "tag in /DOMAIN/KESTPLANE_2D/HYDRAULICS/FRICTION"])

    def test_the_tree_leads_to_a_block(self):
        self.open("index.html")
        self.browser.click(f".overview a[href='{FRICTION}']")
        self.wait_for("the page", "return document.title.startsWith(arguments[0]);", "/DOMAIN/KESTPLANE_2D/HYDRAULICS/FRICTION")
        self.assertEqual(self.browser.run("return document.querySelector('nav [aria-current]').innerText;"), "FRICTION")
        self.assertTrue(self.browser.run("return document.querySelector('nav [aria-current]').checkVisibility();"))

    def test_no_page_makes_the_reader_scroll_sideways(self):
        for path in sorted(self.folder.glob("*.html")):
            self.open(path.name)
            for media, widths in (("screen", (390, 760, 1057, 1345)), ("print", (A4_WIDTH,))):
                self.browser.command("Emulation.setEmulatedMedia", media=media)
                for width in widths:
                    with self.subTest(page=path.name, media=media):
                        self.browser.resize(width, 1000)
                        used = self.browser.run("return document.documentElement.scrollWidth;")
                        self.assertLessEqual(used, width)
        self.browser.command("Emulation.setEmulatedMedia", media="")

    def test_it_reads_well_on_a_phone(self):
        self.browser.resize(390, 844, is_mobile=True)
        for page in ("index.html", FRICTION, "DOMAIN.KESTPLANE_2D.OUTPUT.SPECIAL_OUTPUT.html",
                     "DOMAIN.KESTCHAIN_1D.MORPHOLOGY.BEDLOAD.FORMULA.html"):
            self.open(page)
            self.assertFalse(self.browser.run("return document.querySelector('nav').checkVisibility();"))
            self.browser.keep_screenshot("phone-" + page.rsplit(".", 2)[-2] + ".png")
        self.browser.click("header label")
        self.assertTrue(self.browser.run("return document.querySelector('nav').checkVisibility();"))
        self.browser.keep_screenshot("phone-tree.png")
        self.open(FRICTION, "#tag-wall_friction_factor")
        self.check_row("wall_friction_factor")
        self.browser.keep_screenshot("phone-row.png")

    def test_it_prints_well(self):
        for page in (FRICTION, "DOMAIN.KESTPLANE_2D.OUTPUT.SPECIAL_OUTPUT.html", "index.html"):
            self.open(page)
            self.browser.command("Emulation.setEmulatedMedia", media="print")
            self.browser.resize(A4_WIDTH, 1000)
            for selector in ("header", "nav"):
                self.assertFalse(self.browser.run("return document.querySelector(arguments[0]).checkVisibility();", selector))
            self.browser.keep_screenshot("print-" + page.rsplit(".", 2)[-2] + ".png")
            sheets = base64.b64decode(self.browser.ask("POST", "/print", {"page": {"width": 21.0, "height": 29.7}, "shrinkToFit": False}))
            self.assertTrue(sheets.startswith(b"%PDF"))
            if SCREENSHOTS:
                (Path(SCREENSHOTS) / ("print-" + page.rsplit(".", 2)[-2] + ".pdf")).write_bytes(sheets)
            self.browser.command("Emulation.setEmulatedMedia", media="")

    def test_it_reads_in_the_dark(self):
        self.browser.command("Emulation.setEmulatedMedia", media="", features=[{"name": "prefers-color-scheme", "value": "dark"}])
        self.open(FRICTION)
        self.assertNotEqual(self.browser.run("return getComputedStyle(document.body).backgroundColor;"), "rgb(255, 255, 255)")
        self.browser.keep_screenshot("dark.png")
        self.browser.command("Emulation.setEmulatedMedia", media="", features=[])


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], "-v"])
