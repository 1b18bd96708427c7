#!/usr/bin/env python3
"""Holds the page that shows a setup against the setup, in headless Chromium.

    preview_test.py KCF EXAMPLES

The pages are opened from the file system. KESTRIX_SCREENSHOTS=DIR keeps what the reader sees there: on
a desk, on a phone, in the dark, and printed.
"""
import base64
import itertools
import math
import os
import random
import re
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import zlib
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent))
from browser import SCREENSHOTS, Browser

KCF, EXAMPLES = (Path(argument).resolve() for argument in sys.argv[1:3])
AXE = os.environ.get("KESTRIX_AXE")  # axe.min.js; see scripts/install-npm
WAIT_LIMIT = 30
VIEW = "const view = kcfPreview.meshView; "
ENTER, TAB = "\ue007", "\ue004"


def decode_png(data):
    """The rows of an 8-bit PNG without interlace, and how many bytes a pixel takes."""
    at, packed = 8, b""
    while at < len(data):
        size, kind = struct.unpack(">I4s", data[at:at + 8])
        if kind == b"IHDR":
            width, height, _, colours = struct.unpack(">IIBB", data[at + 8:at + 18])
        elif kind == b"IDAT":
            packed += data[at + 8:at + 8 + size]
        at += 12 + size
    step = {2: 3, 6: 4}[colours]
    raw, rows, above = zlib.decompress(packed), [], bytes(width * step)
    for y in range(height):
        kind, row = raw[y * (width * step + 1)], bytearray(raw[y * (width * step + 1) + 1:(y + 1) * (width * step + 1)])
        for i in range(len(row)):
            left, up, corner = row[i - step] if i >= step else 0, above[i], above[i - step] if i >= step else 0
            guess = left + up - corner
            nearest = min((left, up, corner), key=lambda value: abs(guess - value))
            row[i] = (row[i] + (0, left, up, (left + up) // 2, nearest)[kind]) & 255
        rows.append(bytes(row))
        above = row
    return rows, step


def setup_of(mesh, more="", strings=(), friction=""):
    """A command file with one 2D region."""
    definitions = "".join(f"STRINGDEF {{\nname = {name}\nupstream_direction = {side}\n}}\n" for name, side in strings)
    return (f"PROJECT {{\ntitle = made\n}}\nDOMAIN {{\nmultiregion = made\nKESTPLANE_2D {{\nregion_name = plain\n"
            f"GEOMETRY {{\ntype = 2dm\nfile = {mesh}\n{definitions}}}\nHYDRAULICS {{\nFRICTION {{\ntype = strickler\n"
            f"default_friction = 30\nwall_friction = off\n{friction}}}\n{more}}}\nTIMESTEP {{\ntotal_run_time = 7200\n}}\n}}\n}}\n")


class Preview(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.numbers = itertools.count()
        cls.temporary = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        cls.addClassCleanup(cls.temporary.cleanup)
        cls.folder = Path(cls.temporary.name)
        cls.browser = Browser(cls.temporary.name)
        cls.addClassCleanup(cls.browser.close)

    def setUp(self):
        self.browser.resize(1440, 1000)
        self.set_media()

    def set_media(self, media="", scheme="light"):
        self.browser.command("Emulation.setEmulatedMedia", media=media, features=[{"name": "prefers-color-scheme", "value": scheme}])

    def wait_for(self, what, script, *arguments):
        end = time.monotonic() + WAIT_LIMIT
        while True:
            value = self.browser.run(script, *arguments)
            if value:
                return value
            self.assertLess(time.monotonic(), end, f"waited in vain for {what}")
            time.sleep(0.05)

    def write(self, setup, page=None, *arguments):
        # Each page has a name of its own: pages of one name remember what their reader chose.
        page = page or self.folder / f"page-{next(self.numbers)}.html"
        subprocess.run([KCF, "preview", setup, "-o", page, *arguments], check=True)
        return page

    def open(self, page):
        self.browser.open("about:blank")
        self.browser.open(page.as_uri())
        self.wait_for("the pictures", "return 'ready' in document.documentElement.dataset;")
        self.settle()

    def settle(self):
        self.browser.ask("POST", "/execute/async", {"script": "const done = arguments[arguments.length - 1];"
                         "requestAnimationFrame(() => requestAnimationFrame(() => done()));", "args": []})

    def show(self, setup):
        self.open(self.write(setup))

    def make(self, mesh, **parts):
        (self.folder / "mesh.2dm").write_text(mesh)
        setup = self.folder / "made.kcf"
        setup.write_text(setup_of("mesh.2dm", **parts))
        return setup

    def colour_at(self, x, y):
        """The colour that the reader sees at a place in the window."""
        png = self.browser.command("Page.captureScreenshot", format="png",
                                   clip={"x": x + self.browser.run("return scrollX;"), "y": y + self.browser.run("return scrollY;"), "width": 1, "height": 1, "scale": 1})
        rows, _ = decode_png(base64.b64decode(png["data"]))
        return "#" + rows[0][:3].hex()

    def colour_of(self, element):
        """The colour of an element off its middle, where no outline and no sign lies."""
        x, y = self.browser.run(VIEW + "const part = view.parts[0]; const e = part.elementIds.indexOf(arguments[0]);"
                                "const [x, y] = view.centre(part, e); const corner = view.cornersOf(part, e)[0];"
                                "const box = view.stage.getBoundingClientRect();"
                                "const [a, b] = view.screen(x + (part.x[corner] - x) * 0.3, y + (part.y[corner] - y) * 0.3); return [a + box.left, b + box.top];", element)
        return self.colour_at(x, y)

    def legend(self):
        return dict(self.browser.run("return [...document.querySelectorAll('.legend li')].map((item) =>"
                                     "[item.querySelector('strong').textContent, item.querySelector('rect').getAttribute('fill')]);"))

    def colour_by(self, title):
        self.browser.run("const select = document.getElementById('mesh-colouring');"
                         "select.selectedIndex = [...select.options].findIndex((option) => option.text === arguments[0]);"
                         "select.dispatchEvent(new Event('change')); document.getElementById('mesh').scrollIntoView();", title)
        self.settle()

    def bare_mesh(self):
        """Shows the mesh without what lies above it."""
        self.browser.run(VIEW + "view.show = {outlines: false, strings: false, sources: false}; view.redraw(); document.getElementById('mesh').scrollIntoView();")
        self.settle()

    def check_colours(self, title, elements):
        """Elements show the colours that the legend gives to their values."""
        self.bare_mesh()
        self.colour_by(title)
        legend = self.legend()
        for element, value in elements.items():
            with self.subTest(title=title, element=element):
                self.assertEqual(self.colour_of(element), legend[value])

    def test_the_reach_is_drawn_as_its_setup_says(self):
        self.show(EXAMPLES / "river-reach/setup.kcf")
        self.check_colours("Material", {1: "2", 2: "1", 21: "3", 40: "2"})
        self.check_colours("Friction (strickler)", {1: "18", 2: "32", 21: "45"})
        self.check_colours("Soil", {1: "bank", 2: "channel", 21: "sill"})
        # Material 3 has no thickness of its own.
        self.check_colours("Control volume", {1: "0.10", 2: "0.20", 21: "not told"})

    def check_strings(self, mesh):
        """The strings of a mesh lie on their nodes; returns them."""
        nodes = {}
        strings = {}
        for words in map(str.split, mesh.read_text().splitlines()):
            if words[:1] == ["ND"]:
                nodes[int(words[1])] = (float(words[2]), float(words[3]))
            elif words[:1] == ["NS"]:
                strings[words[-1]] = [abs(int(word)) for word in words[1:-1]]
        drawn = self.browser.run(VIEW + "return [...document.querySelectorAll('[data-string]')].map((path) => [path.dataset.string, path.className.baseVal,"
                                 "path.getAttribute('d').slice(1).split('L').map((pair) => view.world(pair.split(' ').map(Number)).map((value, i) => value + view.origin[i]))]);")
        self.assertEqual({name for name, _, _ in drawn}, set(strings))
        for name, _, points in drawn:
            self.assertEqual(len(points), len(strings[name]))
            for point, node in zip(points, strings[name]):
                self.assertLess(math.dist(point, nodes[node]), 0.5)
        return drawn

    def test_starts_are_drawn_as_they_say(self):
        for start, mesh in (("flood-2d", "valley.2dm"), ("bedload-2d", "valley.2dm"), ("coupled", "floodplain.2dm"), ("reach-1d", None)):
            with self.subTest(start=start):
                folder = self.folder / start
                subprocess.run([KCF, "template", start, "-o", folder], check=True, capture_output=True)
                self.show(folder / "setup.kcf")
                text = (folder / "setup.kcf").read_text()
                self.assertEqual(self.browser.run("return document.querySelectorAll('.notices .error, main .remark').length;"), 0)
                for label, row in self.series().items():
                    name = next(word for word in row["text"].split() if word.endswith(".txt"))
                    given = [list(map(float, line.split())) for line in (folder / name).read_text().splitlines() if line[:1].isdigit()]
                    self.assertEqual(row["rows"], given, label)
                if mesh is None:
                    continue
                self.check_strings(folder / mesh)
                cards = [words for words in map(str.split, (folder / mesh).read_text().splitlines()) if words[:1] in (["E3T"], ["E4Q"])]
                elements = {int(words[1]): words[-1] for words in cards[::len(cards) // 5]}
                self.check_colours("Material", elements)
                default = re.search(r"FRICTION \{[^}]*default_friction = (\S+)", text[text.index("KESTPLANE_2D"):]).group(1)
                table = re.search(r"[^_]index = \(([^)]*)\).*\n\s*friction = \(([^)]*)\)", text)
                friction = dict(zip(*(part.split() for part in table.groups()))) if table else {}
                self.check_colours("Friction (strickler)", {element: friction.get(material, default) for element, material in elements.items()})

    def test_strings_lie_on_their_nodes(self):
        self.show(EXAMPLES / "river-reach/setup.kcf")
        drawn = self.check_strings(EXAMPLES / "river-reach/reach.2dm")
        kinds = {name: kind.split()[-1] for name, kind, _ in drawn}
        self.assertEqual(kinds["inflow"], "boundary")
        self.assertEqual(kinds["weir_up"], "inner")
        self.assertEqual(kinds["gauge"], "defined")
        pairs = set(self.browser.run("return [...document.querySelectorAll('[data-inner]')].map((pair) => pair.dataset.inner);"))
        self.assertEqual(pairs, {"weir_up weir_down"})
        sources = self.browser.run("return [...document.querySelectorAll('circle[data-source]')].map((sign) => sign.dataset.source);")
        self.assertEqual(sorted(sources), ["gravel_bank"] * 2 + ["mill"] * 2 + ["treatment_plant"] * 2 + ["weir_pool"] * 2)

    def test_water_flows_away_from_the_upstream_side(self):
        # The string runs to the north, so its right side is the east.
        mesh = "MESH2D\nE4Q 1 1 2 3 4 1\nND 1 0 0 1\nND 2 10 0 1\nND 3 10 10 1\nND 4 0 10 1\nNS 1 -4 west\nNS 2 -3 east\n"
        self.show(self.make(mesh, strings=[("west", "right"), ("east", "left")]))
        flows = self.browser.run("return Object.fromEntries([...document.querySelectorAll('[data-flow]')].map((head) => {"
                                 "const [tip, wing] = head.getAttribute('d').slice(1).split('L').map((pair) => parseFloat(pair)); return [head.dataset.flow, tip - wing];}));")
        self.assertLess(flows["west"], 0)
        self.assertGreater(flows["east"], 0)

    def test_an_element_is_told(self):
        self.show(EXAMPLES / "river-reach/setup.kcf")
        self.browser.type("#mesh-search", "11" + ENTER)
        text = self.browser.run("return document.querySelector('.element').innerText;")
        for part in ("Element 11", "13, 18, 19, 14", "99.90 m", "50.00, 20.00", "32 m^(1/3)/s", "channel", "treatment_plant"):
            self.assertIn(part, text)
        self.assertTrue(self.browser.run("return document.querySelector('.kept') !== null;"))
        self.browser.type("#mesh-search", "99999" + ENTER)
        self.assertIn("No element has the id", self.browser.run("return document.querySelector('.element').innerText;"))

    def test_the_mesh_by_keys_and_pointer(self):
        self.show(EXAMPLES / "river-reach/setup.kcf")
        state = VIEW + "return [view.view.x, view.view.y, view.view.scale];"
        x, y, scale = self.browser.run(state)
        self.browser.run("document.querySelector('.stage').focus();")
        for key in ("+", "\ue014", "\ue013"):  # right, up
            self.browser.press(key)
        self.settle()
        moved = self.browser.run(state)
        self.assertAlmostEqual(moved[2], 1.4 * scale)
        self.assertGreater(moved[0], x)
        self.assertGreater(moved[1], y)
        self.browser.press("0")
        for now, then in zip(self.browser.run(state), (x, y, scale)):
            self.assertAlmostEqual(now, then)
        self.browser.press(ENTER)
        self.assertIn("Element", self.browser.run("return document.querySelector('.element').innerText;"))
        place = self.browser.run(VIEW + "document.getElementById('mesh').scrollIntoView(); const box = view.stage.getBoundingClientRect();"
                                 "const [a, b] = view.screen(50 - view.origin[0], 20 - view.origin[1]); return [a + box.left, b + box.top];")
        self.browser.ask("POST", "/actions", {"actions": [{"type": "pointer", "id": "mouse", "actions": [
            {"type": "pointerMove", "duration": 0, "x": round(place[0]), "y": round(place[1])}]}]})
        told = [float(word) for word in self.browser.run("return document.querySelector('.readout').textContent;").split()]
        self.assertLess(math.dist(told, (50, 20)), 0.5)

    def touch(self, kind, *points):
        self.browser.command("Input.dispatchTouchEvent", type=kind, touchPoints=[{"x": x, "y": y, "id": i} for i, (x, y) in enumerate(points)])

    def test_the_mesh_by_touch(self):
        self.browser.resize(390, 800, is_mobile=True)
        self.browser.command("Emulation.setTouchEmulationEnabled", enabled=True, maxTouchPoints=2)
        try:
            self.show(EXAMPLES / "river-reach/setup.kcf")
            left, top, width, height = self.browser.run(VIEW + "document.getElementById('mesh').scrollIntoView(); const box = view.stage.getBoundingClientRect();"
                                                        "return [box.left, box.top, box.width, box.height];")
            x, y = left + width / 2, top + height / 2
            state = VIEW + "return [view.view.x, view.view.y, view.view.scale, scrollY];"
            before = self.browser.run(state)
            # One finger moves the mesh, and not the page.
            self.touch("touchStart", (x, y))
            for step in range(1, 6):
                self.touch("touchMove", (x - 10 * step, y + 6 * step))
            self.touch("touchEnd")
            moved = self.browser.run(state)
            self.assertAlmostEqual(moved[0] - before[0], 50 / before[2], delta=1 / before[2])
            self.assertAlmostEqual(moved[1] - before[1], 30 / before[2], delta=1 / before[2])
            self.assertEqual(moved[2:], before[2:])
            # Two fingers zoom; what lies between them stays there.
            middle = VIEW + "return view.world([view.stage.clientWidth / 2, view.stage.clientHeight / 2]);"
            centre = self.browser.run(middle)
            self.touch("touchStart", (x - 30, y))
            self.touch("touchStart", (x - 30, y), (x + 30, y))
            for step in range(1, 7):
                self.touch("touchMove", (x - 30 - 5 * step, y), (x + 30 + 5 * step, y))
            self.touch("touchEnd")
            zoomed = self.browser.run(state)
            self.assertAlmostEqual(zoomed[2] / moved[2], 2, delta=0.05)
            self.assertEqual(zoomed[3], moved[3])
            self.assertLess(math.dist(self.browser.run(middle), centre), 2 / moved[2])
            # A tap tells what lies below the finger.
            self.browser.run(VIEW + "view.fit(); view.paint();")
            place = self.browser.run(VIEW + "const box = view.stage.getBoundingClientRect(); const part = view.parts[0];"
                                     "const [a, b] = view.screen(...view.centre(part, part.elementIds.indexOf(11))); return [a + box.left, b + box.top];")
            self.touch("touchStart", place)
            self.touch("touchEnd")
            self.assertIn("Element 11", self.browser.run("return document.querySelector('.element').innerText;"))
        finally:
            self.browser.command("Emulation.setTouchEmulationEnabled", enabled=False)

    def test_regions_share_a_view(self):
        """Two meshes, far from each other's origin, each with tables of its own."""
        square = "MESH2D\nE4Q 1 1 2 3 4 {0}\nND 1 {1} 0 1\nND 2 {2} 0 1\nND 3 {2} 10 1\nND 4 {1} 10 1\nNS 1 -4 side\n".format
        (self.folder / "west.2dm").write_text(square(1, 700000, 700010))
        (self.folder / "east.2dm").write_text(square(2, 700015, 700025))
        plane = ("KESTPLANE_2D {{\nregion_name = {0}\nGEOMETRY {{\ntype = 2dm\nfile = {0}.2dm\nSTRINGDEF {{\nname = side\nupstream_direction = left\n}}\n}}\n"
                 "HYDRAULICS {{\nFRICTION {{\ntype = strickler\ndefault_friction = {1}\nwall_friction = off\n}}\n}}\nTIMESTEP {{\ntotal_run_time = 60\n}}\n}}\n").format
        setup = self.folder / "regions.kcf"
        setup.write_text("DOMAIN {\nmultiregion = two\n" + plane("west", 30) + plane("east", 40) + "}\n")
        self.show(setup)
        self.assertEqual(self.browser.run("return [...document.querySelectorAll('.label.region')].map((label) => label.textContent);"), ["west", "east"])
        strings = self.browser.run(VIEW + "return [...document.querySelectorAll('[data-string]')].map((path) => [path.dataset.region,"
                                   "view.world(path.getAttribute('d').slice(1).split('L')[0].split(' ').map(Number))[0] + view.origin[0]]);")
        self.assertEqual({name: round(x, 1) for name, x in strings}, {"west": 700000, "east": 700015})
        for title, values in (("Material", ("1", "2")), ("Friction (strickler)", ("30", "40"))):
            self.bare_mesh()
            self.colour_by(title)
            legend = self.legend()
            for part, value in enumerate(values):
                x, y = self.browser.run(VIEW + "const part = view.parts[arguments[0]]; const box = view.stage.getBoundingClientRect();"
                                        "const [a, b] = view.screen(...view.centre(part, 0)); return [a + box.left + 9, b + box.top + 5];", part)
                self.assertEqual(self.colour_at(x, y), legend[value])

    def test_every_kind_of_mesh(self):
        """Kinds of elements, ids with gaps in any order, unknown cards, and far coordinates."""
        east, north = 2600000, 1200000
        corners = {(0, 0): 70, (10, 0): 12, (20, 0): 900, (30, 0): 31, (0, 10): 5, (10, 10): 44, (20, 10): 8, (30, 10): 1000000}
        sides = {(25, 0): 2000, (30, 5): 2001, (25, 5): 2002, (25, 10): 2003, (20, 5): 2004, (15, 0): 2005, (10, 5): 2006, (15, 10): 2007}
        node = {**corners, **sides}
        lines = ["MESH2D", "MESHNAME \"any\"", f"E4Q 40 {node[0, 0]} {node[10, 0]} {node[10, 10]} {node[0, 10]} 7",
                 "E8Q 3 " + " ".join(str(node[at]) for at in ((10, 0), (15, 0), (20, 0), (20, 5), (20, 10), (15, 10), (10, 10), (10, 5))) + " 2",
                 "E6T 21 " + " ".join(str(node[at]) for at in ((20, 0), (25, 0), (30, 0), (25, 5), (20, 10), (20, 5))) + " 7",
                 f"E3T 9 {node[30, 0]} {node[30, 10]} {node[20, 10]} -4", f"E2L 77 {node[0, 0]} {node[10, 0]} 3", "BEGPARAMDEF"]
        lines += [f"ND {number} {east + x + 0.004} {north + y}.25 {4 + x / 10}" for (x, y), number in sorted(node.items(), key=lambda item: item[1] % 7)]
        lines += [f"NS {node[0, 0]} {node[10, 0]}", f"NS {node[20, 0]} -{node[30, 0]} \"south\""]
        self.show(self.make("\r\n".join(lines) + "\r\n", strings=[("south", "left")]))
        self.assertEqual(self.browser.run("return document.querySelector('[data-string]').getAttribute('d').split('L').length;"), 4)
        self.check_colours("Material", {40: "7", 3: "2", 21: "7", 9: "-4"})
        found = self.browser.run(VIEW + "const part = view.parts[0]; const ids = view.nodeIds(part); return Array.from({length: part.size}, (_, e) => [part.elementIds[e],"
                                 "[...view.cornersOf(part, e)].map((node) => [ids[node], part.x[node] + view.origin[0], part.y[node] + view.origin[1], part.z[node]])]);")
        self.assertEqual(sorted(number for number, _ in found), [3, 9, 21, 40])
        for number, places in found:
            self.assertEqual(len(places), 3 if number in (9, 21) else 4)
            for name, x, y, z in places:
                at = next(at for at, known in corners.items() if known == name)
                self.assertLess(math.dist((x, y, z), (east + at[0] + 0.004, north + at[1] + 0.25, 4 + at[0] / 10)), 0.011)

    def test_any_order_gives_the_same_mesh(self):
        """A mesh whose nodes and elements stand in any order is packed otherwise, and is the same."""
        columns = rows = 60
        chance = random.Random(7)
        order = list(range((columns + 1) * (rows + 1)))
        places = [(3 * (i % (columns + 1)) + chance.random(), 3 * (i // (columns + 1)) + chance.random(), 400 + chance.random()) for i in order]
        elements = [(r * (columns + 1) + c, r * (columns + 1) + c + 1, (r + 1) * (columns + 1) + c + 1, (r + 1) * (columns + 1) + c) for r in range(rows) for c in range(columns)]
        split = [corner for e, corner in enumerate(elements)]
        for is_mixed in (False, True):
            ids = list(order)
            numbered = list(enumerate(split, 1))
            if is_mixed:
                chance.shuffle(ids)
                chance.shuffle(numbered)
            lines = ["MESH2D"]
            for number, corners in numbered:
                a, b, c, d = (ids[corner] + 1 for corner in corners)
                lines.append(f"E4Q {number} {a} {b} {c} {d} {1 + number % 3}" if number % 5 else f"E3T {number} {a} {b} {c} {1 + number % 3}")
            lines += [f"ND {ids[i] + 1} {x:.3f} {y:.3f} {z:.3f}" for i, (x, y, z) in enumerate(places)]
            self.show(self.make("\n".join(lines) + "\n"))
            found = self.browser.run(VIEW + "const part = view.parts[0]; const ids = view.nodeIds(part); return Array.from({length: part.size}, (_, e) => [part.elementIds[e],"
                                     "part.mesh.materials[part.material[e]], [...view.cornersOf(part, e)].map((node) => [ids[node], part.x[node] + view.origin[0], part.y[node] + view.origin[1], part.z[node]])]);")
            self.assertEqual(sorted(number for number, _, _ in found), list(range(1, len(split) + 1)))
            for number, material, told in found:
                self.assertEqual(material, 1 + number % 3)
                expected = split[number - 1][:4 if number % 5 else 3]
                self.assertEqual([name for name, *_ in told], [ids[corner] + 1 for corner in expected])
                for (_, *place), corner in zip(told, expected):
                    self.assertLess(max(abs(p - q) for p, q in zip(place, places[corner])), 0.006)

    def test_elevation_is_shaded(self):
        mesh = "MESH2D\nE4Q 1 1 2 3 4 1\nE4Q 2 2 5 6 3 1\nND 1 0 0 5\nND 2 10 0 5\nND 3 10 10 5\nND 4 0 10 5\nND 5 20 0 9\nND 6 20 10 9\n"
        self.show(self.make(mesh))
        self.bare_mesh()
        self.colour_by("Elevation")
        self.assertEqual(self.colour_of(1), self.browser.run("return kcfPreview.rampColour(0);"))
        self.assertNotIn(self.colour_of(2), (self.colour_of(1), self.browser.run("return kcfPreview.rampColour(1);")))
        self.assertEqual(self.browser.run("return [...document.querySelectorAll('.ends span')].map((end) => end.textContent);"), ["5", "7", "9"])

    def series(self):
        """What the charts hold, by the label of the row."""
        self.browser.run("for (const chart of document.querySelectorAll('.chart')) chart.dispatchEvent(new Event('shown'));")
        count = self.browser.run("return kcfPreview.setup.series.filter((one) => one.stream !== undefined).length;")
        self.wait_for("the charts", "return [...document.querySelectorAll('.chart')].filter((chart) => chart.graph).length === arguments[0];", count)
        return {row["label"]: row for row in self.browser.run(
            "return [...document.querySelectorAll('.row')].filter((row) => row.querySelector('.chart').graph).map((row) => {const graph = row.querySelector('.chart').graph;"
            "return {label: row.querySelector('h3').textContent, text: row.innerText, rows: graph.rawData_, window: graph.xAxisRange()};});")}

    def test_series_are_those_of_the_files(self):
        self.show(EXAMPLES / "river-reach/setup.kcf")
        shown = self.series()
        flood = shown["flood"]
        self.assertEqual(flood["rows"], [[0, 40], [3600, 40], [7200, 180], [14400, 240], [28800, 90], [43200, 45]])
        self.assertIn("discharge [m³/s]", flood["text"])
        self.assertIn("crest level [m a.s.l.]", shown["weir_up – weir_down"]["text"])
        self.assertEqual(self.browser.run("return new Set([...document.querySelectorAll('.chart')].filter((chart) => chart.graph).map((chart) => chart.graph.xAxisRange().join())).size;"), 1)
        # They are zoomed together.
        self.browser.click("#series-view button[aria-label='Zoom in on the time']")
        self.settle()
        windows = self.browser.run("return [...document.querySelectorAll('.chart')].filter((chart) => chart.graph).map((chart) => chart.graph.xAxisRange());")
        self.assertEqual({tuple(window) for window in windows}, {(10800, 32400)})

    def test_no_peak_is_lost(self):
        chance = random.Random(3)
        rows = 50000
        values = [100 + 10 * math.sin(i / 900) + chance.random() for i in range(rows)]
        peaks = {17: 901.5, 4321: -55.25, 25000: 480.125, 49998: 333.0}
        for row, value in peaks.items():
            values[row] = value
        (self.folder / "flood.txt").write_text("# time discharge\n" + "".join(f"{i * 0.1:.1f} {value:.3f}\n" for i, value in enumerate(values)))
        (self.folder / "jump.txt").write_text("0 1\n100 1\n100 7\n3600 7\n")
        (self.folder / "relation.txt").write_text("400 0\n401 12\n402 80\n")
        boundary = "BOUNDARY {{\ntype = {}\nstring_name = {}\nfile = {}\n}}\n".format
        mesh = "MESH2D\nE3T 1 1 2 3 1\nND 1 0 0 1\nND 2 10 0 1\nND 3 10 10 1\nNS 1 -2 a\nNS 2 -3 b\nNS 1 -3 c\n"
        setup = self.make(mesh, strings=[("a", "left"), ("b", "left"), ("c", "left")],
                          more=boundary("hydrograph", "a", "flood.txt") + boundary("hydrograph", "b", "jump.txt") + boundary("hqrelation", "c", "relation.txt"))
        self.show(setup)
        shown = self.series()
        drawn = {round(x * 10): y for x, y in shown["a"]["rows"]}
        self.assertLess(len(drawn), 9000)
        for row, value in peaks.items():
            self.assertEqual(drawn[row], value)
        # In each stretch, too, the lowest and the highest are there.
        for begin in range(0, rows, 100):
            stretch = values[begin:begin + 100]
            near = [value for row, value in drawn.items() if begin - 50 <= row < begin + 150]
            self.assertGreaterEqual(max(near), round(max(stretch), 3))
            self.assertLessEqual(min(near), round(min(stretch), 3))
        self.assertEqual(shown["b"]["rows"], [[0, 1], [100, 1], [100, 7], [3600, 7]])
        self.assertIn("ends at 3600 s, before the simulation (7200 s)", shown["b"]["text"])
        self.assertIn("does not increase", shown["b"]["text"])
        self.assertIn("jumps from 1 to 7 at 100 s", shown["b"]["text"])
        self.assertEqual(shown["c"]["rows"], [[400, 0], [401, 12], [402, 80]])
        self.assertNotEqual(shown["c"]["window"], shown["a"]["window"])

    def test_the_chain_the_bed_and_the_links(self):
        self.show(EXAMPLES / "river-1d/setup.kcf")
        names = self.browser.run("return [...document.querySelectorAll('[data-section]')].map((name) => [name.textContent, name.getBoundingClientRect().left]);")
        self.assertEqual([name for name, _ in names], [f"km_{i / 5:.1f}" for i in range(6)])
        self.assertEqual(names, sorted(names, key=lambda name: name[1]))
        marks = dict(self.browser.run("return [...document.querySelectorAll('[data-mark]')].map((mark) => [mark.dataset.mark, mark.dataset.at]);"))
        self.assertEqual(marks["intake"], "upstream")
        self.assertEqual(marks["gate"], "km_0.4 km_0.6")
        self.assertEqual(marks["spillway"], "km_0.8")
        curve = self.browser.run("return document.querySelector('[data-mixture=gravel] polyline').getAttribute('points').split(' ').map((pair) => pair.split(',').map(Number));")
        bottom, top = 280, 12  # of the picture
        self.assertEqual([round((bottom - y) / (bottom - top) * 100) for _, y in curve], [0, 60, 100])
        self.browser.keep_screenshot("preview-chain.png")
        self.show(EXAMPLES / "linked-regions/setup.kcf")
        self.assertEqual(set(self.browser.run("return [...document.querySelectorAll('[data-node]')].map((node) => node.dataset.node);")),
                         {"river", "floodplain", "ground", "power_plant", "level_control"})
        edges = self.browser.run("return [...document.querySelectorAll('[data-edge]')].map((edge) => [edge.dataset.edge, edge.querySelector('text').textContent, edge.querySelectorAll('.head').length]);")
        self.assertIn(["region RIVER > region FLOODPLAIN", "sequential", 2], edges)
        self.assertIn(["region RIVER > controller level_control", "measures wse", 1], edges)
        self.assertIn(["controller level_control > region RIVER", "sets", 1], edges)

    def test_the_summary_needs_no_script(self):
        page = self.write(EXAMPLES / "river-reach/setup.kcf")
        self.browser.command("Emulation.setScriptExecutionDisabled", value=True)
        try:
            self.browser.open(page.as_uri())
            text = self.browser.run("document.querySelectorAll('details').forEach((one) => { one.open = true; }); return document.querySelector('main').innerText;")
        finally:
            self.browser.command("Emulation.setScriptExecutionDisabled", value=False)
        self.assertIn("10800 to 43200 s (9 h)", text)
        self.assertIn("40 elements, 55 nodes", text)
        digest = subprocess.run(["sha256sum", EXAMPLES / "river-reach/reach.2dm"], check=True, capture_output=True, text=True).stdout.split()[0]
        self.assertIn(digest, text)
        self.assertIn("riemann_tolerance", text)  # a default
        rows = [line.split("\t") for line in text.splitlines()]
        # 55 nodes, 37 times, 8 bytes; a velocity has two components
        self.assertIn(["reach", "node_centered", "depth, velocity, deltaz, max[abs_velocity]", "900", "37", "81.4 kB"], rows)
        self.assertIn(["reach", "boundary_history", "Q, Qsed", "60", "541", "34.6 kB"], rows)
        self.assertIn(["weir_pool", "reach", "bed source", "dredge", "18 19", "dredge_level_absolute 99.9, dredge_trigger_height 0.3, dredge_rate_max 0.05, "
                       "dredge_elem_ids_redist 26 27, dredge_node_ids_redist 37"], rows)
        self.assertIn("type = dredge", text)  # the command file itself

    def test_hostile_names_stay_names(self):
        evil = "<img/src=x/onerror=document.title='pwned'>"
        script = "</script><script>document.title='pwned'</script>{{data}}"
        (self.folder / "series.txt").write_text("0 1\n7200 2\n")
        mesh = f"MESH2D\nE3T 1 1 2 3 1\nND 1 0 0 1\nND 2 10 0 1\nND 3 10 10 1\nNS 1 -2 {evil}\n"
        setup = self.make(mesh, strings=[(evil, "left")], more=f"BOUNDARY {{\nname = {script}\ntype = hydrograph\nstring_name = {evil}\nfile = series.txt\n}}\n")
        text = setup.read_text().replace("title = made", "title = " + script).replace("region_name = plain", "region_name = " + evil)
        setup.write_bytes(text.encode() + b"// \xff\xfe\n")
        self.show(setup)
        self.series()
        self.browser.run("for (const details of document.querySelectorAll('details')) details.open = true;")
        self.assertEqual(self.browser.run("return document.title;"), script + " – setup preview")
        self.assertEqual(self.browser.run("return document.querySelectorAll('img').length;"), 0)
        self.assertEqual(self.browser.run("return document.querySelector('h1').textContent;"), script)
        self.assertEqual(self.browser.run("return document.querySelector('[data-string]').dataset.string;"), evil)
        # Even what got into the page could not run.
        self.browser.run("const script = document.createElement('script'); script.textContent = \"document.title = 'pwned'\"; document.body.append(script);"
                         "const image = document.createElement('div'); image.innerHTML = arguments[0]; document.body.append(image);", evil)
        time.sleep(0.3)
        self.assertNotEqual(self.browser.run("return document.title;"), "pwned")

    def test_a_faulty_setup_is_shown_as_far_as_it_can_be_read(self):
        mesh = "MESH2D\nE3T 1 1 2 3 1\nE3T 2 2 3 99 1\nE3T x\nND 1 0 0 1\nND 2 10 0 1\nND 3 10 10 1\nNS 1 -2 there\n"
        setup = self.make(mesh, strings=[("there", "left"), ("gone", "left")],
                          more="BOUNDARY {\ntype = hydrograph\nstring_name = there\nfile = missing.txt\n}\nNONSENSE {\nx = 1\n}\nstray }\nwrong line\n")
        self.show(setup)
        notices = "\n".join(self.browser.run("return [...document.querySelectorAll('.notices li')].map((one) => one.innerText);"))
        for part in ("no node string named 'gone'", "1 element of the mesh 'mesh.2dm' name", "mesh.2dm:4", "missing.txt", "NONSENSE", "wrong"):
            self.assertIn(part, notices)
        for link in self.browser.run("return [...document.querySelectorAll('.notices a')].map((link) => link.getAttribute('href').slice(1));"):
            self.assertTrue(self.browser.run("return document.getElementById(arguments[0]) !== null;", link), link)
        # Whatever is told of a line leads to that line, too, even into a closed part.
        lines = setup.read_text().splitlines()
        nonsense = next(i for i, line in enumerate(lines, 1) if line.startswith("NONSENSE"))
        self.browser.click(f".notices a[href='#line-{nonsense}']")
        self.assertIn("NONSENSE", self.wait_for("the line", "const line = document.querySelector('li:target'); return line && line.getBoundingClientRect().height > 0 && line.textContent;"))
        self.assertEqual(self.browser.run("return [...document.querySelectorAll('.notices li')].filter((one) => !one.querySelector('a')).length;"), 0)
        self.check_colours("Material", {1: "1"})
        for text in ("", "DOMAIN {", "DOMAIN {\nKESTPLANE_2D {\nGEOMETRY {\nfile = none.2dm\n", "}}}}", "a = (((", "\x00\xff = {"):
            setup.write_bytes(text.encode("latin-1"))
            self.show(setup)
            self.assertTrue(self.browser.run("return document.querySelectorAll('.notices .error').length > 0;"), text)
        gone = subprocess.run([KCF, "preview", self.folder / "none.kcf"], capture_output=True, text=True)
        self.assertEqual((gone.returncode, gone.stdout), (1, ""))
        self.assertIn("none.kcf' does not exist", gone.stderr)

    def test_an_open_page_follows_the_setup(self):
        mesh = "MESH2D\nE3T 1 1 2 3 1\nND 1 0 0 1\nND 2 10 0 1\nND 3 10 10 1\n"
        setup = self.make(mesh)
        page = self.folder / "watched.html"
        watcher = subprocess.Popen([KCF, "preview", setup, "-o", page, "--watch"], stdout=subprocess.PIPE, text=True)
        try:
            self.assertIn("watched.html", watcher.stdout.readline())
            self.open(page)
            # Of all scripts beside the page only the stamp may run.
            (self.folder / "other.js").write_text("document.title = 'pwned';")
            for name in ("other.js", "watched.html.stamp.js"):
                self.browser.run("const script = document.createElement('script'); script.src = arguments[0]; document.head.append(script);", name)
            time.sleep(0.3)
            self.assertNotEqual(self.browser.run("return document.title;"), "pwned")
            self.browser.click("button[aria-label='Zoom in']")
            self.settle()
            scale = self.browser.run(VIEW + "return view.view.scale;")
            (self.folder / "mesh.2dm").write_text(mesh.replace("E3T 1 1 2 3 1", "E3T 8 1 2 3 5"))
            watcher.stdout.readline()
            self.wait_for("the new page", "return globalThis.kcfPreview?.meshView?.parts[0].elementIds[0] === 8;")
            self.assertAlmostEqual(self.browser.run(VIEW + "return view.view.scale;"), scale)
        finally:
            watcher.terminate()
            watcher.wait()
            watcher.stdout.close()

    def test_it_reads_well_everywhere(self):
        for example in ("river-reach", "linked-regions", "river-1d"):
            page = self.write(EXAMPLES / example / "setup.kcf")
            for media, scheme, widths in (("screen", "light", (390, 760, 1057, 1440)), ("screen", "dark", (1440,)), ("print", "light", (703,))):
                self.set_media(media, scheme)
                for width in widths:
                    with self.subTest(example=example, media=media, scheme=scheme, width=width):
                        self.browser.resize(width, 1000, is_mobile=width == 390)
                        self.open(page)
                        self.browser.run("document.querySelectorAll('details').forEach((one) => { one.open = true; });")
                        self.assertLessEqual(self.browser.run("return document.documentElement.scrollWidth;"), width)
                        self.browser.keep_screenshot(f"preview-{example}-{media}-{scheme}-{width}.png")

    @unittest.skipUnless(AXE, "KESTRIX_AXE names no axe.min.js")
    def test_nothing_bars_anyone(self):
        for example in ("river-reach", "linked-regions", "river-1d"):
            for scheme in ("light", "dark"):
                self.set_media("screen", scheme)
                self.show(EXAMPLES / example / "setup.kcf")
                self.browser.run("document.querySelectorAll('details').forEach((one) => { one.open = true; });")
                self.browser.command("Runtime.evaluate", expression=Path(AXE).read_text())
                found = self.browser.ask("POST", "/execute/async", {"script": "const done = arguments[arguments.length - 1]; axe.run({resultTypes: ['violations']}).then((all) =>"
                                         "done(all.violations.map((one) => [one.impact, one.id, one.nodes.slice(0, 3).map((node) => node.html.slice(0, 200))])));", "args": []})
                self.assertEqual([one for one in found if one[0] in ("serious", "critical")], [], (example, scheme))


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], "-v"] + sys.argv[3:])
