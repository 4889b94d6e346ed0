#!/usr/bin/python3
"""Draws real models from above, from the front and aslant, and holds each drawing against the
silhouette of the model's triangles: it draws it to 98 %, nothing outside it, and no segment of an
object twice.

The models are those of Debian's packages in PACKAGES that are installed or unpacked into a folder.
Those in shortfalls.json are known to fall short, with the reason. Not measured are models that
assimp does not read, without triangles, larger than MOST_TRIANGLES, refused as expectations.json
has it, or not done within PATIENCE. Prints each model with what is
wrong, then how many passed, failed, are known to fall short and were not measured; exit status 1
when any failed, or when fewer were measured than asked for.
"""

import argparse
import json
import subprocess
import sys
import tempfile
import zipfile
from collections import Counter
from concurrent.futures import ThreadPoolExecutor
from multiprocessing import get_context
from pathlib import Path

import numpy as np

from model_set import Expectations
from silhouette_check import MOST_TRIANGLES, complaints_about

VIEWS = ("top", "front", "iso")
OUTCOMES = PASSED, FAILED, KNOWN, NOT_MEASURED = (
    "passed", "failed", "known to fall short", "not measured")

# By package: where its models are, from the root of the file system on.
PACKAGES = {
    "assimp-testmodels": "usr/share/assimp/models",
    "gl-117-data": "usr/share/games/gl-117/models",
    "brutalchess": "usr/share/games/brutalchess",
    "cura": "usr/share/cura/resources",
    "sweethome3d-furniture": "usr/share/sweethome3d/furniture",
}
KINDS = {".obj", ".3ds", ".stl", ".3mf", ".ifc", ".glb", ".gltf", ".dae", ".fbx", ".ac", ".lwo",
         ".ply", ".off", ".x", ".blend"}
# In assimp-testmodels, what is made to test readers and not to be looked at.
NOT_REAL = ("invalid", "ParsingFiles", "SourceFiles", "ReferenceImages", "PLY/points",
            "glTF2/IncorrectVertexArrays", "glTF/IncorrectVertexArrays")
# Those of a quick run: of each package so many, evenly spread.
FEW = {"assimp-testmodels": 24, "gl-117-data": 14}
# Seconds for each program that reads a model, and for measuring all views of one.
PATIENCE = 60


def main():
    options = parse_options()
    with tempfile.TemporaryDirectory(prefix="dxf2d-silhouettes-") as folder:
        models = list(chosen_models(options, Path(folder)))
        if not models:
            sys.exit("There are no models; scripts/install-packages models installs some.")
        check = ModelCheck(options, Path(folder))
        known = known_shortfalls()
        with ThreadPoolExecutor(options.jobs) as pool:
            results = pool.map(lambda model: in_process(check, *model), models)
            outcomes = Counter(report(name, complaints, known.get(name), options.verbose)
                               for (name, _), complaints in zip(models, results))
    print(", ".join(f"{outcomes[outcome]} {outcome}" for outcome in OUTCOMES))
    measured = len(models) - outcomes[NOT_MEASURED]
    if measured < options.at_least:
        print(f"Only {measured} of at least {options.at_least} models were measured.")
        return 1
    return 1 if outcomes[FAILED] else 0


def parse_options():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--dxf2d", required=True, help="the program to test")
    parser.add_argument("--model-triangles", required=True,
                        help="the program that projects a model's triangles")
    parser.add_argument("--few", action="store_true", help="some 30 models only")
    parser.add_argument("--at-least", type=int, default=1, metavar="N",
                        help="how many models have to be measured (%(default)s)")
    parser.add_argument("--root", default="/", help="where the packages are unpacked (%(default)s)")
    parser.add_argument("--jobs", type=int, default=2, help="models at a time (%(default)s)")
    parser.add_argument("--each", type=int, metavar="N", help="at most N models of a package")
    parser.add_argument("--verbose", action="store_true", help="also names the known shortfalls")
    return parser.parse_args()


def known_shortfalls():
    with open(Path(__file__).with_name("shortfalls.json"), encoding="utf-8") as stream:
        return {name: entry["reason"] for entry in json.load(stream)
                for name in entry["models"]}


def chosen_models(options, folder):
    """Pairs of a name, package and path, and the path of the file."""
    for package, place in PACKAGES.items():
        if options.few and package not in FEW:
            continue
        models = list(models_below(package, Path(options.root) / place, folder))
        count = FEW[package] if options.few else options.each or len(models)
        step = max(1, len(models) // count)
        yield from models[::step][:count]


def models_below(package, root, folder):
    for archive in sorted(root.glob("*.sh3f")):
        with zipfile.ZipFile(archive) as zipped:
            zipped.extractall(folder / package / archive.stem)
    if (folder / package).is_dir():
        root = folder / package
    for path in sorted(root.rglob("*")):
        name = str(path.relative_to(root))
        if path.suffix.lower() in KINDS and path.is_file() and not name.startswith(NOT_REAL):
            yield f"{package}/{name}", path


def in_process(check, name, path):
    """check(name, path) in a process of its own; None if it takes longer than PATIENCE."""
    context = get_context("fork")
    receiver, sender = context.Pipe(duplex=False)
    process = context.Process(target=lambda: sender.send(check(name, path)))
    process.start()
    sender.close()
    try:
        return receiver.recv() if receiver.poll(3 * PATIENCE) else None
    except EOFError:
        return ["ends the process that measures it"]
    finally:
        process.kill()
        process.join()


class ModelCheck:
    """Measures one model."""

    def __init__(self, options, folder):
        self._dxf2d = options.dxf2d
        self._triangles = options.model_triangles
        self._folder = folder
        self._refused = {f"assimp-testmodels/{model}" for model in Expectations().refused}

    def __call__(self, name, path):
        """What is wrong; None for a model that is not measured."""
        if name in self._refused:
            return None
        complaints = []
        for view in VIEWS:
            triangles = self._projected(path, view)
            if triangles is None:
                return None
            with tempfile.NamedTemporaryFile(dir=self._folder, suffix=".dxf") as drawing:
                result = run(self._dxf2d, "export", "--force", str(path), "--view", view, "-o",
                             drawing.name)
                if result.returncode != 0:
                    reason = result.stderr.decode(errors="replace").strip()
                    complaints.append(f"{view}: is not drawn: {reason}")
                    continue
                complaints += [f"{view}: {complaint}"
                               for complaint in complaints_about(drawing.name, triangles)]
        return complaints

    def _projected(self, model, view):
        result = run(self._triangles, str(model), view)
        triangles = np.frombuffer(result.stdout).reshape(-1, 3, 2)
        usable = result.returncode == 0 and 0 < len(triangles) <= MOST_TRIANGLES
        return triangles if usable and np.isfinite(triangles).all() else None


def run(*command):
    try:
        return subprocess.run(command, capture_output=True, timeout=PATIENCE, check=False)
    except subprocess.TimeoutExpired:
        return subprocess.CompletedProcess(command, 1, b"", b"")


def report(name, complaints, reason, verbose):
    """Prints what is wrong and returns the outcome."""
    if complaints is None:
        if verbose:
            print(f"{name}: not measured", flush=True)
        return NOT_MEASURED
    if complaints and reason:
        if verbose:
            print(f"{name}: {complaints[0]}; known: {reason}", flush=True)
        return KNOWN
    if reason:
        complaints = ["is in shortfalls.json, and all is well"]
    for complaint in complaints:
        print(f"{name}: {complaint}", flush=True)
    return FAILED if complaints else PASSED


if __name__ == "__main__":
    sys.exit(main())
