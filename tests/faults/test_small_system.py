#!/usr/bin/env python3
"""Runs in a system that holds little more than the program: no /proc, no /dev, no character sets, no
translations, no directory for temporary files."""

import os
import re
import shutil
import subprocess
from pathlib import Path

from promise import DONE, WRITE_FAILED, FaultTests, run_tests

LIBRARY = re.compile(r"(/\S+) \(0x")


class SmallSystem(FaultTests):
    def setUp(self):
        super().setUp()
        if os.geteuid() != 0:
            self.skipTest("only root may change the root directory")
        if self.options.sanitized:
            self.skipTest("the sanitizers need /proc")
        self.root = self.folder / "root"
        # As it is installed, with the plug-in where the program looks for it.
        self.copy(self.options.dxf2d, "app/bin/dxf2d")
        self.copy(self.options.worker, "app/bin/dxf2d-worker")
        self.copy(self.options.plugin, "app/plugin.so")
        (self.root / "place").mkdir()
        (self.root / "place" / "model.obj").write_text(
            "v 0 0 0\nv 1 0 0\nv 1 1 0\nf 1 2 3\n")
        shutil.copy(Path(__file__).with_name("rich_scene.json"), self.root / "place/scene.json")

    def copy(self, file, name):
        """Copies a program or module, and the libraries that it needs to where they are."""
        target = self.root / name
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(file, target)
        needed = subprocess.run(["ldd", file], capture_output=True, text=True, check=True).stdout
        for library in LIBRARY.findall(needed):
            place = self.root / library.lstrip("/")
            if not place.exists():
                place.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(os.path.realpath(library), place)

    def run_inside(self, *arguments):
        def enter():
            os.chroot(self.root)
            os.chdir("/")

        return subprocess.run(["/app/bin/dxf2d", *arguments], stdin=subprocess.DEVNULL,
                              capture_output=True, check=False, timeout=60, preexec_fn=enter,
                              env={"LC_ALL": "de_DE.UTF-8"})

    def assert_drawn_or_a_sentence(self, run, drawing):
        self.assertNotIn(b"please report", run.stderr)
        if run.returncode == DONE:
            self.assertEqual(b"", run.stderr)
            self.assertTrue((self.root / drawing).read_bytes().endswith(b"EOF\n"))
        else:
            self.assertEqual(WRITE_FAILED, run.returncode, run.stderr)
            self.assertRegex(run.stderr, rb"\Adxf2d: [^\n]*character sets[^\n]*\n\Z")

    def test_an_export_draws_or_says_why_not(self):
        for model in ("model.obj", "scene.json"):
            for code_page in ([], ["--codepage", "932"]):
                options = code_page if model.endswith(".json") else []
                run = self.run_inside("export", f"/place/{model}", "--force", "-o",
                                      "/place/plan.dxf", "--plugin", "/app/plugin.so", *options)
                self.assert_drawn_or_a_sentence(run, "place/plan.dxf")

    def test_a_directory_that_others_may_write_to_is_refused(self):
        place = self.root / "place"
        place.chmod(0o777)
        run = self.run_inside("export", "/place/model.obj", "-o", "/place/plan.dxf", "--plugin",
                              "/app/plugin.so")
        self.assertEqual(5, run.returncode, run.stderr)
        self.assertRegex(run.stderr, rb"\Adxf2d: /place/plan.dxf: [^\n]*other users[^\n]*\n\Z")
        self.assertEqual(["model.obj", "scene.json"], sorted(os.listdir(place)))

    def test_without_its_plug_in_it_says_so(self):
        run = self.run_inside("export", "/place/model.obj", "-o", "/place/plan.dxf")
        self.assertEqual(8, run.returncode, run.stderr)
        self.assertRegex(run.stderr, rb"\Adxf2d: [^\n]*\n\Z")

    def test_without_its_worker_it_says_so(self):
        Path(self.root / "app/bin/dxf2d-worker").unlink()
        run = self.run_inside("export", "/place/model.obj", "-o", "/place/plan.dxf", "--plugin",
                              "/app/plugin.so")
        self.assertEqual(1, run.returncode, run.stderr)
        self.assertRegex(run.stderr, rb"\Adxf2d: [^\n]*dxf2d-worker[^\n]*; install [^\n]*\n\Z")
        self.assertNotIn(b"please report", run.stderr)
        self.assertEqual(["model.obj", "scene.json"], sorted(os.listdir(self.root / "place")))


if __name__ == "__main__":
    run_tests(__doc__.splitlines()[0], plugin="the plug-in of the program",
              worker="the program dxf2d-worker")
