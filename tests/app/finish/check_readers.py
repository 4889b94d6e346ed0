"""Holds finished drawings of real models against other programs: counts, layers, rings, extents."""
import argparse
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

import ezdxf

MODELS = pathlib.Path("/usr/share/assimp/models")
HOUSE = MODELS / "IFC" / "AC14-FZK-Haus.ifc"
# Name, model and options of each drawing.
DRAWINGS = (
    ("box", MODELS / "OBJ" / "box.obj", ("--release", "r2000")),
    ("plan", HOUSE, ("--layers", "object", "--labels", "name", "--true-color", "--units", "mm")),
    ("front", HOUSE, ("--view", "front", "--hidden", "dash", "--layers", "kind")),
    ("cut", HOUSE, ("--cut", "1.2", "--hidden", "remove", "--layers", "material", "--explode")),
)
FREECAD = shutil.which("freecadcmd")
LIBRECAD = shutil.which("librecad")
SCREEN = [shutil.which(name) for name in ("inkscape", "xvfb-run", "xdotool")]
INKSCAPE_INPUT = pathlib.Path("/usr/share/inkscape/extensions/dxf_input.py")
TIMEOUT = 300
DXF2D = ""
DXFLIB_COUNTS = ""

FREECAD_SCRIPT = """
import FreeCAD, Import
for path in {paths!r}:
    document = FreeCAD.newDocument("d")
    Import.readDXF(path, "d")
    shapes = [o.Shape for o in document.Objects if hasattr(o, "Shape") and not o.Shape.isNull()]
    box = shapes[0].BoundBox
    for shape in shapes[1:]:
        box = box.united(shape.BoundBox)
    print("read", len(shapes), sum(len(s.Edges) for s in shapes),
          box.XMin, box.YMin, box.XMax, box.YMax)
    FreeCAD.closeDocument("d")
"""


# Imports $1 into $2 on a screen of its own. Inkscape asks how to import, and waits for a key; it may
# not listen yet when its window appears.
INKSCAPE_SCRIPT = """
inkscape --export-filename="$2" "$1" &
while kill -0 $!; do
  timeout 5 xdotool search --sync --onlyvisible --name 'DXF Input' windowfocus key Return
done
"""


def run(*command):
    return subprocess.run([str(part) for part in command], check=True, capture_output=True,
                          text=True, timeout=TIMEOUT).stdout


class Content:
    """What a drawing holds as ezdxf reads it, and what it shows with every INSERT expanded."""

    def __init__(self, path):
        self.document = ezdxf.readfile(path)
        self.polylines = [entity for block in self.document.blocks for entity in block
                          if entity.dxftype() == "LWPOLYLINE"]
        self.shown = []
        self.texts = 0
        self.expand(self.document.modelspace())

    def expand(self, entities):
        for entity in entities:
            if entity.dxftype() == "INSERT":
                self.expand(self.document.blocks[entity.dxf.name])
            elif entity.dxftype() == "TEXT":
                self.texts += 1
            else:
                self.shown.append(entity)

    def edges(self):
        return sum(len(p) if p.closed else len(p) - 1 for p in self.shown)

    def extents(self):
        header = self.document.header
        return (*header["$EXTMIN"][:2], *header["$EXTMAX"][:2])


def lines_of(geometry):
    if geometry["type"] == "LineString":
        yield geometry["coordinates"]
    elif geometry["type"] in ("MultiLineString", "Polygon"):
        yield from geometry["coordinates"]
    elif geometry["type"] == "GeometryCollection":
        for part in geometry["geometries"]:
            yield from lines_of(part)


class Readers(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        scratch = tempfile.TemporaryDirectory()
        cls.addClassCleanup(scratch.cleanup)
        cls.paths = {}
        for name, model, options in DRAWINGS:
            cls.paths[name] = pathlib.Path(scratch.name, name + ".dxf")
            run(DXF2D, "export", model, *options, "-o", cls.paths[name])
        cls.contents = {name: Content(path) for name, path in cls.paths.items()}

    def assertNear(self, extents, expected):
        for value, wanted in zip(extents, expected):
            self.assertAlmostEqual(value, wanted, delta=1e-5 * max(1.0, abs(wanted)))

    def test_the_audit_of_ezdxf_finds_no_error_and_nothing_to_fix(self):
        for name, content in self.contents.items():
            with self.subTest(drawing=name):
                auditor = content.document.audit()
                self.assertEqual([str(e.message) for e in auditor.errors + auditor.fixes], [])

    def test_gdal_sees_every_polyline_and_ring(self):
        for name, content in self.contents.items():
            with self.subTest(drawing=name):
                report = json.loads(run("ogr2ogr", "-f", "GeoJSON", "/vsistdout/",
                                        self.paths[name], "entities"))
                lines = [line for feature in report["features"]
                         for line in lines_of(feature["geometry"])]
                self.assertEqual(len(lines), len(content.shown))
                self.assertEqual(sum(line[0][:2] == line[-1][:2] for line in lines),
                                 sum(bool(polyline.closed) for polyline in content.shown))
                xs = [point[0] for line in lines for point in line]
                ys = [point[1] for line in lines for point in line]
                self.assertNear((min(xs), min(ys), max(xs), max(ys)), content.extents())

    def test_gdal_sees_the_layers(self):
        report = json.loads(run("ogr2ogr", "-f", "GeoJSON", "/vsistdout/", self.paths["cut"],
                                "entities"))
        self.assertEqual({feature["properties"]["Layer"] for feature in report["features"]},
                         {polyline.dxf.layer for polyline in self.contents["cut"].shown})

    def test_dxflib_counts_the_same(self):
        for name, content in self.contents.items():
            with self.subTest(drawing=name):
                counts = dict(re.findall(r"(\w+) (\d+)", run(DXFLIB_COUNTS, self.paths[name])))
                self.assertEqual(int(counts["polylines"]), len(content.polylines))
                self.assertEqual(int(counts["vertices"]), sum(map(len, content.polylines)))

    @unittest.skipUnless(FREECAD, "FreeCAD is not installed")
    def test_freecad_imports_every_edge_in_its_place(self):
        with tempfile.TemporaryDirectory() as scratch:
            script = pathlib.Path(scratch, "read.py")
            script.write_text(FREECAD_SCRIPT.format(paths=list(map(str, self.paths.values()))),
                              encoding="ascii")
            output = run(FREECAD, script)
        results = re.findall(r"read (\d+) (\d+) (\S+) (\S+) (\S+) (\S+)", output)
        self.assertEqual(len(results), len(self.contents))
        for result, (name, content) in zip(results, self.contents.items()):
            with self.subTest(drawing=name):
                self.assertEqual(int(result[1]), content.edges())
                self.assertNear(map(float, result[2:]), content.extents())

    @unittest.skipUnless(LIBRECAD, "LibreCAD is not installed")
    def test_librecad_prints_the_drawing(self):
        for name in ("plan", "front", "cut"):
            path = self.paths[name]
            with self.subTest(drawing=name):
                subprocess.run([LIBRECAD, "dxf2pdf", "-a", str(path)], check=True,
                               capture_output=True, timeout=TIMEOUT,
                               env={"QT_QPA_PLATFORM": "offscreen", "HOME": str(path.parent)})
                # A page without a drawing has a thousand bytes.
                self.assertGreater(path.with_suffix(".pdf").stat().st_size, 5_000)

    @unittest.skipUnless(INKSCAPE_INPUT.exists(), "Inkscape is not installed")
    def test_inkscape_imports_every_polyline_on_its_layer(self):
        for name in ("box", "front"):
            with self.subTest(drawing=name):
                content = self.contents[name]
                svg = run("/usr/bin/python3", INKSCAPE_INPUT, self.paths[name])
                shown = {polyline.dxf.layer for polyline in content.shown}
                labels = set(re.findall(r'inkscape:label="([^"]*)"', svg))
                self.assertEqual(shown - labels, set())
                self.assertGreaterEqual(svg.count("<path"), len(content.polylines))

    @unittest.skipUnless(all(SCREEN), "Inkscape, xvfb or xdotool is not installed")
    def test_inkscape_opens_the_drawing_on_a_screen(self):
        content = self.contents["front"]
        with tempfile.TemporaryDirectory() as scratch:
            opened = pathlib.Path(scratch, "opened.svg")
            subprocess.run([SCREEN[1], "-a", "bash", "-c", INKSCAPE_SCRIPT, "-",
                            str(self.paths["front"]), str(opened)], check=False,
                           capture_output=True, timeout=TIMEOUT,
                           env={**os.environ, "HOME": scratch})
            svg = opened.read_text(encoding="utf-8")
        self.assertGreaterEqual(svg.count("<path"), len(content.polylines))
        labels = set(re.findall(r'inkscape:label="([^"]*)"', svg))
        self.assertEqual({polyline.dxf.layer for polyline in content.shown} - labels, set())


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--dxf2d", required=True)
    parser.add_argument("--dxflib-counts", required=True)
    arguments, rest = parser.parse_known_args()
    DXF2D = arguments.dxf2d
    DXFLIB_COUNTS = arguments.dxflib_counts
    unittest.main(argv=[sys.argv[0], *rest])
