#!/usr/bin/python3
"""Cuts models with --cut-at and holds the area inside of the loops against what OpenSCAD's
projection(cut = true) leaves of the same triangles: they differ by less than a thousandth.

Prints each section with both areas; exit status 1 when one differs, or when fewer models than asked
for were measured. The models are solids made here, the bracket of examples/, and models of the
packages that check_silhouettes.py knows. OpenSCAD reads closed meshes only, and takes minutes for
large ones: real models with a side of other than two triangles, or with more than MOST_TRIANGLES,
are left out, and so are those that it warns of. Where shells of a model overlap, or lie in each
other, its windings decide what it takes as solid: what an odd number of loops goes around, or what
is in a shell and not in one that faces inwards. One of the two has to be right.
"""

import argparse
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from pathlib import Path

import ezdxf
import numpy as np
from shapely.geometry import Polygon
from shapely.ops import unary_union

TESTS = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(TESTS / "models"))
from check_silhouettes import chosen_models  # noqa: E402
import sample_models  # noqa: E402

BRACKET = TESTS.parent / "examples" / "bracket" / "bracket.off"
# Heights of the cuts, as shares of the model's: none at a place where models have corners.
SHARES = (0.2137, 0.5171, 0.7829)
# Of the larger area; the smallest that is measured, of the model's larger side squared, so that the
# six digits of both files do.
ALLOWED = 1e-3
LEAST = 1e-4
MOST_TRIANGLES = 4000
# Seconds for each program.
PATIENCE = 120


def main():
    options = parse_options()
    measured, failed = 0, 0
    with tempfile.TemporaryDirectory(prefix="dxf2d-sections-") as folder:
        for name, triangles in models(options, Path(folder)):
            sections = [compare(options, name, triangles, share, Path(folder)) for share in SHARES]
            measured += any(difference is not None for difference in sections)
            failed += any(difference is not None and difference > ALLOWED
                          for difference in sections)
    print(f"{measured} models measured, {failed} failed")
    return 1 if failed or measured < options.at_least else 0


def parse_options():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--dxf2d", required=True, help="the program to test")
    parser.add_argument("--model-triangles", required=True,
                        help="the program that projects a model's triangles")
    parser.add_argument("--real", type=int, metavar="N", help="real models, too: N of a package")
    parser.add_argument("--at-least", type=int, default=1, metavar="N",
                        help="how many models have to be measured (%(default)s)")
    return parser.parse_args()


def models(options, folder):
    """Names and triangles, shape (n, 3, 3), in single precision."""
    yield from solids().items()
    yield BRACKET.name, triangles_of(options, BRACKET)
    if options.real:
        chosen = argparse.Namespace(few=False, each=options.real, root="/")
        for name, path in chosen_models(chosen, folder):
            try:
                triangles = triangles_of(options, path)
            except subprocess.SubprocessError:
                continue
            if 0 < len(triangles) <= MOST_TRIANGLES and is_closed(triangles):
                yield name, triangles


def solids():
    apart = sample_models.boxes(np.array([[1, 2, 3], [2, 1, 3], [0.5, 0.5, 4]]),
                                np.array([[0, 0, 0], [7, 1, 0.5], [3, 6, 0]]),
                                sample_models.turns(np.array([0.3, 1.1, 2.0]), 0))
    ball = sample_models.spheres(1)
    center = (ball.reshape(-1, 3).min(axis=0) + ball.reshape(-1, 3).max(axis=0)) / 2
    inner = (0.6 * (ball - center) + center)[:, ::-1].astype(np.float32)
    return {"boxes": apart, "sphere": ball, "hollow sphere": np.concatenate([ball, inner]),
            "torus": torus(3.0, 1.0, 48, 24)}


def torus(around, tube, many, few):
    u, v = np.meshgrid(2 * np.pi * np.arange(many) / many, 2 * np.pi * np.arange(few) / few,
                       indexing="ij")
    ring = around + tube * np.cos(v)
    # Stands on its side, so that its sections are two loops.
    points = np.stack([ring * np.cos(u), tube * np.sin(v), ring * np.sin(u)], axis=-1)
    after, above = np.roll(points, -1, axis=0), np.roll(points, -1, axis=1)
    both = np.roll(after, -1, axis=1)
    triangles = np.concatenate([np.stack([points, above, both], axis=2),
                                np.stack([points, both, after], axis=2)])
    return triangles.reshape(-1, 3, 3).astype(np.float32)


def triangles_of(options, path):
    output = subprocess.run([options.model_triangles, path, "top", "--with-heights"],
                            capture_output=True, timeout=PATIENCE, check=True).stdout
    numbers = np.frombuffer(output).reshape(-1, 10)[:, 1:]
    triangles = numbers[np.isfinite(numbers).all(axis=1)].reshape(-1, 3, 3)
    # STL knows no unit: the larger side is brought to 100, for the digits of both programs.
    size = np.ptp(triangles.reshape(-1, 3), axis=0).max() if len(triangles) else 0
    return (triangles / size * 100 if size > 0 else triangles[:0]).astype(np.float32)


def is_closed(triangles):
    """Whether each side belongs to two triangles, by the places of its ends."""
    _, corners = np.unique(triangles.reshape(-1, 3) + 0.0, axis=0, return_inverse=True)
    corners = corners.reshape(-1, 3)
    sides = np.sort(np.concatenate([corners[:, [i, (i + 1) % 3]] for i in range(3)]), axis=1)
    _, counts = np.unique(sides, axis=0, return_counts=True)
    return bool(np.all(counts == 2) and np.all(sides[:, 0] != sides[:, 1]))


def compare(options, name, triangles, share, folder):
    """Prints both areas of a section; returns by which share they differ, None if not measured."""
    low, high = triangles[..., 2].min(), triangles[..., 2].max()
    height = round(float(low + share * (high - low)), 4)
    model = folder / "model.stl"
    sample_models.write_stl(model, triangles)
    theirs = area_of_openscad(model, height, folder)
    size = np.ptp(triangles.reshape(-1, 3), axis=0).max()
    if theirs is None or theirs < LEAST * size * size:
        return None
    areas = areas_of_dxf2d(options, model, height, Shells(triangles, height),
                           folder / "drawing.dxf")
    ours = min(areas, key=lambda area: abs(area - theirs))
    difference = abs(ours - theirs) / max(ours, theirs)
    verdict = "" if difference <= ALLOWED else "  <-- too different"
    print(f"{name} at {height:g}: dxf2d {ours:.4f}, OpenSCAD {theirs:.4f}, "
          f"difference {100 * difference:.4f} %{verdict}", flush=True)
    return difference


class Shells:
    """What hangs together of a model, and where the plane cuts it."""

    def __init__(self, triangles, height):
        _, corners = np.unique(triangles.reshape(-1, 3) + 0.0, axis=0, return_inverse=True)
        number = connected(corners.reshape(-1, 3))
        places = triangles.astype(float)
        volumes = np.linalg.det(places - places.reshape(-1, 3).mean(axis=0))
        self.count = number.max() + 1
        self.is_cavity = np.bincount(number, volumes) < 0
        ends, following = places, np.roll(places, -1, axis=1)
        is_cut = (ends[..., 2] >= height) != (following[..., 2] >= height)
        share = (height - ends[is_cut][:, 2]) / (following[is_cut] - ends[is_cut])[:, 2]
        self.points = (ends[is_cut] + share[:, None] * (following - ends)[is_cut])[:, :2]
        self.of_point = np.repeat(number[:, None], 3, axis=1)[is_cut]

    def of_loop(self, loop):
        """The shell that one of the loop's points lies on."""
        return self.of_point[np.argmin(np.linalg.norm(self.points - loop[0], axis=1))]


def connected(corners):
    """By triangle: the number of those that share corners, directly or not."""
    label = np.arange(corners.max() + 1)
    while True:
        least = label[corners].min(axis=1)
        before = label.copy()
        np.minimum.at(label, corners, least[:, None])
        if np.array_equal(label, before):
            return np.unique(label[corners[:, 0]], return_inverse=True)[1]


def areas_of_dxf2d(options, model, height, shells, drawing):
    subprocess.run([options.dxf2d, "export", model, "--up", "z", "--cut-at", str(height), "--layers",
                    "kind", "--release", "r2000", "--force", "-o", drawing],
                   capture_output=True, timeout=PATIENCE, check=True)
    document = ezdxf.readfile(drawing)
    loops = [[] for _ in range(shells.count)]
    for block in document.blocks:
        for line in block.query('LWPOLYLINE[layer=="cut"]'):
            loop = [point[:2] for point in line.get_points("xy")]
            loops[shells.of_loop(loop)].append(loop)
    inside = [shape_inside(own) for own in loops]
    solid = unary_union([shape for shape, is_cavity in zip(inside, shells.is_cavity) if not is_cavity])
    for shape in (shape for shape, is_cavity in zip(inside, shells.is_cavity) if is_cavity):
        solid = solid.difference(shape)
    return solid.area, shape_inside(sum(loops, [])).area


def area_of_openscad(model, height, folder):
    """None if it does not read the model as a solid."""
    script, picture = folder / "section.scad", folder / "section.svg"
    script.write_text(f'projection(cut = true) translate([0, 0, {-height}]) import("{model}");\n',
                      encoding="utf-8")
    picture.unlink(missing_ok=True)
    try:
        result = subprocess.run(["openscad", "-o", picture, script], capture_output=True, text=True,
                                timeout=PATIENCE, check=False)
    except subprocess.TimeoutExpired:
        return None
    if result.returncode != 0 or "WARNING" in result.stderr or "ERROR" in result.stderr:
        return None
    loops = []
    for path in ElementTree.parse(picture).getroot().iter("{http://www.w3.org/2000/svg}path"):
        for loop in path.get("d").replace("M", "").replace("L", "").split("z"):
            numbers = [[float(x) for x in pair.split(",")] for pair in loop.split()]
            if numbers:
                loops.append(numbers)
    return shape_inside(loops).area


def shape_inside(loops):
    """What an odd number of loops goes around."""
    shapes = [Polygon(loop).buffer(0) for loop in loops if len(loop) > 2]
    inside = unary_union([])
    for shape in shapes:
        inside = inside.symmetric_difference(shape)
    return inside


if __name__ == "__main__":
    sys.exit(main())
