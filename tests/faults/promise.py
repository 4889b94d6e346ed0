"""The promise of every command that writes: under the output's name stands the old file or the
complete new one, nothing is left beside it, the exit code says which, and what went wrong is one
sentence that names the output."""

import argparse
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from dataclasses import dataclass
from pathlib import Path

# Exit codes of dxf2d.
DONE, INTERNAL, INPUT, NOT_MADE, WRITE_FAILED, LIMIT, PLUGIN = 0, 1, 3, 5, 6, 7, 8

# Of a test that could not run at all; CMakeLists.txt tells ctest.
SKIPPED = 77

# Seconds after which a run counts as hung.
PATIENCE = 120

OLD = b"what stood here before\n"


@dataclass
class Run:
    """How a run of the program ended; a negative exit code is a signal."""
    code: int
    out: bytes
    error: bytes


class Output:
    """An output of a command of dxf2d, in a folder where nothing else stands.

    `arguments` come before "-o OUTPUT". The bytes that a run without faults writes are made first.
    """

    # Whether there is an old file, which the command is told to replace.
    replaces = True

    def __init__(self, dxf2d, folder, arguments, name):
        self.dxf2d = dxf2d
        self.arguments = [str(argument) for argument in arguments]
        self.folder = Path(folder) / "out"
        self.folder.mkdir()
        self.path = self.folder / name
        self.new = self.made()

    def made(self):
        run = self.run()
        if run.code != DONE:
            raise RuntimeError(f"{self.command()} ended with {run.code}: {run.error}")
        return self.path.read_bytes()

    def command(self):
        force = ["--force"] if self.replaces else []
        return [self.dxf2d, *self.arguments, *force, "-o", str(self.path)]

    def put_old(self):
        """Makes things as they are before a run."""
        if self.replaces:
            self.path.write_bytes(OLD)
        else:
            self.path.unlink(missing_ok=True)

    def run(self, before=(), environment=None, **how):
        """Runs the command behind the words `before`; `how` goes to subprocess.run."""
        result = subprocess.run([*before, *self.command()], stdin=subprocess.DEVNULL,
                                capture_output=True, timeout=PATIENCE, check=False,
                                env={**os.environ, **(environment or {})}, **how)
        return Run(result.returncode, result.stdout, result.stderr)

    def state(self):
        """"old", also where there was nothing and is nothing; "new"; or what else there is."""
        try:
            found = self.path.read_bytes()
        except FileNotFoundError:
            return "nothing" if self.replaces else "old"
        if self.replaces and found == OLD:
            return "old"
        return "new" if found == self.new else f"{len(found)} bytes, neither old nor new"

    def leftovers(self):
        return sorted(entry.name for entry in self.folder.iterdir() if entry != self.path)

    def complaints(self, run, codes):
        """What of the promise `run`, which may have ended with one of `codes`, has broken."""
        found = self.complaints_about_files()
        if run.code not in codes:
            found.append(f"exit code {run.code}, not of {sorted(codes)}: {run.error}")
        elif run.code == DONE:
            if self.state() != "new":
                found.append(f"done, and under the name stands {self.state()}")
            if run.error:
                found.append(f"done, and on standard error: {run.error}")
        elif run.code > 0:
            found += complaints_about_sentence(run.error, os.fsencode(self.path))
        return found

    def complaints_about_files(self):
        found = []
        if self.state() not in ("old", "new"):
            found.append(f"under the name stands {self.state()}")
        if self.leftovers():
            found.append(f"left over: {self.leftovers()}")
        return found


def complaints_about_sentence(error, name):
    lines = error.splitlines()
    if len(lines) != 1 or not error.endswith(b"\n") or not error.startswith(b"dxf2d: "):
        return [f"not one sentence: {error}"]
    return [] if name in error else [f"the sentence does not name the output: {error}"]


class FaultTests(unittest.TestCase):
    """Tests of the program in a folder of their own. `options` are those of run_tests."""
    options = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="dxf2d-faults-")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def scene_export(self, name="plan.dxf"):
        scene = Path(__file__).with_name("rich_scene.json")
        return Output(self.options.dxf2d, self.folder, ["export", scene], name)

    def model_export(self, name="plan.dxf", side=1):
        model = self.folder / "model.obj"
        model.write_text(grid_model(side))
        return Output(self.options.dxf2d, self.folder, ["export", model], name)

    def picture(self, name="plan.png"):
        drawing = self.folder / "drawing.dxf"
        shutil.copy(Path(__file__).parents[1] / "golden" / "nested_objects.dxf", drawing)
        return Output(self.options.dxf2d, self.folder, ["preview", drawing], name)

    def assert_kept(self, output, run, codes, about=""):
        found = output.complaints(run, codes)
        if found:
            self.fail(f"{about}: " + "; ".join(found))


def grid_model(side):
    """A surface of side x side squares in the OBJ format, every third one turned over."""
    lines = [f"v {x} {y} {(x * 7 + y * 3) % 5}" for y in range(side + 1) for x in range(side + 1)]
    for y in range(side):
        for x in range(side):
            low = y * (side + 1) + x + 1
            corners = [low, low + 1, low + side + 2, low + side + 1]
            turned = corners[::-1] if (x + y) % 3 == 2 else corners
            lines.append("f " + " ".join(map(str, turned)))
    return "\n".join(lines) + "\n"


def run_tests(about, **more_options):
    """Runs the calling script's tests; each of `more_options` is an option, true when required."""
    parser = argparse.ArgumentParser(description=about)
    parser.add_argument("--dxf2d", required=True, help="the program to test")
    parser.add_argument("--sanitized", action="store_true",
                        help="the program is built with sanitizers")
    for name in more_options:
        parser.add_argument(f"--{name.replace('_', '-')}", required=True, help=more_options[name])
    FaultTests.options, rest = parser.parse_known_args()
    result = unittest.main(argv=[sys.argv[0], *rest], exit=False).result
    if result.testsRun == len(result.skipped):
        sys.exit(SKIPPED)
    sys.exit(not result.wasSuccessful())
