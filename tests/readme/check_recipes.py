"""Runs the commands of README's recipes as a reader would, and looks at the drawings that they make.

usage: check_recipes.py --build BUILD --cmake CMAKE --config CONFIG

Both the program and the SDK are those that the build tree installs. CXX and CXXFLAGS are those of the build.
"""
import argparse
import json
import os
import pathlib
import re
import shutil
import subprocess
import tempfile

import ezdxf

ROOT = pathlib.Path(__file__).resolve().parents[2]
MODELS = pathlib.Path("/usr/share/assimp/models")
HOUSE = MODELS / "IFC" / "AC14-FZK-Haus.ifc"
# Recipe: the drawings that it makes, each with the least number of INSERTs or lines in it.
DRAWINGS = {
    "Plan of a storey": {"ground.dxf": 20},
    "Elevation": {"front.dxf": 20},
    "Sheet of three views": {"sheet.dxf": 3},
    "Outline for a laser cutter": {"outline.dxf": 1},
    "Plan with labels": {"labels.dxf": 20},
    "A folder of models": {"plans/inner/box.dxf": 1, "plans/cube.dxf": 1},
    "A cluster": {"drawings/box.dxf": 1, "drawings/cube.dxf": 1},
    "A host of your own": {"crates.dxf": 2},
}


def recipes():
    """Title and commands of each recipe."""
    section = (ROOT / "README.md").read_text(encoding="utf-8").split("\n## Recipes\n")[1]
    section = section.split("\n## ")[0]
    parts = re.split(r"^\*\*(.+?)\*\*", section, flags=re.MULTILINE)[1:]
    found = {}
    for title, text in zip(parts[0::2], parts[1::2]):
        found[title] = [line[4:] for line in text.split("\n") if line.startswith("    ")]
    return found


def prepare(work):
    """The files that the recipes name."""
    shutil.copy(HOUSE, work / "house.ifc")
    (work / "examples").symlink_to(ROOT / "examples")
    (work / "models" / "inner").mkdir(parents=True)
    cube = "solid\n" + "\n".join(
        f"facet normal 0 0 0\nouter loop\n{corners}\nendloop\nendfacet" for corners in (
            "vertex 0 0 0\nvertex 2 0 0\nvertex 0 2 1", "vertex 2 0 0\nvertex 2 2 0\nvertex 0 2 1"))
    for name in ("cube.stl", "inner/box.stl"):
        (work / "models" / name).write_text(cube + "\nendsolid\n", encoding="ascii")


def run(command, work, environment):
    done = subprocess.run(["bash", "-c", command], cwd=work, env=environment, text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    assert done.returncode == 0, f"{command}\nended with {done.returncode}\n{done.stdout}"
    return done.stdout


def check_drawing(path, least):
    drawing = ezdxf.readfile(path)
    count = len(drawing.modelspace())
    assert count >= least, f"{path.name}: {count} entities, expected at least {least}"


def check_outline(path):
    """Closed loops in millimeters, no segment twice."""
    drawing = ezdxf.readfile(path)
    assert drawing.header["$INSUNITS"] == 4, drawing.header["$INSUNITS"]
    segments = []
    for block in drawing.blocks:
        for line in block.query("LWPOLYLINE"):
            corners = [tuple(round(value, 6) for value in point[:2]) for point in line.get_points()]
            assert line.closed or corners[0] == corners[-1], corners
            corners += corners[:1] if line.closed else []
            segments += [frozenset(pair) for pair in zip(corners, corners[1:])]
    assert segments and len(segments) == len(set(segments))


def check_layers(path):
    layers = {layer.dxf.name for layer in ezdxf.readfile(path).layers}
    assert any("Wand" in name for name in layers) and len(layers) > 20, layers


def check_records(work):
    for name in ("night.jsonl", "part-00.jsonl", "part-01.jsonl"):
        records = [json.loads(line) for line in (work / name).read_text().splitlines()]
        assert records and all(one["outcome"] == "drawn" for one in records), records


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True, help="the build tree")
    parser.add_argument("--cmake", required=True)
    parser.add_argument("--config", required=True, help="the build type")
    args = parser.parse_args()
    found = recipes()
    assert list(found) == list(DRAWINGS), f"README has {list(found)}"
    with tempfile.TemporaryDirectory(prefix="dxf2d-recipes-") as name:
        work = pathlib.Path(name)
        prepare(work)
        prefix = work / "installed"
        subprocess.run([args.cmake, "--install", args.build, "--config", args.config, "--prefix",
                        prefix], check=True, stdout=subprocess.DEVNULL,
                       env={**os.environ, "DESTDIR": ""})
        environment = {**os.environ, "CMAKE_PREFIX_PATH": str(prefix),
                       "PATH": f"{prefix}/bin:{os.environ['PATH']}"}
        for title, commands in found.items():
            assert commands, f"{title} has no commands"
            for command in commands:
                run(command, work, environment)
            for drawing, least in DRAWINGS[title].items():
                check_drawing(work / drawing, least)
        for picture, magic in {"ground.png": b"\x89PNG", "front.pdf": b"%PDF"}.items():
            assert (work / picture).read_bytes().startswith(magic), picture
        check_outline(work / "outline.dxf")
        check_layers(work / "labels.dxf")
        check_records(work)


if __name__ == "__main__":
    main()
