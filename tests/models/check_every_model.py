#!/usr/bin/python3
"""Draws every model of Debian's assimp-testmodels and checks the drawings.

A drawing must hold each block once, insert none that is not there, hold finite numbers only, reach
as far as the model does and not farther; ezdxf, dxflib and the program's own summary must agree on
what is in it. What cannot be drawn must be refused as expectations.json has it. Prints each model
with what is wrong, then "N passed, M failed"; exit status 1 when any failed.
"""

import argparse
import sys
import tempfile
from concurrent.futures import ProcessPoolExecutor
from pathlib import Path

from drawing_check import complaints_about
from model_set import MODELS, Expectations, Programs


def main():
    options = parse_options()
    expectations = Expectations()
    every_model = expectations.models()
    strangers = sorted(expectations.named() - set(every_model))
    models = [model for model in options.models or every_model if model != options.leave_out]
    with tempfile.TemporaryDirectory(prefix="dxf2d-models-") as folder:
        drawings = Path(options.keep or folder)
        drawings.mkdir(parents=True, exist_ok=True)
        check = ModelCheck(Programs(options), expectations, drawings)
        with ProcessPoolExecutor(options.jobs) as pool:
            failures = sum(report(model, complaints)
                           for model, complaints in zip(models, pool.map(check, models)))
    for model in strangers:
        failures += report(model, ["is in expectations.json, and not in the package"])
    print(f"{len(models) + len(strangers) - failures} passed, {failures} failed")
    return 1 if failures else 0


def parse_options():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    Programs.add_options(parser)
    parser.add_argument("--jobs", type=int, default=2, help="models at a time (%(default)s)")
    parser.add_argument("--keep", metavar="DIR", help="leave the drawings here")
    parser.add_argument("--leave-out", metavar="MODEL", help="a model that is not drawn")
    parser.add_argument("models", nargs="*", metavar="MODEL",
                        help=f"a path below {MODELS}; all if none is given")
    return parser.parse_args()


class ModelCheck:
    def __init__(self, programs, expectations, folder):
        self._programs = programs
        self._expectations = expectations
        self._folder = folder

    def __call__(self, model):
        """The sentences about what is wrong with a model's drawing or refusal."""
        drawing = self._folder / (model.replace("/", "--") + ".dxf")
        if model in self._expectations.refused:
            return self._wrong_refusal(model, drawing)
        return complaints_about(model, self._programs, self._expectations, drawing)

    def _wrong_refusal(self, model, drawing):
        code, words = self._expectations.refused[model]
        result = self._programs.export(model, drawing)
        complaints = []
        if result.returncode != code or words not in result.stderr:
            complaints.append(f"ends with {result.returncode} and {result.stderr.strip()!r}, "
                              f"expected are {code} and {words!r}")
        if drawing.exists():
            complaints.append("is refused and leaves a drawing")
        return complaints


def report(model, complaints):
    for complaint in complaints:
        print(f"{model}: {complaint}", flush=True)
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
