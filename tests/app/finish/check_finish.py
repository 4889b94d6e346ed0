"""Finishes drawings of real models and holds them against ezdxf and GDAL, and against themselves."""
import argparse
import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

import ezdxf

MODELS = pathlib.Path("/usr/share/assimp/models")
NAMES = ("OBJ/box.obj", "IFC/AC14-FZK-Haus.ifc", "STL/Wuson.stl")
OPTIONS = ((), ("--explode",), ("--join", "off"), ("--release", "r2004", "--units", "mm",
                                                   "--source-units", "m"))
DXF2D = ""


def dxf2d(*arguments):
    return subprocess.run([DXF2D, *map(str, arguments)], check=True, capture_output=True)


def polylines(path):
    """The light polylines of all blocks and spaces."""
    document = ezdxf.readfile(path)
    return [entity for block in document.blocks for entity in block
            if entity.dxftype() == "LWPOLYLINE"]


class Finish(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.scratch.cleanup)
        cls.drawings = []
        for name in NAMES:
            drawing = pathlib.Path(cls.scratch.name, pathlib.Path(name).name + ".dxf")
            dxf2d("export", MODELS / name, "--labels", "name", "-o", drawing)
            cls.drawings.append(drawing)

    def finish(self, drawing, *options):
        output = pathlib.Path(self.scratch.name, "finished.dxf")
        dxf2d("finish", "-f", drawing, "-o", output, *options)
        return output

    def test_the_audit_finds_nothing(self):
        for drawing in self.drawings:
            for options in OPTIONS:
                with self.subTest(drawing=drawing.name, options=options):
                    auditor = ezdxf.readfile(self.finish(drawing, *options)).audit()
                    self.assertEqual([str(e.message) for e in auditor.errors + auditor.fixes], [])

    def test_finishing_twice_is_finishing_once(self):
        for drawing in self.drawings:
            for options in OPTIONS[:3]:
                with self.subTest(drawing=drawing.name, options=options):
                    once = self.finish(drawing, *options).read_bytes()
                    again = pathlib.Path(self.scratch.name, "once.dxf")
                    again.write_bytes(once)
                    self.assertEqual(self.finish(again, *options).read_bytes(), once)

    def test_a_box_is_one_closed_polyline(self):
        rings = polylines(self.finish(self.drawings[0]))
        self.assertEqual([ring.closed for ring in rings], [True])
        self.assertEqual(len(rings[0]), 4)

    def test_gdal_reads_the_box_in_its_place(self):
        report = json.loads(subprocess.run(
            ["ogr2ogr", "-f", "GeoJSON", "/vsistdout/", self.finish(self.drawings[0]), "entities"],
            check=True, capture_output=True).stdout)
        corners = [corner[:2] for feature in report["features"]
                   for corner in feature["geometry"]["coordinates"]
                   if feature["geometry"]["type"] == "LineString"]
        self.assertEqual(len(corners), 5)
        self.assertEqual(corners[0], corners[-1])
        self.assertEqual(sorted(map(tuple, corners[:-1])),
                         [(-0.5, -0.5), (-0.5, 0.5), (0.5, -0.5), (0.5, 0.5)])

    def test_a_preview_reads_what_is_finished(self):
        for drawing in self.drawings:
            picture = pathlib.Path(self.scratch.name, "picture.png")
            dxf2d("preview", "-f", self.finish(drawing), "-o", picture)
            self.assertGreater(picture.stat().st_size, 0)

    def test_units_convert_lengths(self):
        finished = ezdxf.readfile(self.finish(self.drawings[0], "--units", "mm",
                                              "--source-units", "m"))
        self.assertEqual(finished.header["$INSUNITS"], 4)
        self.assertEqual(tuple(finished.header["$EXTMAX"])[:2], (500, 500))

    def test_unknown_source_units_are_a_usage_error(self):
        run = subprocess.run([DXF2D, "finish", self.drawings[0], "-o",
                              pathlib.Path(self.scratch.name, "never.dxf"), "--units", "mm"],
                             capture_output=True, text=True)
        self.assertEqual(run.returncode, 2)
        self.assertIn("--source-units", run.stderr)

    def test_what_a_drawing_does_not_know_is_a_usage_error(self):
        for option in (("--layers", "object"), ("--layers", "material"), ("--true-color",)):
            run = subprocess.run([DXF2D, "finish", self.drawings[0], *option, "-o",
                                  pathlib.Path(self.scratch.name, "never.dxf")],
                                 capture_output=True, text=True)
            self.assertEqual(run.returncode, 2)
            self.assertIn("dxf2d export", run.stderr)

    def test_a_drawing_keeps_its_release_and_its_exact_colors(self):
        exact = pathlib.Path(self.scratch.name, "exact.dxf")
        dxf2d("export", MODELS / NAMES[1], "--true-color", "-o", exact)
        self.assertEqual(self.finish(exact).read_bytes(), exact.read_bytes())
        earlier = ezdxf.readfile(self.finish(exact, "--release", "r2000"))
        self.assertEqual(earlier.dxfversion, "AC1015")

    def test_a_finished_drawing_has_no_name_of_a_picture(self):
        for name in ("never.png", "never.dwg"):
            output = pathlib.Path(self.scratch.name, name)
            run = subprocess.run([DXF2D, "finish", self.drawings[0], "-o", output],
                                 capture_output=True, text=True)
            self.assertEqual(run.returncode, 2)
            self.assertIn(".dxf", run.stderr)
            self.assertFalse(output.exists())


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--dxf2d", required=True)
    arguments, rest = parser.parse_known_args()
    DXF2D = arguments.dxf2d
    unittest.main(argv=[sys.argv[0], *rest])
