#!/usr/bin/python3
"""Draws models with --hidden remove and holds the drawings against all their triangles, one by
one: at least 999 of 1,000 points of what is drawn can be seen, and as many of what can be seen are
drawn.

Prints each drawing with both counts; exit status 1 when one is worse. The models are those of
sample_models.py, with --real also a house from all sides, an engine, and N models of each package
that check_silhouettes.py knows. Meshes are drawn as they are (--repair off), since
what is repaired has other edges.
"""

import argparse
import subprocess
import sys
import tempfile
from pathlib import Path

import numpy as np

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "models"))
from check_silhouettes import chosen_models  # noqa: E402
from silhouette_check import DrawnSegments  # noqa: E402
import sample_models  # noqa: E402
from visibility_check import VisibilityCheck  # noqa: E402

ASSIMP = Path("/usr/share/assimp/models")
ALL_SIDES = ("top", "bottom", "front", "back", "left", "right", "iso")
HOUSE = (ASSIMP / "IFC/AC14-FZK-Haus.ifc", ALL_SIDES)
ENGINE = (ASSIMP / "glTF2/2CylinderEngine-glTF-Binary/2CylinderEngine.glb", ("top", "front", "iso"))
# Wrong points allowed, as a share.
ALLOWED = 1e-3
PATIENCE = 600
# Of real models; reading drawings takes long.
MOST_TRIANGLES = 100_000


def main():
    options = parse_options()
    worst = 0
    with tempfile.TemporaryDirectory(prefix="dxf2d-truth-") as folder:
        for model, views in models(options, Path(folder)):
            for view in views:
                worst = max(worst, report(options, model, view, Path(folder) / "drawing.dxf"))
    return 1 if worst > ALLOWED else 0


def parse_options():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--dxf2d", required=True, help="the program to test")
    parser.add_argument("--model-triangles", required=True,
                        help="the program that projects a model's triangles")
    parser.add_argument("--triangles", type=int, default=12_000, metavar="N",
                        help="size of the sample models (%(default)s)")
    parser.add_argument("--points", type=int, default=3000, metavar="N",
                        help="points of each drawing and each model (%(default)s)")
    parser.add_argument("--views", default="top,iso", help="of the sample models (%(default)s)")
    parser.add_argument("--real", type=int, metavar="N", help="real models, too: N of a package")
    parser.add_argument("--hidden", default="remove", help="how to draw: show must fail")
    parser.add_argument("--verbose", action="store_true", help="print the wrong points")
    parser.add_argument("models", nargs="*", help="other models, seen from above and aslant")
    return parser.parse_args()


def models(options, folder):
    if options.models:
        for model in options.models:
            yield Path(model), ("top", "front", "iso")
        return
    for name, make in sample_models.MODELS.items():
        path = folder / f"{name}.stl"
        sample_models.write_stl(path, make(options.triangles))
        yield path, options.views.split(",")
    if options.real:
        yield as_both_read_it(options, HOUSE[0], folder), HOUSE[1]
        yield ENGINE
        chosen = argparse.Namespace(few=False, each=options.real, root="/")
        for _, model in chosen_models(chosen, folder):
            yield from as_triangles(options, model, folder)


def as_both_read_it(options, model, folder):
    """An IFC model as its importer writes it, where that is installed: dxf2d would read it so, and the
    other program with assimp."""
    importer = Path(options.dxf2d).resolve().parent / "importers" / "dxf2d-import-ifc"
    if not importer.exists():
        return model
    path = folder / f"{model.stem}.glb"
    subprocess.run([importer, model, path], check=True)
    return path


def as_triangles(options, model, folder):
    """The model as assimp cuts it into triangles: the surface of a bent polygon, and with it what
    is hidden, depends on how it is cut."""
    try:
        triangles = numbers_of(options, model, "top", "--with-heights", 10)[:, 1:]
    except subprocess.SubprocessError:
        return
    if 0 < len(triangles) <= MOST_TRIANGLES:
        path = folder / f"{model.name}.stl"
        sample_models.write_stl(path, triangles.reshape(-1, 3, 3))
        yield path, ("top", "iso")


def report(options, model, view, drawing):
    """Prints what is wrong with one drawing; returns the larger share of wrong points."""
    result = subprocess.run(
        [options.dxf2d, "export", model, "--view", view, "--hidden", options.hidden, "--repair", "off",
         "--force", "-o", drawing], capture_output=True, text=True, timeout=PATIENCE, check=False)
    if result.returncode != 0:
        print(f"{model.name} {view}: not drawn: {result.stderr.strip()}")
        return 0
    numbers = numbers_of(options, model, view, "--with-heights", 10)
    drawn_lines = DrawnSegments(drawing).placed
    if len(numbers) == 0 or np.ptp(drawn_lines, axis=(0, 1)).max() == 0:
        print(f"{model.name} {view}: not measured: no triangles, or a point")
        return 0
    check = VisibilityCheck(numbers[:, 0], numbers[:, 1:].reshape(-1, 3, 3),
                            numbers_of(options, model, view, "--sides", 7), drawn_lines)
    drawn = check.wrongly_drawn(options.points)
    lacking, expected = check.not_drawn(options.points)
    shares = len(drawn) / options.points, len(lacking) / max(expected, 1)
    verdict = "" if max(shares) <= ALLOWED else "  <-- too many"
    print(f"{model.name} {view}: {len(drawn)} of {options.points} drawn points cannot be seen, "
          f"{len(lacking)} of {expected} visible points are not drawn{verdict}", flush=True)
    if options.verbose:
        for title, places in (("drawn", drawn), ("lacking", lacking)):
            for place in places[:20]:
                print(f"  {title} {place[0]:.6f} {place[1]:.6f}")
    return max(shares)


def numbers_of(options, model, view, what, columns):
    output = subprocess.run([options.model_triangles, model, view, what], capture_output=True,
                            timeout=PATIENCE, check=True).stdout
    numbers = np.frombuffer(output).reshape(-1, columns)
    return numbers[np.isfinite(numbers).all(axis=1)]


if __name__ == "__main__":
    sys.exit(main())
