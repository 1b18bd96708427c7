"""Writes the inputs of the benchmark, each into a folder of its own.

    generate.py INPUT FOLDER SIZE

INPUT is a function of this file. Numbers and names are of usual length and the same in each run.
"""

import random
import sys
from pathlib import Path

EXAMPLES = Path(__file__).resolve().parent.parent / "examples"


def example(name):
    return (EXAMPLES / name / "setup.kcf").read_text()


def insert(setup, behind, text):
    head, anchor, tail = setup.partition(behind)
    assert anchor, behind
    return head + anchor + text + tail


def first_region(folder, mesh=None):
    """The setup of the first region; its mesh unless another text is given."""
    (folder / "g.2dm").write_text(mesh or (EXAMPLES / "first-region" / "g.2dm").read_text())
    return example("first-region")


def start(folder, _):
    (folder / "setup.kcf").write_text(first_region(folder))


def blocks(folder, megabytes):
    """Repeatable blocks of nine tags, until the file has its size."""
    block = """      SPECIAL_OUTPUT {{
        type = KESTviz
        output_time_step = {1}.5
        variable = velocity
        wse3D = on
        vectors = off
        gridlines = on
        vectors_scaling_factor = {1}.25
        write_jpeg_image_time = {2}.125
        threshold_wse = -{0}.75
      }}
"""
    texts = []
    size = 0
    while size < megabytes * 1e6:
        i = len(texts)
        texts.append(block.format(i, 1 + i % 7, i % 1000))
        size += len(texts[-1])
    (folder / "setup.kcf").write_text(
        insert(first_region(folder), "console_time_step = 10\n", "".join(texts)))


def number_list(folder, count):
    """One list of real numbers, and beside it the same numbers alone."""
    text = "\n".join(f"{i * 7919 % 999983 / 1000}" for i in range(count))
    zone = ("      ZONE {\n        name = levee\n        type = block\n        ymin = 0\n        ymax = 1\n"
            f"        x_values = (\n{text}\n)\n        z_values = ( 0 1 )\n      }}\n")
    for file in (EXAMPLES / "linked-regions").iterdir():
        (folder / file.name).write_bytes(file.read_bytes())
    head, region, rest = example("linked-regions").partition("  KESTSUB {\n")
    (folder / "setup.kcf").write_text(head + region + insert(rest, "    GEOMETRY {\n", zone))
    (folder / "numbers.txt").write_text(text)


def mesh(folder, elements, strings=200):
    """Squares of two triangles each, in rows."""
    columns = 1000
    with open(folder / "g.2dm", "w") as out:
        out.write("MESH2D\n")
        for i in range(elements):
            row, column = divmod(i // 2, columns - 1)
            node = row * columns + column + 1
            others = f"{node + 1} {node + 1001}" if i % 2 == 0 else f"{node + 1001} {node + 1000}"
            out.write(f"E3T {i + 1} {node} {others} {1 + i % 2}\n")
        for i in range((row + 2) * columns):
            out.write(f"ND {i + 1} {600000 + i % columns}.250 {200000 + i // columns}.500 {400 + i % 37}.125\n")
        for i in range(strings):
            out.write(f"NS {i + 1} {i + 2} {i + 3} -{i + 4} s{i + 3}\n")
    definitions = "".join(f"      STRINGDEF {{\n        name = s{i + 3}\n        upstream_direction = left\n      }}\n"
                          for i in range(strings))
    setup = example("first-region")
    (folder / "setup.kcf").write_text(
        setup[:setup.index("      STRINGDEF")] + definitions + setup[setup.index("    }\n    HYDRAULICS"):])


def shuffled_mesh(folder, elements):
    """The mesh with its nodes and elements in any order."""
    mesh(folder, elements)
    lines = (folder / "g.2dm").read_text().splitlines(keepends=True)[1:]
    random.Random(1).shuffle(lines)
    (folder / "g.2dm").write_text("MESH2D\n" + "".join(lines))


def series(folder, rows, files=26):
    text = "".join(f"{i * 60}.0 {100 + i * 7919 % 9973 / 100}\n" for i in range(rows))
    strings = "".join(f"      STRINGDEF {{\n        name = b{i}\n        upstream_direction = left\n      }}\n"
                      for i in range(files))
    boundaries = "".join(f"      BOUNDARY {{\n        type = hydrograph\n        string_name = b{i}\n"
                         f"        slope = 1\n        file = series{i}.txt\n      }}\n" for i in range(files))
    nodes = "".join(f"NS 1 -2 b{i}\n" for i in range(files))
    setup = first_region(folder, (EXAMPLES / "first-region" / "g.2dm").read_text() + nodes)
    setup = insert(setup, "file = g.2dm\n", strings)
    (folder / "setup.kcf").write_text(insert(setup, "    HYDRAULICS {\n", boundaries))
    for i in range(files):
        (folder / f"series{i}.txt").write_text(text)


def boundaries(folder, count):
    """Strings, boundaries on them and controllers that move the boundaries, all with names of their own."""
    nodes = "".join(f"NS 1 -2 edge_{i}\n" for i in range(count))
    setup = first_region(folder, (EXAMPLES / "first-region" / "g.2dm").read_text() + nodes)
    setup = insert(setup, "file = g.2dm\n", "".join(
        f"      STRINGDEF {{\n        name = edge_{i}\n        upstream_direction = left\n      }}\n"
        for i in range(count)))
    setup = insert(setup, "    HYDRAULICS {\n", "".join(
        f"      BOUNDARY {{\n        type = hqrelation\n        string_name = edge_{i}\n        slope = 1\n      }}\n"
        for i in range(count)))
    variables = "".join(f"    MANIPULATED_VARIABLE {{\n      name = gate_{i}\n      position = r1.edge_{i}\n"
                        f"      start_value = {i}.5\n      max_change_rate = 0.01\n    }}\n" for i in range(count))
    coefficients = "".join(f"      coefficients = gate_{i}:( 0.5 0.01 0 )\n" for i in range(count))
    controller = ("  CONTROLLER {\n    name = all\n    type = PID\n    MONITORED_VARIABLE {\n      name = level\n"
                  "      type = wse\n      position = r1.1\n      root_value = 3\n" + coefficients + "    }\n" +
                  variables + "  }\n")
    (folder / "setup.kcf").write_text(insert(setup, "  multiregion = test\n", controller))


def materials(folder, count):
    """Mixtures, and soils whose layers name them."""
    for file in (EXAMPLES / "river-reach").iterdir():
        (folder / file.name).write_bytes(file.read_bytes())
    mixtures = "".join(f"        MIXTURE {{\n          name = mixture_{i}\n          volume_fraction = (20 30 40 10)\n"
                       f"        }}\n" for i in range(count))
    soils = "".join(f"        SOIL_DEF {{\n          name = soil_{i}\n          LAYER {{\n"
                    f"            mixture = mixture_{i}\n            bottom_elevation = -3\n          }}\n        }}\n"
                    for i in range(count))
    setup = insert(example("river-reach"), "      BEDMATERIAL {\n", mixtures + soils)
    (folder / "setup.kcf").write_text(setup)


def connections(folder, count):
    """Connections of a lateral coupling, ten for each cross section of the chain."""
    for file in (EXAMPLES / "linked-regions").iterdir():
        (folder / file.name).write_bytes(file.read_bytes())
    sections = " ".join(f"km_{i:07}" for i in range(count // 10))
    (folder / "setup.kcf").write_text(
        example("linked-regions").replace("km_1000 )", f"km_1000 {sections} )"))
    (folder / "connections.txt").write_text(
        "".join(f"km_{i % (count // 10):07} {i % 2} {i + 1} {i + 2}\n" for i in range(count)) + "end\n")


def warnings(folder, count):
    """Blocks each of which draws a warning: a value that its type does not use."""
    block = ("      BOUNDARY {{\n        type = zero_gradient\n        string_name = edge_{0}\n"
             "        conveyance_type = edge\n      }}\n")
    setup = first_region(folder)
    setup = insert(setup, "file = g.2dm\n", "".join(
        f"      STRINGDEF {{\n        name = edge_{i}\n        upstream_direction = left\n      }}\n"
        for i in range(count)))
    nodes = "".join(f"NS 1 -2 edge_{i}\n" for i in range(count))
    first_region(folder, (EXAMPLES / "first-region" / "g.2dm").read_text() + nodes)
    (folder / "setup.kcf").write_text(
        insert(setup, "    HYDRAULICS {\n", "".join(block.format(i) for i in range(count))))


def faulty(folder, count):
    """A fault in each of that many lines: names that no block has, and values that no tag takes."""
    lines = ("frction = 3", "type = kestviz", "output_time_step = 1,5", "vectors = maybe")
    block = "      SPECIAL_OUTPUT {{\n{0}      }}\n"
    setup = first_region(folder)
    text = "".join(f"        {line}\n" for line in lines)
    (folder / "setup.kcf").write_text(
        insert(setup, "console_time_step = 10\n", block.format(text) * (count // len(lines))))


def small_files(folder, count):
    """That many small setups in two folders, "0" and "1", each with a title of its own."""
    for i in range(count):
        half = folder / str(i % 2)
        if i < 2:
            half.mkdir()
            setup = first_region(half)
        (half / f"setup-{i}.kcf").write_text(setup.replace("title = ", f"title = s{i}_", 1))


if __name__ == "__main__":
    globals()[sys.argv[1]](Path(sys.argv[2]), int(sys.argv[3]))
