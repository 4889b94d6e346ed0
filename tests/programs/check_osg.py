"""OpenSceneGraph's osgconv writes the plan that dxf2d draws of the same model, with the example plug-in.

usage: check_osg.py CMAKE BUILD_TREE CXX_COMPILER DXF2D

Ends with 77, which skips the test, where osgconv or its development files are missing.
"""
import math
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

from plan_comparison import assert_same_lines, assert_same_plan, blocks_of, lines_of
from shapely.geometry import LineString
from shapely.ops import unary_union

SKIPPED = 77
# A house with a gable, and a box beside it: groups, triangles and polygons of an OBJ file.
POINTS = [(0, 0, 0), (8, 0, 0), (8, 5, 0), (0, 5, 0), (0, 0, 3), (8, 0, 3), (8, 5, 3), (0, 5, 3),
          (0, 2.5, 5), (8, 2.5, 5),
          (10, 1, 0), (12, 1, 0), (12, 2, 0), (10, 2, 0), (10, 1, 1), (12, 1, 1), (12, 2, 1), (10, 2, 1)]
HOUSE = [(3, 2, 1, 0), (0, 1, 5, 4), (2, 3, 7, 6), (1, 2, 6, 9, 5), (3, 0, 4, 8, 7), (4, 5, 9, 8), (6, 7, 8, 9)]
BOX = [(13, 12, 11, 10), (14, 15, 16, 17), (10, 11, 15, 14), (11, 12, 16, 15), (12, 13, 17, 16), (13, 10, 14, 17)]


def geometry_text(number, points, primitives):
    """A geometry in OpenSceneGraph's own format; of each primitive set the mode, the first point and the count."""
    sets = [f"osg::DrawArrays {{ UniqueID {number + at} Mode {mode} First {first} Count {count} }}"
            for at, (mode, first, count) in enumerate(primitives, start=2)]
    numbers = "\n".join("{} {} {}".format(*point) for point in points)
    return (f"osg::Geometry {{ UniqueID {number}\nPrimitiveSetList {len(sets)} {{ {' '.join(sets)} }}\n"
            f"VertexArray TRUE {{ osg::Vec3Array {{ UniqueID {number + 1} Binding BIND_PER_VERTEX\n"
            f"vector {len(points)} {{ {numbers} }} }} }} }}\n")


def lines_text():
    """A triangle with a line at its corner, and a loop of lines."""
    return ("#Ascii Scene\n#Version 161\n#Generator OpenSceneGraph 3.6.5\n\nosg::Geode { UniqueID 1\nDrawables 2 {\n"
            + geometry_text(10, [(0, 0, 0), (4, 0, 0), (4, 3, 1), (6, 5, 0)], [("TRIANGLES", 0, 3), ("LINES", 2, 2)])
            + geometry_text(20, [(6, 5, 0), (6, 8, 2), (9, 8, 0)], [("LINE_LOOP", 0, 3)]) + "}\n}\n")


def obj_text(points):
    lines = ["v {} {} {}".format(*point) for point in points]
    for name, faces in (("house", HOUSE), ("box", BOX)):
        lines.append(f"o {name}\ng {name}")
        lines.extend("f " + " ".join(str(corner + 1) for corner in face) for face in faces)
    return "\n".join(lines) + "\n"


def turned(point):
    """Twice the size, turned by 30 degrees about z."""
    x, y, z = (2 * number for number in point)
    cosine, sine = math.cos(math.radians(30)), math.sin(math.radians(30))
    return (x * cosine - y * sine, x * sine + y * cosine, 2 * point[2])


def run(*command, **options):
    done = subprocess.run([str(word) for word in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          text=True, **options)
    assert done.returncode == 0, f"{command} ended with {done.returncode}\n{done.stdout}"
    return done.stdout


def main():
    cmake, build, compiler, dxf2d = sys.argv[1:]
    if not shutil.which("osgconv") or not pathlib.Path("/usr/include/osgDB/Registry").exists():
        print("left out: openscenegraph or libopenscenegraph-dev is not installed")
        sys.exit(SKIPPED)
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        environment = {name: value for name, value in os.environ.items() if name != "DESTDIR"}
        run(cmake, "--install", build, "--prefix", work / "sdk", env=environment)
        [source] = (work / "sdk").glob("share/doc/*/examples/osg_plugin")
        run(cmake, "-S", source, "-B", work / "plugin", f"-DCMAKE_PREFIX_PATH={work / 'sdk'}",
            f"-DCMAKE_CXX_COMPILER={compiler}", "-DCMAKE_CXX_FLAGS=-Wall -Wextra -Wshadow -Werror")
        run(cmake, "--build", work / "plugin")
        environment["OSG_LIBRARY_PATH"] = str(work / "plugin")

        def osgconv(*arguments):
            return run("osgconv", "-O", "noRotation", *arguments, env=environment)

        model = work / "house.obj"
        model.write_text(obj_text(POINTS), encoding="ascii")
        moved = work / "moved.obj"
        moved.write_text(obj_text([turned(point) for point in POINTS]), encoding="ascii")
        for name in (model, moved):
            run(dxf2d, "export", name, "-o", name.with_suffix(".dxf"), "--up", "z", "--creases", "off")
        osgconv(model, work / "house.plan")
        assert_same_plan(work / "house.plan", work / "house.dxf")
        osgconv("-s", "2,2,2", "-o", "30-0,0,1", model, work / "moved.plan")
        # It turns and scales about the center of the model's sphere.
        assert_same_plan(work / "moved.plan", work / "moved.dxf", anywhere=True)
        assert len(blocks_of(work / "moved.plan")) == 2
        # Lines alone, and beside triangles, which OpenSceneGraph does not read from OBJ.
        lines = work / "lines.osgt"
        lines.write_text(lines_text(), encoding="ascii")
        osgconv(lines, work / "lines.plan")
        assert_same_lines(lines_of(work / "lines.plan"), unary_union([LineString(line) for line in (
            [(0, 0), (4, 0), (4, 3), (0, 0)], [(4, 3), (6, 5)], [(6, 5), (6, 8), (9, 8), (6, 5)])]))
        # What cannot be drawn leaves no file and says why.
        printed = osgconv(model, work / "missing" / "house.plan")
        assert "missing/house.plan" in printed and "cannot be created" in printed, printed
        osgconv(work / "house.obj", work / "house.osgt")
        printed = run("osgconv", "-O", "plugin=/no/such.so", work / "house.osgt", work / "b.plan", env=environment)
        assert "/no/such.so" in printed, printed
        assert not (work / "b.plan").exists()


if __name__ == "__main__":
    main()
