#!/usr/bin/python3
"""Compares the table of formats in README.md with what dxf2d says of models of each format.

    tests/models/check_formats.py --dxf2d build/release/bin/dxf2d [--make-assembly PROGRAM]

Units, names, colors and instances are as dxf2d export --list tells them of all samples of a format; the
reader is the one that a report names; up axis and edges show in drawings with and without --up and with
two angles of creases. Formats that an importer reads are checked if it is there. Exit status 1 when a cell is wrong.
"""

import argparse
import json
import subprocess
import sys
import tempfile
from pathlib import Path

from model_set import MODELS

PAGE = Path(__file__).resolve().parents[2] / "README.md"
# By format, its samples: those of which a cell would otherwise not be seen.
SAMPLES = {
    "IFC": ["IFC/AC14-FZK-Haus.ifc"],
    "glTF": ["glTF2/2CylinderEngine-glTF-Binary/2CylinderEngine.glb"],
    "Collada": ["Collada/COLLADA.dae", "Collada/teapot_instancenodes.DAE"],
    "FBX": ["FBX/cubes_with_names.fbx", "FBX/box.fbx"],
    "X3D": ["X3D/ComputerKeyboard.x3d"],
    "OBJ": ["OBJ/spider.obj", "OBJ/box.obj"],
    "LWO": ["LWO/LWO2/hierarchy.lwo"],
    "3DS": ["3DS/cubes_with_alpha.3DS", "3DS/test1.3ds"],
    "3MF": ["3MF/box.3mf"],
    "AMF": ["AMF/test9.amf", "AMF/test_with_mat.amf"],
    "STL": ["STL/triangle_with_two_solids.stl", "STL/Spider_binary.stl"],
    "PLY": ["PLY/Wuson.ply", "PLY/float-color.ply"],
    "OFF": ["OFF/Cube.off"],
}
# A model in which several objects share a mesh, which no sample of FBX has.
INSTANCED = {"FBX"}
# The color indices of what has no color of its own, and of what has its layer's.
NO_COLOR = {"7", "256"}


def rows():
    """The rows of the table, as dictionaries by heading."""
    lines = PAGE.read_text(encoding="utf-8").split("## Formats")[1].split("\n\n## ")[0].splitlines()
    cells = [[cell.strip() for cell in line.strip("|").split("|")] for line in lines
             if line.startswith("|")]
    return [dict(zip(cells[0], row)) for row in cells[2:]]


class Sample:
    """What dxf2d says of a model."""

    def __init__(self, dxf2d, path):
        self._dxf2d = dxf2d
        self._path = path
        listed = json.loads(self._run("--list", "--json"))
        nodes = listed["nodes"]
        self.unit = listed["unit"]
        self.has_names = any(is_given(node["name"], path) for node in nodes)
        self.has_colors = bool(self._colors() - NO_COLOR)
        self.has_instances = any(node["instances"] for node in nodes)

    def _run(self, *options):
        result = subprocess.run([self._dxf2d, "export", str(self._path), *options],
                                stdout=subprocess.PIPE, check=True, text=True)
        return result.stdout

    def _colors(self):
        """The color indices in the model's drawing: the values of group 62."""
        lines = self._run("-q", "-o", "-").splitlines()
        return {value.strip() for code, value in zip(lines[::2], lines[1::2]) if code.strip() == "62"}

    def reader(self):
        """What a report says."""
        with tempfile.TemporaryDirectory(prefix="dxf2d-report-") as folder:
            report = Path(folder) / "report.jsonl"
            self._run("-q", "-o", "-", "--report", str(report))
            return json.loads(report.read_text(encoding="utf-8").splitlines()[0])["reader"]

    def has_creases(self):
        """Whether creases are looked for."""
        return len({self._run("-q", "-o", "-", "--view", "iso", "--creases", angle)
                    for angle in ("1", "179")}) > 1

    def ups(self):
        """The axes that give the same drawing as the file itself."""
        drawn = {up: self._run("-q", "-o", "-", "--up", up) for up in ("auto", "y", "z")}
        return {up for up in ("y", "z") if drawn[up] == drawn["auto"]}


def is_given(name, path):
    """Whether a name is the model's, and not made by its reader."""
    return name not in ("", "3MF", path.name, str(path)) and not name.startswith("<")


def check(row, samples):
    """The cells that are wrong, as sentences."""
    def wrong(heading, said):
        return f"{row['format']}: {heading} is '{row[heading]}', and dxf2d says {said}"
    units = {sample.unit for sample in samples}
    if row["unit"] == "file":
        if "unknown" in units:
            yield wrong("unit", units)
    elif units != {row["unit"]}:
        yield wrong("unit", units)
    if row["up"] != "file" and not all(row["up"] in sample.ups() for sample in samples):
        yield wrong("up", [sample.ups() for sample in samples])
    readers = {sample.reader() for sample in samples}
    programs = {reader for reader in readers if reader.startswith("dxf2d-import-")}
    if not all(f"[{program}]" in row["read by"] for program in programs) or (
            readers - programs and "assimp" not in row["read by"]):
        yield wrong("read by", readers)
    has_creases = any(sample.has_creases() for sample in samples)
    if row["edges"] != ("creases" if has_creases else "the model's"):
        yield wrong("edges", "creases" if has_creases else "none")
    for heading in ("names", "colors", "instances"):
        has = any(getattr(sample, f"has_{heading}") for sample in samples)
        if heading == "instances" and row["format"] in INSTANCED:
            continue
        if row[heading] != ("yes" if has else "no"):
            yield wrong(heading, "yes" if has else "no")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--dxf2d", required=True, help="the program to test")
    parser.add_argument("--make-assembly", help="the program that makes samples of STEP and IGES")
    options = parser.parse_args()
    faults = []
    with tempfile.TemporaryDirectory(prefix="dxf2d-formats-") as folder:
        samples = {name: [MODELS / path for path in paths] for name, paths in SAMPLES.items()}
        if options.make_assembly:
            for name, end in (("STEP", ".step"), ("IGES", ".igs")):
                path = Path(folder) / f"assembly{end}"
                subprocess.run([options.make_assembly, str(path)], check=True)
                samples[name] = [path]
        for row in rows():
            paths = samples.get(row["format"])
            if paths is None:
                print(f"{row['format']}: no importer, not checked")
                continue
            faults += check(row, [Sample(options.dxf2d, path) for path in paths])
    print("\n".join([*faults, f"{len(faults)} wrong cells"]))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
