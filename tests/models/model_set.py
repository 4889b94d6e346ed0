"""The models, what is expected of them, and the programs that draw and measure them."""

import json
import subprocess
import sys
from pathlib import Path

from drawing_facts import Bounds

MODELS = Path("/usr/share/assimp/models")
# Seconds after which a program counts as hung.
PATIENCE = 120

VIEWS = {"top": (0, 90), "bottom": (0, -90), "front": (0, 0), "back": (180, 0), "left": (270, 0),
         "right": (90, 0), "iso": (45, 35.264389682754654)}


class Expectations:
    """What is known of single models; everything else must be drawn whole.

    refused       by path, the exit code and words of the message
    falls_short   by path and view, the sides of the model that its drawing does not reach; "shared"
                  tells that it ends where edges begin that fewer than three faces share
    coarse        by path, a tolerance in drawing units
    """

    def __init__(self):
        with open(Path(__file__).with_name("expectations.json"), encoding="utf-8") as stream:
            content = json.load(stream)
        self._no_models = content["no_models"]
        self.refused = {model: (group["exit"], group["message"])
                        for group in content["refused"] for model in group["models"]}
        self.falls_short = {(known["model"], known["view"]): known
                            for known in content["falls_short"]}
        self.coarse = {known["model"]: known["tolerance"] for known in content["coarse"]}

    def named(self):
        """All models that something is known of."""
        return {*self.refused, *self.coarse, *(model for model, _ in self.falls_short)}

    def models(self):
        """The paths of all models, below MODELS."""
        files = [path for path in MODELS.rglob("*") if path.is_file() and self._is_model(path)]
        if not files:
            sys.exit(f"There are no models in {MODELS}; Debian's package assimp-testmodels, which "
                     "scripts/install-packages test installs, brings them.")
        return sorted(str(path.relative_to(MODELS)) for path in files)

    def _is_model(self, path):
        return (path.suffix.lower() not in self._no_models["extensions"] and
                path.name not in self._no_models["names"])


class Programs:
    def __init__(self, options):
        self._dxf2d = options.dxf2d
        self._model_bounds = options.model_bounds
        self._dxflib_counts = options.dxflib_counts

    @staticmethod
    def add_options(parser):
        parser.add_argument("--dxf2d", required=True, help="the program to test")
        parser.add_argument("--model-bounds", required=True,
                            help="the program that measures models")
        parser.add_argument("--dxflib-counts", required=True,
                            help="the program that counts with dxflib")

    def export(self, model, drawing, *options):
        return run(self._dxf2d, "export", "--force", str(MODELS / model), "-o",
                   str(drawing), *options)

    def measured(self, model, up="auto", view="top", scale=1):
        """The bounds of a model in plan, those of its unshared edges, and a tolerance for both."""
        angles = VIEWS.get(view) or view.split(",")
        result = run(self._model_bounds, str(MODELS / model), up, *map(str, angles), str(scale))
        if result.returncode != 0:
            raise RuntimeError(f"{model} cannot be measured: {result.stderr}")
        numbers = {line.split()[0]: [float(number) for number in line.split()[1:]]
                   for line in result.stdout.splitlines()}
        # Six decimals in the drawing, and what single precision leaves of a transform.
        tolerance = 2e-6 + 1e-6 * numbers["magnitude"][0]
        return Bounds(*numbers["all"]), Bounds(*numbers["unshared"]), tolerance

    def counted_by_dxflib(self, drawing):
        words = run(self._dxflib_counts, str(drawing)).stdout.split()
        return {name: int(count) for name, count in zip(words[::2], words[1::2])}


def run(*command):
    return subprocess.run(command, capture_output=True, text=True, errors="replace",
                          timeout=PATIENCE, check=False)
