#!/usr/bin/env python3
"""Uses the manual as a reader does, in headless Chromium.

    browser_test.py KCF [TEST...]

The pages are opened from the file system. KESTRIX_AXE names axe.min.js, which scripts/install-npm fetches.
KESTRIX_SCREENSHOTS=DIR keeps what the reader sees there: on a desk, on a phone, in the dark, and printed.
"""
import base64
import os
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent))
from browser import CHROMIUM, SCREENSHOTS, Browser

KCF = Path(sys.argv[1]).resolve()
AXE = os.environ.get("KESTRIX_AXE")
ENTER, DOWN, ESCAPE, TAB = "\ue007", "\ue015", "\ue00c", "\ue004"
WAIT_LIMIT = 20
FIRST_VIEW_LIMIT = 100  # ms from the start of the navigation, from disk
A4_WIDTH = 703  # of a sheet within its margins
FRICTION = "DOMAIN.KESTPLANE_2D.HYDRAULICS.FRICTION.html"
BOUNDARY = "DOMAIN.KESTPLANE_2D.HYDRAULICS.BOUNDARY.html"
OUTPUT = "DOMAIN.KESTPLANE_2D.OUTPUT.SPECIAL_OUTPUT.html"


class Manual(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.temporary = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        cls.addClassCleanup(cls.temporary.cleanup)
        cls.folder = Path(cls.temporary.name) / "manual"
        subprocess.run([KCF, "manual", "--output", cls.folder], check=True)
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

    def prefer(self, colours="light"):
        self.browser.command("Emulation.setEmulatedMedia", media="", features=[{"name": "prefers-color-scheme", "value": colours}])

    def keep_screenshot(self, name):
        if SCREENSHOTS:
            (Path(SCREENSHOTS) / name).write_bytes(base64.b64decode(self.browser.ask("GET", "/screenshot")))

    def hits(self):
        """Names and places of what the search shows, once it has read its index."""
        self.wait_for("the search", "return document.getElementById('told').textContent;")
        return self.browser.run("return [...document.querySelectorAll('#hits li')].filter((a) => a.checkVisibility())"
                                ".map((a) => [a.querySelector('.name').textContent, a.querySelector('.where').textContent]);")

    def told(self):
        return self.wait_for("the search", "return document.getElementById('told').textContent;")

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
        self.keep_screenshot("index.png")
        self.assertEqual(self.browser.run("return performance.getEntriesByType('resource').filter((e) => e.name.endsWith('names.js')).length;"), 0)
        self.browser.type("#search", "wall_fric")
        self.assertEqual(self.hits()[:2], [[name, "tag in /DOMAIN/KESTPLANE_2D/HYDRAULICS/FRICTION"]
                                           for name in ("wall_friction", "wall_friction_factor")])
        self.assertRegex(self.told(), r"4 hits, in \d+ blocks, \d+ tags, \d+ choices, \d+ rules, \d+ codes, \d+ chapters and \d+ setups")
        self.keep_screenshot("hits.png")
        self.browser.click("#hits li:nth-child(2)")
        text = self.check_row("wall_friction_factor")
        self.assertTrue(self.browser.run("return location.href;").startswith("file:///"))
        self.assertIn("x > 0", text)
        self.assertIn("used if wall_friction is on", text)
        self.keep_screenshot("row.png")
        # The condition leads to the tag that it looks at.
        self.browser.click("tr:target [data-label=Condition] a")
        self.check_row("wall_friction")

    def test_search_by_keyboard(self):
        self.open(FRICTION)
        for key in "/cfl":
            self.browser.press(key)
        self.assertIn(["CFL", "tag in /DOMAIN/KESTPLANE_2D/TIMESTEP"], self.hits())
        self.browser.press(DOWN)
        self.browser.press(DOWN)
        chosen = "const box = document.getElementById('search'); return document.getElementById(box.getAttribute('aria-activedescendant')).querySelector('.where').textContent;"
        self.assertEqual(self.browser.run(chosen), "tag in /DOMAIN/KESTPLANE_2D/TIMESTEP")
        self.browser.press(ENTER)
        self.check_row("CFL")
        self.browser.press("/")
        self.browser.type("#search", "qqqqqq")
        self.assertTrue(self.told().startswith("Nothing found"))
        self.browser.press(ESCAPE)
        self.assertEqual(self.browser.run("return document.getElementById('told').textContent;"), "")

    def test_search_finds_what_is_meant(self):
        for typed, first in (("2d friction type", ["type", "tag in /DOMAIN/KESTPLANE_2D/HYDRAULICS/FRICTION"]),
                             ("friction", ["FRICTION", "block /DOMAIN/KESTCHAIN_1D/HYDRAULICS/FRICTION"]),
                             ("wilcockcrowe", ["wilcockcrowe", "choice of bedload_formula in /DOMAIN/KESTCHAIN_1D/MORPHOLOGY/BEDLOAD/FORMULA"]),
                             ("unknown-tag", ["unknown-tag", "code of kcf check"]),
                             # As the converter prints them.
                             ("Tag named 'titel' is not defined within block", ["unknown-tag", "code of kcf check"]),
                             ("The two cross sections for an inner boundary of type 'weir' have to adjacent and are not!",
                              ["inner-boundary/same-cross-sections", "rule of /DOMAIN/KESTCHAIN_1D/HYDRAULICS/INNER_BOUNDARY"]),
                             ("flood-2d", ["flood-2d", "example"])):
            self.open("index.html")
            self.browser.type("#search", typed)
            self.assertEqual(self.hits()[0], first)
        for typed, name in (("frction", "FRICTION"), ("hydorgraph", "hydrograph"), ("defualt_friction", "default_friction")):
            self.open("index.html")
            self.browser.type("#search", typed)
            self.assertEqual(self.hits()[0][0], name)
            self.assertTrue(self.told().startswith("Nothing is spelt so"))

    def test_the_tree_leads_to_a_block(self):
        self.open("blocks.html")
        self.browser.click(f".overview a[href='{FRICTION}']")
        self.wait_for("the page", "return document.title.startsWith(arguments[0]);", "/DOMAIN/KESTPLANE_2D/HYDRAULICS/FRICTION")
        self.assertEqual(self.browser.run("return document.querySelector('nav [aria-current]').innerText;"), "FRICTION")
        self.assertTrue(self.browser.run("return document.querySelector('nav [aria-current]').checkVisibility();"))

    def test_tags_are_grouped_by_a_choice(self):
        self.open(BOUNDARY)
        groups = ("const select = document.getElementById('deciding'); select.value = arguments[0];"
                  "select.dispatchEvent(new Event('change'));"
                  "return Object.fromEntries([...document.querySelectorAll('#tag-table tbody')].map((body) => [body.className,"
                  "[...body.querySelectorAll('tr[id]')].map((row) => row.id.slice(4))]));")
        hydrograph = self.browser.run(groups, "hydrograph")
        self.assertEqual(hydrograph["needed"], ["string_name", "type", "file", "slope"])
        self.assertIn("weighting_type", hydrograph["optional"])
        self.assertIn("wall_flux", hydrograph["unused"])
        self.keep_screenshot("grouped.png")
        self.assertEqual(self.browser.run(groups, "pore_pressures_coupling")["needed"], ["name", "type"])
        # One of two is enough.
        self.assertEqual(self.browser.run(groups, "hqrelation")["needed"], ["string_name", "type", "file", "slope"])
        self.assertEqual(self.browser.run("return document.querySelector('#tag-file .need').textContent;"), "needed, or slope")
        every = self.browser.run(groups, "")
        self.assertEqual(list(every), [""])
        self.assertEqual(len(every[""]), sum(map(len, hydrograph.values())))

    def test_without_script_all_is_shown(self):
        self.browser.command("Emulation.setScriptExecutionDisabled", value=True)
        try:
            self.open(BOUNDARY)
            shown = self.browser.command("DOM.getOuterHTML", nodeId=self.browser.command("DOM.getDocument")["root"]["nodeId"])["outerHTML"]
        finally:
            self.browser.command("Emulation.setScriptExecutionDisabled", value=False)
        self.assertIn('class="chooser" hidden', shown)
        self.assertEqual(shown.count('<tr id="tag-'), 17)

    def test_examples_are_copied(self):
        self.browser.command("Browser.grantPermissions", permissions=["clipboardReadWrite", "clipboardSanitizedWrite"])
        self.open(FRICTION)
        self.browser.click(".snippet button")
        self.wait_for("the copy", "return document.querySelector('.snippet button').textContent === 'Copied';")

    @unittest.skipIf(os.getloadavg()[0] > (os.cpu_count() or 1), "the machine is busy")
    def test_the_first_view_comes_at_once(self):
        paint = "const paint = performance.getEntriesByName('first-contentful-paint')[0]; return paint && paint.startTime;"
        for page in ("index.html", FRICTION, BOUNDARY, OUTPUT, "first-setup.html", "codes.html"):
            times = []
            for _ in range(4):
                self.open(page)
                times.append(self.wait_for("the first view", paint))
            # Whatever else runs on the machine makes single views slower.
            self.assertLess(min(times), FIRST_VIEW_LIMIT, (page, times))

    def test_by_keyboard_alone(self):
        self.open(BOUNDARY)
        self.browser.press(TAB)
        self.assertEqual(self.browser.run("return document.activeElement.className;"), "skip")
        self.assertTrue(self.browser.run("return document.activeElement.getBoundingClientRect().left >= 0;"))
        self.browser.press(ENTER)
        self.assertEqual(self.browser.run("return document.activeElement.id;"), "content")

    @unittest.skipUnless(AXE, "KESTRIX_AXE names no axe.min.js")
    def test_nothing_serious_for_a_checker_of_accessibility(self):
        axe = Path(AXE).read_text(encoding="utf-8")
        for width, is_mobile in ((1440, False), (390, True)):
            self.browser.resize(width, 900, is_mobile)
            for colours in ("light", "dark"):
                self.prefer(colours)
                for page in ("index.html", "first-setup.html", "syntax.html", "couplings.html", "blocks.html", "a-z.html",
                             "examples.html", "example-flood-2d.html", "messages.html", "codes.html", FRICTION, BOUNDARY, OUTPUT):
                    with self.subTest(page=page, width=width, colours=colours):
                        self.open(page)
                        if page == BOUNDARY:
                            self.browser.run("const s = document.getElementById('deciding'); s.value = 'weir'; s.dispatchEvent(new Event('change'));")
                        if page == "index.html":
                            self.browser.type("#search", "friction")
                            self.hits()
                        self.browser.run(axe)
                        found = self.browser.ask("POST", "/execute/async", {"args": [], "script": "const done = arguments[0]; axe.run({resultTypes: ['violations']}).then((r) => done(r.violations.map((v) =>"
                                                       "[v.id, v.impact, v.nodes.slice(0, 3).map((n) => n.html.slice(0, 200))])));"})
                        self.assertEqual([each for each in found if each[1] in ("serious", "critical")], [])
        self.prefer()

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
        for page in ("index.html", FRICTION, OUTPUT, "first-setup.html",
                     "DOMAIN.KESTCHAIN_1D.MORPHOLOGY.BEDLOAD.FORMULA.html"):
            self.open(page)
            self.assertFalse(self.browser.run("return document.querySelector('nav').checkVisibility();"))
            self.keep_screenshot("phone-" + page.rsplit(".", 2)[-2] + ".png")
        self.browser.click("header label")
        self.assertTrue(self.browser.run("return document.querySelector('nav').checkVisibility();"))
        self.keep_screenshot("phone-tree.png")
        self.open(FRICTION, "#tag-wall_friction_factor")
        self.check_row("wall_friction_factor")
        self.keep_screenshot("phone-row.png")

    def test_it_prints_well(self):
        for page in (FRICTION, OUTPUT, "index.html", "files.html", "book.html"):
            self.open(page)
            self.browser.command("Emulation.setEmulatedMedia", media="print")
            self.browser.resize(A4_WIDTH, 1000)
            for selector in ("header", "nav"):
                self.assertFalse(self.browser.run("return document.querySelector(arguments[0]).checkVisibility();", selector))
            self.keep_screenshot("print-" + page.rsplit(".", 2)[-2] + ".png")
            if page == "book.html":
                # The driver gives up on what takes longer than ten seconds.
                made = self.folder.parent / "book.pdf"
                subprocess.run([shutil.which("chromium"), *CHROMIUM, f"--user-data-dir={self.folder.parent}/printer",
                                f"--print-to-pdf={made}", (self.folder / page).as_uri()], check=True, capture_output=True, timeout=600)
                sheets = made.read_bytes()
            else:
                sheets = base64.b64decode(self.browser.ask("POST", "/print", {"page": {"width": 21.0, "height": 29.7}, "shrinkToFit": False}))
            self.assertTrue(sheets.startswith(b"%PDF"))
            if SCREENSHOTS:
                (Path(SCREENSHOTS) / ("print-" + page.rsplit(".", 2)[-2] + ".pdf")).write_bytes(sheets)
            self.browser.command("Emulation.setEmulatedMedia", media="")

    def test_it_reads_in_the_dark(self):
        self.prefer("dark")
        for page in (FRICTION, "boundaries.html"):
            self.open(page)
            self.assertNotEqual(self.browser.run("return getComputedStyle(document.body).backgroundColor;"), "rgb(255, 255, 255)")
            self.keep_screenshot("dark-" + page.rsplit(".", 2)[-2] + ".png")
        self.prefer()


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[2:]])
