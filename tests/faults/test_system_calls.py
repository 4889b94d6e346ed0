#!/usr/bin/env python3
"""Lets each system call on the output's way fail, one after the other, and looks at what is left.

A run without faults is traced first; what in it concerns the output's folder is then made to fail
by strace, in the order in which the program calls it.
"""

import collections
import re
import shutil
import subprocess
import unittest

from promise import DONE, LIMIT, NOT_MADE, WRITE_FAILED, FaultTests, run_tests

# What each call is made to fail with: the n-th one alone, or it and all that follow. An interrupted
# call is to be made anew, so that "all that follow" would never end.
ALONE = ("ENOSPC", "EIO", "EDQUOT")
FROM_THERE_ON = ("EIO",)
TWICE = ("EINTR",)

# The system never interrupts these, or has done their work when it says so.
NOT_INTERRUPTED = {"rename", "renameat", "renameat2", "linkat", "unlink", "unlinkat", "mmap",
                   "newfstatat", "statx", "access", "faccessat", "faccessat2", "fchmod", "lseek",
                   "munmap", "fcntl", "readlink", "getxattr", "fgetxattr", "fsetxattr",
                   "flistxattr", "fremovexattr"}

# What hands the output's descriptor to the worker process; without one, nothing is drawn.
STARTING = {"fcntl", "dup2", "dup3"}

CALL = re.compile(r"^(?P<process>\d+) +(?P<call>\w+)\(")


class SystemCalls(FaultTests):
    def setUp(self):
        super().setUp()
        # The leak sanitizer does not work under strace; a symbolizer would meet the faults as well.
        self.environment = {"ASAN_OPTIONS": "detect_leaks=0:symbolize=0"}
        reason = self.reason_against_tracing()
        if reason:
            self.skipTest(reason)

    def reason_against_tracing(self):
        if shutil.which("strace") is None:
            return "strace is not installed"
        trial = subprocess.run(["strace", "-o", "/dev/null", "true"], capture_output=True,
                               check=False)
        return f"strace cannot trace here: {trial.stderr}" if trial.returncode else None

    def test_an_export_of_a_scene_keeps_the_promise(self):
        self.sweep(self.scene_export())

    def test_a_new_drawing_keeps_the_promise(self):
        output = self.scene_export()
        output.replaces = False
        self.sweep(output, {"openat", "fsync", "linkat", "renameat", "renameat2"})

    def test_an_export_of_a_model_keeps_the_promise(self):
        self.sweep(self.model_export())

    def test_a_picture_keeps_the_promise(self):
        self.sweep(self.picture())

    def test_a_failed_sync_of_the_file_or_of_its_directory_is_reported(self):
        output = self.model_export()
        for number, state in ((1, "old"), (2, "new")):
            output.put_old()
            run = output.run(["strace", "-f", "-o", self.folder / "trace", "-e", "trace=fsync", "-e",
                              f"inject=fsync:error=EIO:when={number}"], self.environment)
            self.assertEqual(WRITE_FAILED, run.code, run.error)
            self.assertEqual(state, output.state())
            self.assertEqual([], output.leftovers())

    def sweep(self, output, chosen=None):
        """Lets the calls on the output's way fail, or those of them that are `chosen`."""
        places = self.calls_on_the_way(output)
        self.assertTrue({"linkat", "renameat", "renameat2"} & {call for call, _ in places})
        for call, nth in places:
            if chosen is not None and call not in chosen:
                continue
            for fault, codes in faults(call, nth):
                with self.subTest(call=call, fault=fault):
                    self.inject(output, call, fault, codes)

    def calls_on_the_way(self, output):
        """The calls that concern the output's folder, each with its number in its process."""
        log = self.folder / "trace"
        output.put_old()
        run = output.run(["strace", "-f", "-y", "-s", "0", "-o", log], self.environment)
        self.assert_kept(output, run, {DONE}, "traced")
        counts = collections.Counter()
        places = {}
        for line in log.read_text(errors="replace").splitlines():
            match = CALL.match(line)
            if match is None or match["call"] == "execve":
                continue
            counts[match["process"], match["call"]] += 1
            if str(output.folder) in line:
                places[match["call"], counts[match["process"], match["call"]]] = True
        return list(places)

    def inject(self, output, call, fault, codes):
        log = self.folder / "trace"
        output.put_old()
        run = output.run(["strace", "-f", "--seccomp-bpf", "-y", "-s", "0", "-o", log,
                          "-e", f"trace={call}", "-e", f"inject={call}:{fault}"], self.environment)
        injected = [line for line in log.read_text(errors="replace").splitlines()
                    if "(INJECTED)" in line]
        self.assertTrue(injected, "the call was not met")
        if all(str(output.folder) in line for line in injected):
            if run.code == LIMIT and call in STARTING:
                self.assertEqual("old", output.state())
                self.assertRegex(run.error, rb"\Adxf2d: [^\n]* no worker process [^\n]*\n\Z")
            else:
                self.assert_kept(output, run, codes, f"{call} {fault}")
        else:
            # Numbers are counted in each process, so that another call was met as well: of the
            # loader, say, whose words and exit codes are its own.
            self.assertEqual([], output.complaints_about_files())


def faults(call, nth):
    """What the `nth` call is made to do, and the exit codes that fit."""
    failing = {DONE, NOT_MADE, WRITE_FAILED}
    for error in ALONE:
        yield f"error={error}:when={nth}", failing
    for error in FROM_THERE_ON:
        yield f"error={error}:when={nth}+", failing
    if call == "renameat2":
        # Older systems, and some file systems, do without.
        yield f"error=ENOSYS:when={nth}", {DONE}
        yield f"error=EINVAL:when={nth}", {DONE}
    if call not in NOT_INTERRUPTED:
        for error in TWICE:
            yield f"error={error}:when={nth}..{nth + 1}", {DONE}


if __name__ == "__main__":
    run_tests(__doc__.splitlines()[0])
