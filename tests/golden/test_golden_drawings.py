#!/usr/bin/env python3
"""Holds the golden drawings against the reference implementation of the drawing rules.

With --write it makes them anew instead; read every change through before it is committed.
"""

import argparse
import json
import pathlib
import sys
import unittest

FOLDER = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(FOLDER.parent / "differential"))

from reference_drawing import drawing_of  # noqa: E402 (needs the path above)


def scenes():
    return sorted(FOLDER.glob("*.json"))


def reference_drawing(scene):
    return drawing_of(json.loads(scene.read_text(encoding="utf-8")))


class GoldenDrawings(unittest.TestCase):
    def test_every_scene_has_its_drawing_and_no_drawing_is_left_over(self):
        self.assertEqual([scene.stem for scene in scenes()],
                         sorted(drawing.stem for drawing in FOLDER.glob("*.dxf")))
        self.assertTrue(scenes())

    def test_drawings_are_those_of_the_reference_implementation(self):
        for scene in scenes():
            with self.subTest(scene=scene.stem):
                self.assertEqual(scene.with_suffix(".dxf").read_bytes(), reference_drawing(scene))


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--write", action="store_true", help="write the drawings")
    options, rest = parser.parse_known_args()
    if not options.write:
        unittest.main(argv=[sys.argv[0], *rest])
    for scene in scenes():
        scene.with_suffix(".dxf").write_bytes(reference_drawing(scene))


if __name__ == "__main__":
    main()
