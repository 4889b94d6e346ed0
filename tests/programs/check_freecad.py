"""FreeCAD's macro draws what dxf2d draws of the same shapes, which FreeCAD writes as STL.

usage: check_freecad.py SOURCE_TREE DXF2D

Ends with 77, which skips the test, where FreeCAD is missing.
"""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

from plan_comparison import assert_same_lines, blocks_of, lines_of
from shapely.geometry import LineString, Point, box
from shapely.ops import unary_union

# What has edges without faces, and stands where nothing else does.
LINES = [LineString(points) for points in (
    [(100, 0), (110, 0), (110, 10)], [(140, 0), (140, 8)], [(160, -6), (160, 0)],
    [(160, 0), (164, 0), (164, 2), (160, 2), (160, 0)])]
ARC = Point(120, 100).buffer(5, 1000).boundary.intersection(box(0, 100, 200, 200))
AROUND_ARC = box(110, 90, 130, 110)


def main():
    source, dxf2d = sys.argv[1:]
    freecad = shutil.which("freecadcmd") or shutil.which("FreeCADCmd")
    if not freecad:
        print("left out: freecad is not installed")
        sys.exit(77)
    macro = pathlib.Path(source, "examples", "freecad", "ExportPlan.FCMacro")
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        # Its settings go there, too.
        environment = dict(os.environ, PLAN_MACRO=str(macro), PLAN_DIRECTORY=folder, HOME=folder)

        def run(*arguments):
            return subprocess.run([freecad, *arguments], env=environment, stdin=subprocess.DEVNULL,
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)

        done = run(pathlib.Path(__file__).with_name("freecad_scene.py"))
        assert done.returncode == 0 and "\nexported\n" in done.stdout, done.stdout
        models = sorted(work.glob("*.stl"))
        assert len(models) == 5, models
        for model in models:
            subprocess.run([dxf2d, "export", model, "-o", model.with_suffix(".dxf"), "--up", "z", "--creases", "off",
                            "--quiet"], check=True)
        reference = unary_union([lines_of(model.with_suffix(".dxf")) for model in models])
        drawn = lines_of(work / "plate.dxf")
        assert_same_lines(drawn.difference(AROUND_ARC), unary_union([reference, *LINES]))
        assert_same_lines(drawn.intersection(AROUND_ARC), ARC, tolerance=0.11)
        # The link is another placement of the plate's block.
        blocks = blocks_of(work / "plate.dxf")
        assert len(blocks) == 9 and len(set(blocks)) == 8, blocks
        # As users without windows call it.
        environment["PLAN_PATH"] = str(work / "again.dxf")
        done = run(work / "plate.FCStd", macro)
        assert (work / "again.dxf").exists(), done.stdout
        assert (work / "again.dxf").read_bytes() == (work / "plate.dxf").read_bytes()


if __name__ == "__main__":
    main()
