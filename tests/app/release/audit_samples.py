"""Holds drawings of releases 2000 and 2004 against two other programs.

ezdxf must find nothing to fix in them, and shows what they hold; GDAL must see the same lines.
"""
import argparse
import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

import ezdxf
from ezdxf import recover

SAMPLES = pathlib.Path()


class Samples(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.scratch.cleanup)
        subprocess.run([SAMPLES, cls.scratch.name], check=True)

    def path(self, name):
        return pathlib.Path(self.scratch.name, name)

    def test_the_audit_finds_nothing(self):
        for name in ("r2000.dxf", "r2004.dxf", "empty.dxf"):
            with self.subTest(name):
                document = ezdxf.readfile(self.path(name))
                auditor = document.audit()
                self.assertEqual([str(e.message) for e in auditor.errors], [])
                self.assertEqual([str(f.message) for f in auditor.fixes], [])

    def test_nothing_has_to_be_recovered(self):
        for name in ("r2000.dxf", "r2004.dxf", "empty.dxf"):
            with self.subTest(name):
                _, auditor = recover.readfile(self.path(name))
                self.assertEqual([str(e.message) for e in auditor.errors + auditor.fixes], [])

    def test_ezdxf_finds_every_entity(self):
        document = ezdxf.readfile(self.path("r2004.dxf"))
        kinds = sorted(entity.dxftype() for entity in document.modelspace())
        self.assertEqual(kinds, ["3DFACE", "CIRCLE", "INSERT", "LINE", "LWPOLYLINE", "LWPOLYLINE",
                                 "TEXT", "TEXT"])
        self.assertEqual([e.dxftype() for e in document.blocks["GO_1"]], ["LWPOLYLINE"])
        self.assertEqual([e.dxftype() for e in document.blocks["GO_2"]], ["INSERT"])

    def test_handles_differ_and_stay_below_the_seed(self):
        lines = self.path("r2004.dxf").read_text("ascii").splitlines()
        groups = list(zip(map(int, lines[::2]), lines[1::2]))
        handles = [int(value, 16) for code, value in groups if code in (5, 105)]
        seed = handles.pop(0)
        self.assertEqual(len(handles), len(set(handles)))
        self.assertLess(max(handles), seed)
        owners = {int(value, 16) for code, value in groups if code in (330, 340, 350, 390)}
        self.assertLessEqual(owners, set(handles) | {0})

    def test_units_extents_and_styles_are_there(self):
        document = ezdxf.readfile(self.path("r2000.dxf"))
        self.assertEqual(document.header["$INSUNITS"], 4)
        self.assertEqual(document.header["$MEASUREMENT"], 1)
        self.assertEqual(tuple(document.header["$EXTMIN"])[:2], (-5, -2))
        self.assertEqual(tuple(document.header["$EXTMAX"])[:2], (120, 60))
        self.assertIn("DASHED", document.linetypes)
        self.assertEqual(document.layers.get("Walls").dxf.lineweight, 50)
        self.assertEqual(document.layers.get("Hidden").dxf.linetype, "DASHED")

    def test_true_color_is_in_release_2004_alone(self):
        def colors(name):
            document = ezdxf.readfile(self.path(name))
            return [e.dxf.get("true_color") for e in document.modelspace().query("LWPOLYLINE")]

        self.assertEqual(colors("r2004.dxf"), [None, 0x00FE01])
        self.assertEqual(colors("r2000.dxf"), [None, None])
        self.assertNotIn("\n420\n", self.path("r2000.dxf").read_text("ascii"))

    def test_a_text_shows_its_letters(self):
        # This way of reading takes the format's notations for letters, the fast one does not.
        document, _ = recover.readfile(self.path("r2000.dxf"))
        self.assertEqual({t.plain_text() for t in document.modelspace().query("TEXT")}, {"Küche"})

    def test_gdal_sees_closed_rings_layers_and_placed_blocks(self):
        report = json.loads(subprocess.run(
            ["ogr2ogr", "-f", "GeoJSON", "/vsistdout/", self.path("r2000.dxf"), "entities"],
            check=True, capture_output=True).stdout)
        features = report["features"]
        rings = [f for f in features if f["properties"]["Layer"] == "Walls"
                 and f["geometry"]["type"] in ("LineString", "Polygon")]
        self.assertTrue(rings)
        corners = rings[0]["geometry"]["coordinates"]
        self.assertEqual([c[:2] for c in corners], [[0, 0], [100, 0], [100, 50], [0, 0]])
        placed = [f for f in features if "BlockReference" in f["properties"]["SubClasses"]]
        self.assertEqual([c[:2] for c in placed[0]["geometry"]["coordinates"]],
                         [[35, 35], [35, 45], [30, 45], [30, 35], [35, 35]])


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--samples", required=True)
    arguments, rest = parser.parse_known_args()
    SAMPLES = pathlib.Path(arguments.samples)
    unittest.main(argv=[sys.argv[0], *rest])
