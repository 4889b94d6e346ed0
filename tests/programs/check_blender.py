"""Blender's add-on draws what dxf2d draws of the same model, which Blender exports as OBJ.

usage: check_blender.py SOURCE_TREE DXF2D

Ends with 77, which skips the test, where Blender is missing.
"""
import pathlib
import shutil
import subprocess
import sys
import tempfile

from plan_comparison import assert_same_lines, blocks_of, lines_of
from shapely.geometry import LineString
from shapely.ops import unary_union

# The edges without faces, which are not part of the other model.
LOOSE = [LineString(points) for points in (
    [(10, 10), (9, 8)], [(20, 10), (22, 10), (22, 11)], [(30, 10), (33, 10), (33, 14)])]


def main():
    source, dxf2d = sys.argv[1:]
    if not shutil.which("blender"):
        print("left out: blender is not installed")
        sys.exit(77)
    add_on = pathlib.Path(source, "examples", "blender", "export_plan.py")
    scene = pathlib.Path(__file__).with_name("blender_scene.py")
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        done = subprocess.run(["blender", "-b", "--factory-startup", "--python-exit-code", "1", "--python", scene,
                               "--", add_on, work], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        assert done.returncode == 0 and "\nexported\n" in done.stdout, done.stdout
        subprocess.run([dxf2d, "export", work / "table.obj", "-o", work / "reference.dxf", "--up", "z",
                        "--creases", "off"], check=True)
        reference = lines_of(work / "reference.dxf")
        assert_same_lines(lines_of(work / "table.dxf"), unary_union([reference, *LOOSE]))
        assert (work / "table.dxf").read_bytes() == (work / "again.dxf").read_bytes()
        # The legs are one block, placed four times.
        blocks = blocks_of(work / "table.dxf")
        assert len(blocks) == 10 and len(set(blocks)) == 7, blocks
        # As users without windows call it.
        subprocess.run(["blender", "-b", "--factory-startup", "--python-exit-code", "1", "--python", add_on, "--",
                        work / "cube.dxf"], check=True, stdout=subprocess.DEVNULL)
        assert len(blocks_of(work / "cube.dxf")) == 1


if __name__ == "__main__":
    main()
