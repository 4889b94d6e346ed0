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
from shapely.ops import unary_union


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
        assert_same_lines(lines_of(work / "plate.dxf"), reference)
        # The link is another placement of the plate's block.
        blocks = blocks_of(work / "plate.dxf")
        assert len(blocks) == 5 and len(set(blocks)) == 4, blocks
        # As users without windows call it.
        environment["PLAN_PATH"] = str(work / "again.dxf")
        done = run(work / "plate.FCStd", macro)
        assert (work / "again.dxf").exists(), done.stdout
        assert (work / "again.dxf").read_bytes() == (work / "plate.dxf").read_bytes()


if __name__ == "__main__":
    main()
