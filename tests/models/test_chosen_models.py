#!/usr/bin/env python3
"""Draws a few models of Debian's assimp-testmodels in other ways than check_every_model.py does:
from other sides, at other scales, twice; and looks at what their objects share."""

import argparse
import sys
import tempfile
import unittest
from pathlib import Path

from drawing_check import complaints_about
from drawing_facts import DrawingFacts
from model_set import VIEWS, Expectations, Programs

HOUSE = "IFC/AC14-FZK-Haus.ifc"
ENGINE = "glTF2/2CylinderEngine-glTF-Binary/2CylinderEngine.glb"
TEAPOTS = "Collada/teapot_instancenodes.DAE"


class ChosenModels(unittest.TestCase):
    programs = None
    expectations = Expectations()

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="dxf2d-models-")
        self.addCleanup(folder.cleanup)
        self.drawing = Path(folder.name) / "drawing.dxf"

    def assert_sound(self, model, **options):
        with self.subTest(model=model, **options):
            self.assertEqual([], complaints_about(model, self.programs, self.expectations,
                                                  self.drawing, **options))

    def export(self, model, *options):
        result = self.programs.export(model, self.drawing, *options)
        self.assertEqual(0, result.returncode, result.stderr)

    def test_every_view_shows_the_whole_model(self):
        for view in ("front", "iso"):
            self.assert_sound(HOUSE, view=view)
        for view in [*VIEWS, "-30,20", "200,-75.5"]:
            self.assert_sound("Collada/duck.dae", view=view)
            self.assert_sound("FBX/spider.fbx", view=view)
            self.assert_sound("3DS/cubes_with_alpha.3DS", view=view)

    def test_outer_edges_that_three_faces_share_are_drawn(self):
        self.assert_sound(TEAPOTS, view="front")

    def test_scale_is_the_drawing_s_units_for_one_of_the_model(self):
        self.assert_sound(HOUSE, scale=0.001)
        for scale in (25.4, 1000):
            self.assert_sound("STL/Spider_binary.stl", view="iso", scale=scale)

    def test_the_user_s_axis_wins(self):
        for up in ("y", "z"):
            for model in ("Collada/duck.dae", "FBX/spider.fbx", "3DS/test1.3ds", "OBJ/WusonOBJ.obj",
                          "BLEND/Suzanne_248.blend"):
                self.assert_sound(model, up=up)

    def test_two_exports_are_the_same_to_the_byte(self):
        for model in (HOUSE, ENGINE, "BLEND/Suzanne_248.blend", "LWO/LWO2/hierarchy.lwo"):
            with self.subTest(model=model):
                drawings = []
                for _ in range(2):
                    self.export(model, "--view", "iso")
                    drawings.append(self.drawing.read_bytes())
                self.assertEqual(*drawings)

    def test_objects_of_one_mesh_share_a_block(self):
        # By model, its objects and the blocks that they insert.
        for model, objects, blocks in ((TEAPOTS, 2, 1), ("AMF/test9.amf", 12, 1), (ENGINE, 67, 44),
                                       ("glTF/CesiumMilkTruck/CesiumMilkTruck.gltf", 3, 2),
                                       ("XGL/sample_official.xgl", 2, 1), (HOUSE, 110, 59)):
            with self.subTest(model=model):
                self.export(model)
                placed = DrawingFacts(self.drawing).placed
                self.assertEqual((objects, blocks), (sum(placed.values()), len(placed)))


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    Programs.add_options(parser)
    options, rest = parser.parse_known_args()
    ChosenModels.programs = Programs(options)
    # Says which package is missing.
    ChosenModels.expectations.models()
    unittest.main(argv=[sys.argv[0], *rest])


if __name__ == "__main__":
    main()
