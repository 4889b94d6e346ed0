#!/usr/bin/env python3
"""Many models in one run: Ctrl-C, a run that is killed, and progress on a terminal."""

import json
import os
import pty
import select
import signal
import subprocess

from promise import DONE, PATIENCE, FaultTests, run_tests

MODEL = "v 0 0 0\nv 1 0 0\nv 1 1 0\nf 1 2 3\n"


class BatchTests(FaultTests):
    def setUp(self):
        super().setUp()
        self.models = []
        for number in range(5):
            model = self.folder / f"m{number}.obj"
            model.write_text(MODEL)
            self.models.append(model)
        self.out = self.folder / "out"
        self.report = self.folder / "night.jsonl"

    def command(self, *options, models=None):
        return [self.options.dxf2d, "export", *(models or self.models), "-o", f"{self.out}/",
                "--jobs", "1", *options]

    def environment(self, command, **more):
        return {**os.environ, "MID_RUN": command, "REAL_PLUGIN": self.options.plugin, **more}

    def run_during(self, command):
        """A run in which a shell command is executed before each model is drawn."""
        return subprocess.run(self.command("--plugin", self.options.runs_a_command, "--report",
                                           self.report),
                              capture_output=True, check=False, text=True,
                              env=self.environment(command))

    def in_the_third(self, command):
        """A shell command that runs another one before the third model."""
        log = self.folder / "log"
        return f"echo >> {log}; test $(wc -l < {log}) -lt 3 || {command}"

    def drawings(self):
        return sorted(path.name for path in self.out.iterdir())


# The worker is the shell's parent, and the program that of the worker.
PROGRAM = "$(awk '/PPid/ { print $2 }' /proc/$PPID/status)"


class Interrupted(BatchTests):
    def test_ctrl_c_says_what_was_finished_and_leaves_nothing_half_done(self):
        run = self.run_during(self.in_the_third(f"kill -INT {PROGRAM}"))
        self.assertEqual(-signal.SIGINT, run.returncode, run.stderr)
        self.assertIn("interrupted: of 5 models, 2 drawn, 0 skipped, 0 failed, 3 not begun",
                      run.stderr)
        self.assertEqual(["m0.dxf", "m1.dxf"], self.drawings())
        self.assertEqual(2, len(self.report.read_text().splitlines()))

    def test_a_killed_run_leaves_a_valid_report_and_goes_on(self):
        run = self.run_during(self.in_the_third(f"kill -KILL {PROGRAM}"))
        self.assertEqual(-signal.SIGKILL, run.returncode, run.stderr)
        records = [json.loads(line) for line in self.report.read_text().splitlines()]
        self.assertEqual(["drawn", "drawn"], [record["outcome"] for record in records])
        again = subprocess.run(self.command("--skip-existing", "--report", self.report),
                               capture_output=True, check=False, text=True)
        self.assertEqual(DONE, again.returncode, again.stderr)
        self.assertEqual([f"m{number}.dxf" for number in range(5)], self.drawings())
        totals = subprocess.run([self.options.dxf2d, "report", self.report], capture_output=True,
                                check=True, text=True).stdout
        self.assertTrue(totals.startswith("5 inputs: 5 drawn, 0 skipped, 0 failed\n"), totals)


class OnATerminal(BatchTests):
    """Standard error is a terminal."""

    def shown(self, *options, until=None, models=None, **environment):
        """What a run prints there. The first model waits until the terminal shows `until`."""
        seen = self.folder / "seen"
        wait = f"until test -e {seen}; do sleep 0.05; done" if until else ":"
        leader, terminal = pty.openpty()
        environment = self.environment(wait, **{"TERM": "xterm", "CI": "", **environment})
        with subprocess.Popen(self.command("--plugin", self.options.runs_a_command, *options,
                                           models=models),
                              stdout=subprocess.DEVNULL, stderr=terminal, env=environment) as run:
            os.close(terminal)
            text = b""
            while select.select([leader], [], [], PATIENCE)[0]:
                try:
                    text += os.read(leader, 4096)
                except OSError:
                    # The other end is closed.
                    break
                if until and until in text:
                    seen.touch()
            else:
                run.kill()
        os.close(leader)
        self.assertEqual(DONE, run.returncode, text)
        return text

    def test_several_models_have_a_bar_that_goes_at_the_end(self):
        text = self.shown(until=b"0/5")
        self.assertIn(b"[....................] 0/5", text)
        self.assertTrue(text.endswith(b"\r\x1b[K"), text)

    def test_a_single_model_has_its_stage_after_a_second(self):
        text = self.shown(until=b"1 s", models=self.models[:1])
        self.assertTrue(text.endswith(b"\r\x1b[K"), text)

    def test_nothing_is_shown_where_nobody_looks(self):
        self.assertEqual(b"", self.shown("--quiet"))
        self.assertEqual(b"", self.shown("-f", CI="true"))
        self.assertEqual(b"", self.shown("-f", TERM="dumb"))


if __name__ == "__main__":
    run_tests(__doc__, plugin="the plug-in", runs_a_command="a plug-in that runs $MID_RUN")
