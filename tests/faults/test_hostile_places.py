#!/usr/bin/env python3
"""Exports and pictures where the system gives too little: room, rights, descriptors, memory; and
under names that are hard to write down."""

import ctypes
import fcntl
import itertools
import os
import resource
import shutil
import subprocess
import unittest

from promise import DONE, INPUT, LIMIT, NOT_MADE, PLUGIN, WRITE_FAILED, FaultTests, run_tests

# Anyone but root.
STRANGER = 65534

# From <sched.h>: mounts of this process are its own.
CLONE_NEWNS = 0x00020000

LOADER_FAILED = 127

NAMES = [
    b"plan\nin two lines.dxf",
    b"\t\r\x07\x1b[31mred.dxf",
    b"it's \"quoted\" `here`.dxf",
    b" begins and ends with spaces ",
    b"-o",
    b"--force",
    b"$HOME *?[a-z] %s%n {0}.dxf",
    b"back\\slash.dxf",
    b"~",
    b".hidden",
    b"...",
    b"\xff\xfe not UTF-8 \xc3.dxf",
    "Grundriß — план — 平面図 \N{HOUSE BUILDING}.dxf".encode(),
    "e\N{COMBINING ACUTE ACCENT} \N{RIGHT-TO-LEFT OVERRIDE}fxd.nalp.dxf".encode(),
    b"n" * 255,
]


class Commands(FaultTests):
    def outputs(self):
        """An output of each kind, with an old file in its place."""
        top = self.folder
        outputs = []
        for make in (self.scene_export, self.model_export, self.picture):
            self.folder = top / make.__name__
            self.folder.mkdir()
            outputs.append(make())
            outputs[-1].put_old()
        self.folder = top
        return outputs

    def assert_refused(self, output, codes, **how):
        self.assert_kept(output, output.run(**how), codes, output.path)
        self.assertEqual("old", output.state())


class Room(Commands):
    def test_a_file_may_grow_to_its_size_and_no_less(self):
        for output in self.outputs():
            size = len(output.new)
            for limit in (0, 1, 100, size // 3, size // 2, size - 1):
                self.assert_refused(output, {WRITE_FAILED},
                                    preexec_fn=limiting(resource.RLIMIT_FSIZE, limit))
            run = output.run(preexec_fn=limiting(resource.RLIMIT_FSIZE, size))
            self.assert_kept(output, run, {DONE}, output.path)

    def test_short_and_interrupted_writes_are_continued(self):
        for output in self.outputs():
            run = output.run(environment={"LD_PRELOAD": self.options.short_writes,
                                          "ASAN_OPTIONS": "verify_asan_link_order=0"})
            self.assert_kept(output, run, {DONE}, output.path)

    def test_a_drawing_on_a_full_standard_output_is_a_failed_write(self):
        output = self.scene_export()
        command = [self.options.dxf2d, *output.arguments, "-o", "-"]
        with open("/dev/full", "wb") as full:
            run = subprocess.run(command, stdout=full, stderr=subprocess.PIPE, check=False)
        self.assertEqual(WRITE_FAILED, run.returncode)
        self.assertRegex(run.stderr, rb"\Adxf2d: .*/dev/stdout.*\n\Z")

    def test_what_cannot_be_printed_is_a_failed_write(self):
        export = self.model_export()
        for arguments in (["--help"], ["--version"], ["export", "--help"],
                          export.command()[1:]):
            with open("/dev/full", "wb") as full:
                run = subprocess.run([self.options.dxf2d, *arguments], stdout=full,
                                     stderr=subprocess.PIPE, check=False)
            self.assertEqual(WRITE_FAILED, run.returncode, arguments)
            self.assertRegex(run.stderr, rb"\Adxf2d: standard output .*\n\Z")

    def test_a_reader_that_closes_the_pipe_has_seen_what_it_wants(self):
        export = self.model_export()
        for arguments in (["--help"], ["--version"], ["help", "export"], ["formats"],
                          export.command()[1:]):
            reader, writer = os.pipe()
            os.close(reader)
            run = subprocess.run([self.options.dxf2d, *arguments], stdout=writer,
                                 stderr=subprocess.PIPE, check=False)
            os.close(writer)
            self.assertEqual((0, b""), (run.returncode, run.stderr), arguments)

    def test_a_relative_plug_in_needs_a_directory(self):
        export = self.model_export()
        gone = self.folder / "gone"
        gone.mkdir()
        run = subprocess.run(["sh", "-c", f"cd {gone} && rmdir {gone} && exec \"$@\"", "sh",
                              *export.command(), "--plugin", "plugin.so"], capture_output=True,
                             check=False)
        self.assertEqual(8, run.returncode, run.stderr)
        self.assertRegex(run.stderr, rb"\Adxf2d: plugin.so: [^\n]*current directory[^\n]*\n\Z")

    def test_what_libraries_say_is_not_on_standard_error(self):
        if self.options.sanitized:
            self.skipTest("workers keep standard error, for the sanitizers' reports")
        output = self.picture()
        output.put_old()
        # The library of fonts complains about both.
        run = output.run(environment={"FONTCONFIG_FILE": "/no/such/fonts.conf",
                                      "XDG_CACHE_HOME": "/no/such/directory"})
        self.assertEqual((DONE, b""), (run.code, run.error))

    def test_an_inspected_fifo_does_not_block(self):
        pipe = self.folder / "pipe.so"
        os.mkfifo(pipe)
        run = subprocess.run([self.options.dxf2d, "inspect", pipe], capture_output=True,
                             timeout=60, check=False)
        self.assertEqual(8, run.returncode, run.stderr)
        self.assertRegex(run.stderr, rb"\Adxf2d: [^\n]*\n\Z")

    def test_a_drawing_into_a_closed_pipe_is_a_failed_write(self):
        output = self.scene_export()
        reader, writer = os.pipe()
        os.close(reader)
        command = [self.options.dxf2d, *output.arguments, "-o", "-"]
        run = subprocess.run(command, stdout=writer, stderr=subprocess.PIPE, check=False)
        os.close(writer)
        self.assertEqual(WRITE_FAILED, run.returncode)
        self.assertRegex(run.stderr, rb"\Adxf2d: .*/dev/stdout.*\n\Z")


class Mounts(Commands):
    """Every test process has mounts of its own, which end with it."""

    @classmethod
    def setUpClass(cls):
        if os.geteuid() != 0:
            raise unittest.SkipTest("only root may mount")
        libc = ctypes.CDLL(None, use_errno=True)
        if libc.unshare(CLONE_NEWNS) != 0:
            raise unittest.SkipTest(f"no mounts here: {os.strerror(ctypes.get_errno())}")
        result = subprocess.run(["mount", "--make-rprivate", "/"], capture_output=True, check=False)
        if result.returncode != 0:
            raise unittest.SkipTest(f"no mounts here: {result.stderr}")

    def mount(self, output, options):
        subprocess.run(["mount", "-t", "tmpfs", "-o", options, "tmpfs", output.folder], check=True)
        self.addCleanup(subprocess.run, ["umount", output.folder], check=True)
        output.put_old()

    def test_a_drawing_larger_than_the_disk_leaves_the_old_one(self):
        output = self.model_export(side=150)
        self.assertGreater(len(output.new), 64 << 10)
        self.mount(output, "size=64k")
        self.assert_refused(output, {WRITE_FAILED})

    def test_a_picture_larger_than_the_disk_leaves_the_old_one(self):
        output = self.picture()
        self.mount(output, "size=8k")
        self.assertGreater(len(output.new), 8 << 10)
        self.assert_refused(output, {WRITE_FAILED})

    def test_a_disk_that_has_room_for_the_old_drawing_or_the_new_one_keeps_the_old(self):
        output = self.model_export(side=20)
        size = -(-len(output.new) // 4096) * 4096
        self.mount(output, f"size={size}")
        self.assert_refused(output, {WRITE_FAILED})

    def test_a_disk_that_takes_no_more_files_is_reported(self):
        for output in self.outputs():
            # The folder and the old file.
            self.mount(output, "nr_inodes=2")
            self.assert_refused(output, {NOT_MADE})

    def test_a_read_only_disk_is_reported(self):
        for output in self.outputs():
            self.mount(output, "size=1m")
            subprocess.run(["mount", "-o", "remount,ro", output.folder], check=True)
            self.assert_refused(output, {NOT_MADE})


class Rights(Commands):
    def setUp(self):
        super().setUp()
        self.folder.chmod(0o755)
        self.stranger = {}
        if os.geteuid() == 0:
            self.stranger = {"user": STRANGER, "group": STRANGER, "extra_groups": []}
            trial = [self.options.dxf2d, "--version"]
            try:
                subprocess.run(trial, capture_output=True, check=True, **self.stranger)
            except (PermissionError, subprocess.CalledProcessError):
                self.skipTest("no other user may run the program where it is")

    def outputs_with(self, folder, file=0o644):
        """The outputs, in a folder with these permissions, to replace a file with those."""
        for output in self.outputs():
            output.folder.parent.chmod(0o755)
            output.folder.chmod(folder)
            self.addCleanup(output.folder.chmod, 0o755)
            output.path.chmod(file)
            yield output

    def test_a_directory_without_write_permission_is_reported(self):
        for output in self.outputs_with(folder=0o555):
            self.assert_refused(output, {NOT_MADE}, **self.stranger)

    def test_a_file_that_may_not_be_written_is_not_replaced(self):
        for output in self.outputs_with(folder=0o777, file=0o444):
            self.assert_refused(output, {NOT_MADE}, **self.stranger)

    def test_another_s_file_in_a_common_directory_is_not_replaced(self):
        if not self.stranger:
            self.skipTest("only root can make files of two users")
        # As /tmp is: everybody may make files, and only their owner may replace them.
        for output in self.outputs_with(folder=0o1777, file=0o666):
            self.assert_refused(output, {NOT_MADE, WRITE_FAILED}, **self.stranger)

    def test_a_limit_on_processes_is_reported(self):
        if not self.stranger:
            self.skipTest("only root can be another user")
        for output in self.outputs_with(folder=0o777, file=0o666):
            run = output.run(preexec_fn=limiting(resource.RLIMIT_NPROC, 0), **self.stranger)
            self.assertIn(run.code, {DONE, LIMIT}, run.error)
            self.assertEqual([], output.complaints_about_files())


class Names(Commands):
    def test_every_name_that_the_system_takes_can_be_an_output(self):
        for name in NAMES:
            with self.subTest(name=name):
                self.clear()
                output = self.model_export(os.fsdecode(name))
                output.put_old()
                run = output.run()
                self.assert_kept(output, run, {DONE}, output.path)
                self.assertEqual(1, run.out.count(b"\n"), run.out)

    def test_every_name_that_is_refused_is_one_in_one_sentence(self):
        for name in NAMES:
            with self.subTest(name=name):
                path = self.folder / "missing" / os.fsdecode(name)
                for command, given in (("export", b"rich_scene.json"), ("preview", b"none.dxf")):
                    run = subprocess.run([self.options.dxf2d, command, given, "-o", path],
                                         cwd=os.path.dirname(__file__), capture_output=True,
                                         check=False)
                    self.assertIn(run.returncode, {INPUT, NOT_MADE, 2})
                    if run.returncode != 2:
                        self.assertRegex(run.stderr, rb"\Adxf2d: [^\x00-\x1f\x7f]*\n\Z")

    def test_a_name_that_begins_with_a_dash_needs_no_directory(self):
        output = self.scene_export("-plan.dxf")
        output.put_old()
        command = [part for part in output.command() if part not in ("-o", str(output.path))]
        run = subprocess.run([*command, "--output=-plan.dxf"], cwd=output.folder,
                             capture_output=True, check=False)
        self.assertEqual((DONE, b""), (run.returncode, run.stderr))
        self.assertEqual("new", output.state())

    def test_an_output_that_another_program_is_writing_is_left_alone(self):
        for output in self.outputs():
            with open(output.path, "rb") as held:
                fcntl.flock(held, fcntl.LOCK_EX | fcntl.LOCK_NB)
                self.assert_refused(output, {NOT_MADE})
            self.assert_kept(output, output.run(), {DONE}, output.path)

    def clear(self):
        shutil.rmtree(self.folder)
        self.folder.mkdir()


class ForeignCode(Commands):
    def test_a_plug_in_that_ends_its_host_delivers_no_drawing(self):
        for output in self.outputs():
            if output.arguments[0] != "export":
                continue
            output.arguments += ["--plugin", self.options.ends_in_the_middle]
            run = output.run()
            self.assertEqual(PLUGIN, run.code)
            self.assertRegex(run.error, rb"\Adxf2d: .*exit code 0.*\n\Z")
            self.assertEqual("old", output.state())
            self.assertEqual([], output.leftovers())


class Limits(Commands):
    def test_an_output_is_never_mixed_with_messages_to_closed_streams(self):
        for output in self.outputs():
            for count in (1, 2, 3):
                for closed in itertools.combinations((0, 1, 2), count):
                    output.put_old()
                    run = output.run(preexec_fn=lambda streams=closed: [os.close(stream)
                                                                       for stream in streams])
                    self.assertEqual([], output.complaints_about_files(), closed)
                    # What cannot be said may make the run a failed one; the file is whole.
                    self.assertIn(run.code, {DONE, WRITE_FAILED}, closed)

    def test_too_few_descriptors_never_give_half_an_output(self):
        for output in self.outputs():
            for limit in range(3, 24):
                output.put_old()
                run = output.run(preexec_fn=limiting(resource.RLIMIT_NOFILE, limit))
                self.assertEqual([], output.complaints_about_files(), limit)
                self.assertGreaterEqual(run.code, 0, limit)
                if run.code not in (DONE, LOADER_FAILED) and not self.options.sanitized:
                    self.assertRegex(run.error, rb"\Adxf2d: .*\n\Z", limit)

    def test_too_little_memory_is_a_limit_and_leaves_the_old_output(self):
        if self.options.sanitized:
            self.skipTest("sanitizers reserve more memory than there is")
        for output in self.outputs():
            codes = set()
            for mebibytes in range(20, 200, 6):
                output.put_old()
                run = output.run(preexec_fn=limiting(resource.RLIMIT_AS, mebibytes << 20))
                codes.add(run.code)
                self.assertEqual([], output.complaints_about_files(), mebibytes)
                # A reader that is not its own says only that the model cannot be had.
                self.assertIn(run.code, {DONE, INPUT, LIMIT, LOADER_FAILED}, run.error)
            self.assertIn(DONE, codes)


def limiting(kind, value):
    """What a new process does first: it takes no more than `value` of that kind."""
    return lambda: resource.setrlimit(kind, (value, value))


if __name__ == "__main__":
    run_tests(__doc__.splitlines()[0],
              short_writes="the module short_writes, to be preloaded",
              ends_in_the_middle="the plug-in ends_in_the_middle")
