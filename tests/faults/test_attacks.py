#!/usr/bin/env python3
"""What others do to the output's directory and to the program while a drawing is made, and files
that are not to be overwritten."""

import os
import shutil
import stat
import subprocess

from promise import DONE, NOT_MADE, OLD, WRITE_FAILED, FaultTests, run_tests

USAGE, EXISTS = 2, 9

# Anyone but root.
STRANGER = 65534

SECRET = b"not a drawing: keep it\n"


class MidRun(FaultTests):
    """Runs in which a shell command is executed while the worker draws."""

    # Whether the file system has files without names.
    has_unnamed_files = True

    def environment(self, command):
        preloaded = {} if self.has_unnamed_files else {
            "LD_PRELOAD": self.options.without_unnamed_files,
            "ASAN_OPTIONS": "verify_asan_link_order=0"}
        return {"MID_RUN": command, "REAL_PLUGIN": self.options.plugin, **preloaded}

    def run_during(self, output, command, **how):
        output.arguments += ["--plugin", self.options.runs_a_command]
        return output.run(environment=self.environment(command), **how)


class SwappedTemporary(MidRun):
    def test_a_link_in_place_of_the_temporary_file_overwrites_nothing(self):
        output = self.model_export()
        output.put_old()
        victim = self.folder / "victim"
        victim.write_bytes(SECRET)
        run = self.run_during(
            output, f"for f in {output.folder}/.dxf2d-*; do test -e $f || continue; "
                    f"rm -f $f; ln -s {victim} $f; done")
        self.assertEqual(SECRET, victim.read_bytes())
        self.assertIn(run.code, {DONE, WRITE_FAILED})
        self.assertEqual("new" if run.code == DONE else "old", output.state())

    def test_a_removed_temporary_file_is_reported(self):
        output = self.model_export()
        output.put_old()
        run = self.run_during(output, f"rm -f {output.folder}/.dxf2d-*")
        self.assert_kept(output, run, {DONE, WRITE_FAILED})


class SwappedNamedTemporary(SwappedTemporary):
    has_unnamed_files = False

    def test_no_name_shows_where_the_drawing_is_made(self):
        output = self.model_export()
        output.put_old()
        log = self.folder / "names"
        self.assert_kept(output, self.run_during(output, f"ls -A {output.folder} > {log}"), {DONE})
        self.assertEqual("plan.dxf\n", log.read_text())


class Rights(MidRun):
    def test_a_drawing_is_the_owners_alone_while_it_is_made(self):
        output = self.model_export()
        output.replaces = False
        output.put_old()
        log = self.folder / "modes"
        run = self.run_during(output, modes_of_open_files(output.folder, log))
        self.assert_kept(output, run, {DONE})
        self.assertEqual({"600"}, set(log.read_text().split()))

    def test_a_drawing_for_standard_output_is_the_owners_alone_while_it_is_made(self):
        model = self.model_export().arguments[1]
        log = self.folder / "modes"
        scratch = self.folder / "scratch"
        scratch.mkdir()
        command = modes_of_open_files(scratch, log)
        run = subprocess.run([self.options.dxf2d, "export", model, "-o", "-", "--plugin",
                              self.options.runs_a_command], capture_output=True, check=False,
                             env={**os.environ, **self.environment(command),
                                  "TMPDIR": str(scratch)})
        self.assertEqual(DONE, run.returncode, run.stderr)
        self.assertEqual({"600"}, set(log.read_text().split()))
        self.assertEqual([], list(scratch.iterdir()))

    def test_a_replaced_file_keeps_owner_group_mode_and_attributes(self):
        if os.geteuid() != 0:
            self.skipTest("only root can make files of another user")
        for mode in (0o600, 0o640, 0o200, 0o666, 0o664):
            output = self.named_folder_export(f"mode-{mode:o}")
            output.put_old()
            os.chown(output.path, STRANGER, 4)
            output.path.chmod(mode)
            self.set_attribute(output.path, "user.origin", b"survey")
            self.assert_kept(output, output.run(), {DONE}, f"{mode:o}")
            status = output.path.stat()
            self.assertEqual((STRANGER, 4, mode),
                             (status.st_uid, status.st_gid, stat.S_IMODE(status.st_mode)))
            self.assertEqual(b"survey", os.getxattr(output.path, "user.origin"))

    def test_a_group_that_cannot_be_kept_gives_nobody_more_rights(self):
        if os.geteuid() != 0:
            self.skipTest("only root can make files of another group")
        self.folder.chmod(0o755)
        self.check_other_user()
        for before, after in ((0o660, 0o600), (0o664, 0o644), (0o606, 0o600), (0o646, 0o644)):
            output = self.named_folder_export(f"mode-{before:o}")
            output.put_old()
            os.chown(output.folder, STRANGER, STRANGER)
            output.folder.parent.chmod(0o755)
            os.chown(output.path, STRANGER, 4)
            output.path.chmod(before)
            run = output.run(user=STRANGER, group=STRANGER, extra_groups=[])
            self.assert_kept(output, run, {DONE}, f"{before:o}")
            status = output.path.stat()
            self.assertEqual(f"{after:o}", f"{stat.S_IMODE(status.st_mode):o}")

    def test_an_access_control_list_is_kept(self):
        acl = access_control_list(user=6, named=(4, 4), group=0, mask=6, other=0)
        output = self.model_export()
        output.put_old()
        self.set_attribute(output.path, "system.posix_acl_access", acl)
        self.assert_kept(output, output.run(), {DONE})
        self.assertEqual(acl, os.getxattr(output.path, "system.posix_acl_access"))

    def test_a_list_is_not_kept_without_its_group(self):
        if os.geteuid() != 0:
            self.skipTest("only root can make files of another group")
        self.folder.chmod(0o755)
        self.check_other_user()
        output = self.named_folder_export("list")
        output.put_old()
        os.chown(output.folder, STRANGER, STRANGER)
        os.chown(output.path, STRANGER, 4)
        # The list's "owning group" would be another.
        self.set_attribute(output.path, "system.posix_acl_access",
                           access_control_list(user=6, named=(7, 4), group=6, mask=6, other=0))
        run = output.run(user=STRANGER, group=STRANGER, extra_groups=[])
        self.assert_kept(output, run, {DONE})
        self.assertNotIn("system.posix_acl_access", os.listxattr(output.path))
        self.assertEqual(0o600, stat.S_IMODE(output.path.stat().st_mode))

    def test_a_list_that_the_directory_hands_down_does_not_widen_a_replaced_file(self):
        output = self.model_export()
        output.put_old()
        output.path.chmod(0o660)
        acl = access_control_list(user=7, named=(4, 7), group=7, mask=7, other=7)
        self.set_attribute(output.folder, "system.posix_acl_default", acl)
        self.assert_kept(output, output.run(), {DONE})
        self.assertNotIn("system.posix_acl_access", os.listxattr(output.path))
        self.assertEqual(0o660, stat.S_IMODE(output.path.stat().st_mode))

    def test_every_umask_works(self):
        for mask in (0o777, 0o277, 0o477, 0o077, 0o022):
            output = self.named_folder_export(f"umask-{mask:o}")
            output.replaces = False
            output.put_old()
            run = output.run(preexec_fn=lambda mask=mask: os.umask(mask))
            self.assert_kept_by_root(output, run)
            self.assertEqual(0o666 & ~mask, stat.S_IMODE(output.path.stat().st_mode))

    def assert_kept_by_root(self, output, run):
        self.assertEqual((DONE, b""), (run.code, run.error))
        mode = stat.S_IMODE(output.path.stat().st_mode)
        output.path.chmod(0o600)
        self.assertEqual("new", output.state())
        output.path.chmod(mode)

    def named_folder_export(self, name):
        top = self.folder
        self.folder = top / name
        self.folder.mkdir()
        self.folder.chmod(0o755)
        output = self.model_export()
        self.folder = top
        return output

    def set_attribute(self, path, name, value):
        try:
            os.setxattr(path, name, value)
        except OSError as error:
            self.skipTest(f"the file system has no {name}: {error}")

    def check_other_user(self):
        trial = subprocess.run([self.options.dxf2d, "--version"], capture_output=True, check=False,
                               user=STRANGER, group=STRANGER, extra_groups=[])
        if trial.returncode != 0:
            self.skipTest("no other user may run the program where it is")


class Directory(MidRun):
    """The output's directory changes while the drawing is made."""

    def assert_failed(self, output, run, folder):
        """The drawing is said not to be written, and neither it nor a leftover is in `folder`."""
        self.assertEqual(WRITE_FAILED, run.code, run.error)
        self.assertRegex(run.error, rb"\Adxf2d: [^\n]*\n\Z")
        self.assertIn(os.fsencode(output.path), run.error)
        for entry in folder.iterdir():
            self.assertEqual(OLD, entry.read_bytes(), entry)

    def test_renamed(self):
        for replaces in (True, False):
            output = self.export_in(f"renamed-{replaces}", replaces)
            moved = output.folder.with_name("moved")
            run = self.run_during(output, f"mv {output.folder} {moved}")
            self.assert_failed(output, run, moved)

    def test_renamed_and_made_anew(self):
        for replaces in (True, False):
            output = self.export_in(f"anew-{replaces}", replaces)
            moved = output.folder.with_name("moved")
            run = self.run_during(output,
                                  f"mv {output.folder} {moved} && mkdir {output.folder}")
            self.assert_failed(output, run, moved)
            self.assertEqual([], list(output.folder.iterdir()))

    def test_replaced_by_a_link(self):
        for replaces in (True, False):
            output = self.export_in(f"link-{replaces}", replaces)
            moved = output.folder.with_name("moved")
            other = output.folder.with_name("other")
            other.mkdir()
            run = self.run_during(
                output, f"mv {output.folder} {moved} && ln -s other {output.folder}")
            self.assert_failed(output, run, moved)
            self.assertEqual([], list(other.iterdir()))

    def test_removed(self):
        output = self.export_in("removed", False)
        run = self.run_during(output, f"rm -r {output.folder}")
        self.assertEqual(WRITE_FAILED, run.code, run.error)
        self.assertFalse(output.folder.exists())

    def test_append_only(self):
        for replaces in (True, False):
            output = self.export_in(f"append-{replaces}", replaces)
            trial = subprocess.run(["chattr", "+a", output.folder], capture_output=True,
                                   check=False)
            if trial.returncode != 0:
                self.skipTest(f"no append-only directories here: {trial.stderr}")
            self.addCleanup(subprocess.run, ["chattr", "-a", output.folder], check=False)
            self.assert_kept(output, output.run(), {DONE, NOT_MADE}, replaces)
            subprocess.run(["chattr", "-a", output.folder], check=True)
            output.put_old()
            run = self.run_during(output, f"chattr +a {output.folder}")
            self.assert_kept(output, run, {DONE, WRITE_FAILED}, replaces)

    def export_in(self, name, replaces):
        top = self.folder
        self.folder = top / name
        self.folder.mkdir()
        output = self.model_export()
        self.folder = top
        output.replaces = replaces
        output.put_old()
        return output


class LastMoment(FaultTests):
    """The directory changes between the last calls, when the drawing has its temporary name or its own."""

    def run_with(self, output, call, act):
        """Runs with the shell command `act`, in the output's directory, after the call."""
        return output.run(environment={
            "LD_PRELOAD": self.options.acts_after_a_call, "ACT_AFTER": call,
            "ACT": f"cd {output.folder} && {act}", "ASAN_OPTIONS": "verify_asan_link_order=0"})

    def old_output(self):
        output = self.model_export()
        output.put_old()
        return output

    def new_output(self):
        output = self.model_export()
        output.replaces = False
        output.put_old()
        return output

    def assert_refused(self, run):
        self.assertEqual(WRITE_FAILED, run.code, run.error)
        self.assertRegex(run.error, rb"\Adxf2d: [^\n]*\n\Z")

    def test_a_link_in_place_of_the_temporary_name_gets_no_other(self):
        output = self.old_output()
        victim = self.folder / "victim"
        victim.write_bytes(SECRET)
        self.assert_refused(self.run_with(
            output, "linkat", f"for f in .dxf2d-*; do rm $f && ln -s {victim} $f; done"))
        self.assertFalse(output.path.is_symlink())
        self.assertEqual(OLD, output.path.read_bytes())
        self.assertEqual(SECRET, victim.read_bytes())

    def test_a_file_in_place_of_the_temporary_one_is_not_removed(self):
        output = self.old_output()
        self.assert_refused(self.run_with(
            output, "linkat", "for f in .dxf2d-*; do rm $f && echo theirs > $f; done"))
        self.assertEqual(OLD, output.path.read_bytes())
        self.assertEqual([b"theirs\n"], [path.read_bytes() for path in output.folder.iterdir()
                                         if path != output.path])

    def test_a_new_drawing_does_not_move_with_its_directory(self):
        output = self.new_output()
        moved = output.folder.with_name("moved")
        self.assert_refused(self.run_with(output, "linkat", f"mv {output.folder} {moved}"))
        self.assertEqual([], list(moved.iterdir()))

    def test_a_drawing_that_moves_when_it_replaces_another_is_reported(self):
        output = self.old_output()
        moved = output.folder.with_name("moved")
        self.assert_refused(self.run_with(output, "renameat", f"mv {output.folder} {moved}"))
        self.assertEqual([output.path.name], os.listdir(moved))

    def test_a_drawing_that_is_removed_at_once_is_reported(self):
        output = self.old_output()
        self.assert_refused(self.run_with(output, "renameat", f"rm {output.path.name}"))
        self.assertEqual([], list(output.folder.iterdir()))

    def test_a_drawing_in_place_of_which_another_file_comes_is_reported(self):
        output = self.old_output()
        self.assert_refused(self.run_with(
            output, "renameat", f"echo theirs > other && mv -f other {output.path.name}"))
        self.assertEqual(b"theirs\n", output.path.read_bytes())


class Inputs(MidRun):
    """Inputs are never overwritten."""

    def write_model(self):
        (self.folder / "side.mtl").write_text("newmtl red\nKd 1 0 0\nmap_Kd wood.png\n")
        (self.folder / "wood.png").write_bytes(b"a picture")
        (self.folder / "model.obj").write_text(
            "mtllib side.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\nusemtl red\nf 1 2 3\n")
        return self.folder / "model.obj"

    def assert_refused(self, model, output, victim, *more):
        before = victim.read_bytes()
        run = subprocess.run([self.options.dxf2d, "export", model, "-f", "-o", output, *more],
                             capture_output=True, check=False, cwd=self.folder)
        self.assertEqual(before, victim.read_bytes())
        self.assertEqual(USAGE, run.returncode, run.stderr)
        self.assertRegex(run.stderr, rb"\Adxf2d: [^\n]*\n\Z")

    def links_to(self, path):
        """Names that lead to the file."""
        soft, hard = self.folder / "soft.dxf", self.folder / "hard.dxf"
        soft.symlink_to(path)
        os.link(path, hard)
        return [path, soft, hard, f"/proc/self/cwd/{path.name}", f"/proc/{os.getpid()}/root{path}"]

    def test_the_model(self):
        model = self.write_model()
        for name in self.links_to(model):
            self.assert_refused(model, name, model)

    def test_a_material_file(self):
        model = self.write_model()
        for name in self.links_to(self.folder / "side.mtl"):
            self.assert_refused(model, name, self.folder / "side.mtl")

    def test_a_texture(self):
        model = self.write_model()
        for name in self.links_to(self.folder / "wood.png"):
            self.assert_refused(model, name, self.folder / "wood.png")

    def test_a_texture_by_the_picture_beside_the_drawing(self):
        model = self.write_model()
        texture = self.folder / "wood.png"
        for name in ("wood.png", f"/proc/self/cwd/{texture.name}"):
            self.assert_refused(model, "plan.dxf", texture, "--preview", name)
            self.assertFalse((self.folder / "plan.dxf").exists())

    def test_the_plug_in_by_the_picture_beside_the_drawing(self):
        model = self.write_model()
        plugin = self.folder / "plugin.png"
        shutil.copy(self.options.plugin, plugin)
        self.assert_refused(model, "plan.dxf", plugin, "--plugin", plugin, "--preview", plugin)

    def test_a_drawing_that_is_read_and_standard_output(self):
        drawing = self.folder / "plan.dxf"
        subprocess.run([self.options.dxf2d, "export", self.write_model(), "-o", drawing],
                       capture_output=True, check=True)
        before = drawing.read_bytes()
        for command in (["finish"], ["preview", "--format", "svg"]):
            with open(drawing, "r+b") as output:
                run = subprocess.run([self.options.dxf2d, *command, drawing, "-o", "-"],
                                     stdout=output, stderr=subprocess.PIPE, check=False)
            self.assertEqual(before, drawing.read_bytes(), command)
            self.assertEqual(USAGE, run.returncode, run.stderr)

    def test_a_file_that_is_not_read_since_it_is_outside(self):
        model = self.folder / "models" / "model.obj"
        model.parent.mkdir()
        outside = self.folder / "side.mtl"
        outside.write_text("newmtl red\n")
        model.write_text("mtllib ../side.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\nf 1 2 3\n")
        for options in ([], ["--allow-outside"]):
            self.assert_refused(model, outside, outside, *options)

    def test_another_model_of_the_command(self):
        model = self.write_model()
        other = self.folder / "other.obj"
        shutil.copy(model, other)
        drawings = self.folder / "drawings"
        drawings.mkdir()
        os.link(other, drawings / "model.dxf")
        before = other.read_bytes()
        run = subprocess.run([self.options.dxf2d, "export", model, other, "-f", "-o", drawings],
                             capture_output=True, check=False)
        self.assertEqual(USAGE, run.returncode, run.stderr)
        self.assertEqual(before, other.read_bytes())

    def test_the_plug_in(self):
        model = self.write_model()
        plugin = self.folder / "plugin.so"
        shutil.copy(self.options.plugin, plugin)
        for name in self.links_to(plugin):
            self.assert_refused(model, name, plugin, "--plugin", plugin)

    def test_a_block_device_needs_force(self):
        device = self.folder / "device"
        try:
            # No driver has this number.
            os.mknod(device, stat.S_IFBLK | 0o600, os.makedev(259, 1048575))
        except PermissionError:
            self.skipTest("only root can make devices")
        run = subprocess.run([self.options.dxf2d, "export", self.write_model(), "-o", device],
                             capture_output=True, check=False)
        self.assertEqual(EXISTS, run.returncode, run.stderr)
        self.assertIn(b"--force", run.stderr)


class ConfinedReader(FaultTests):
    def test_a_reader_reaches_nothing_but_its_model_and_its_output(self):
        secret, model = self.folder / "secret", self.folder / "models" / "model.obj"
        model.parent.mkdir()
        for path in (secret, model):
            path.write_bytes(b"v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n")
        drawing = self.folder / "plan.dxf"
        run = subprocess.run([self.options.dxf2d, "export", model, "-o", drawing, "--plugin",
                              self.options.reaches_out], capture_output=True, check=False,
                             env={**os.environ, "SECRET": str(secret), "BESIDE": str(model)})
        # What another plug-in writes is its own business.
        self.assertEqual(DONE, run.returncode, run.stderr)
        self.assertTrue(secret.exists())

    def test_what_it_tries_is_refused(self):
        secret, beside = self.folder / "secret", self.folder / "models" / "scene.json"
        beside.parent.mkdir()
        secret.write_bytes(SECRET)
        beside.write_text('{"nodes": []}')
        drawing = self.folder / "plan.dxf"
        run = subprocess.run([self.options.dxf2d, "export", beside, "-o", drawing, "--plugin",
                              self.options.reaches_out], capture_output=True, check=False,
                             env={**os.environ, "SECRET": str(secret), "BESIDE": str(beside)})
        self.assertEqual((DONE, b""), (run.returncode, run.stderr))
        outcome = dict(line.split(": ") for line in drawing.read_text().splitlines())
        in_force = subprocess.run([self.options.dxf2d, "inspect", self.options.plugin],
                                  capture_output=True, text=True, check=True).stdout
        self.assertEqual("done", outcome["read beside the model"])
        if "Landlock" in in_force:
            for deed in ("write beside the model", "read a secret", "write a secret"):
                self.assertEqual("refused", outcome[deed], deed)
        if "seccomp" in in_force:
            for deed in ("remove a secret", "open a socket", "start a program",
                         "signal the parent", "have the system signal the parent",
                         "stop itself",
                         "take memory in a file without a name", "limit the parent", "change its own limits", "change flags of a file"):
                with self.subTest(deed):
                    self.assertEqual("refused", outcome[deed])
        self.assertEqual(SECRET, secret.read_bytes())


class TwoUsers(MidRun):
    """Another user attacks a drawing of root's in a directory that everybody may write to."""

    def setUp(self):
        super().setUp()
        if os.geteuid() != 0:
            self.skipTest("only root can be two users")
        if shutil.which("setpriv") is None:
            self.skipTest("setpriv is not installed")
        self.folder.chmod(0o755)
        self.victim = self.folder / "victim"
        self.victim.write_bytes(SECRET)
        self.victim.chmod(0o600)

    def attack(self, command, replaces):
        """Runs `command` as the other user in the output's directory in the middle of an export."""
        output = self.model_export()
        output.replaces = replaces
        output.put_old()
        output.folder.chmod(0o777)
        script = self.folder / "attack"
        script.write_text(f"cd {output.folder}\n{command}\n:\n")
        script.chmod(0o755)
        run = self.run_during(output, f"setpriv --reuid={STRANGER} --regid={STRANGER} "
                                      f"--clear-groups sh {script}")
        self.assertEqual(SECRET, self.victim.read_bytes())
        return output, run

    def test_temporary_files_cannot_be_read_replaced_or_removed(self):
        swap = (f"for f in .dxf2d-*; do test -e $f || continue; cat $f > stolen; rm -f $f; "
                f"ln -s {self.victim} $f; done")
        for replaces in (True, False):
            with self.subTest(replaces=replaces):
                self.fresh_folder(f"swap-{replaces}")
                output, run = self.attack(swap, replaces)
                self.assertIn(run.code, {DONE, WRITE_FAILED}, run.error)
                self.assertEqual("new" if run.code == DONE else "old", output.state())
                # The shell makes the file before it is known whether there is anything to read.
                stolen = output.folder / "stolen"
                self.assertEqual(b"", stolen.read_bytes() if stolen.exists() else b"")

    def test_a_link_in_place_of_the_output_does_not_lead_elsewhere(self):
        self.fresh_folder("link")
        output, run = self.attack(f"rm -f plan.dxf; ln -s {self.victim} plan.dxf", True)
        self.assertEqual(WRITE_FAILED, run.code, run.error)

    def test_a_hard_link_in_place_of_the_output_is_replaced_and_not_written_through(self):
        self.fresh_folder("hard")
        own = self.folder / "own"
        own.write_bytes(SECRET)
        os.chown(own, STRANGER, STRANGER)
        output, run = self.attack(f"rm -f plan.dxf; ln {own} plan.dxf", True)
        self.assertIn(run.code, {DONE, WRITE_FAILED}, run.error)
        self.assertEqual(SECRET, own.read_bytes())

    def test_the_drawing_cannot_be_read_while_it_is_made(self):
        self.fresh_folder("read")
        stolen = ("for p in /proc/[0-9]*; do case $(cat $p/comm) in dxf2d*) "
                  "cat $p/fd/* >> stolen;; esac; done 2> /dev/null; touch stolen")
        output, run = self.attack(stolen, True)
        self.assertEqual(DONE, run.code, run.error)
        self.assertNotIn(b"POLYLINE", (output.folder / "stolen").read_bytes())

    def fresh_folder(self, name):
        self.folder = self.folder / name
        self.folder.mkdir()
        self.folder.chmod(0o755)


class TwoUsersAndNamedTemporaries(TwoUsers):
    has_unnamed_files = False


class DirectoryWithNamedTemporaries(Directory):
    has_unnamed_files = False


class LoopDevices(FaultTests):
    def setUp(self):
        super().setUp()
        self.image = self.folder / "image"
        self.image.write_bytes(bytes(1 << 16))
        made = subprocess.run(["losetup", "--find", "--show", self.image], capture_output=True,
                              check=False) if shutil.which("losetup") else None
        if made is None or made.returncode != 0:
            self.skipTest(f"no loop devices here: {made.stderr if made else 'no losetup'}")
        self.device = made.stdout.decode().strip()
        self.addCleanup(subprocess.run, ["losetup", "--detach", self.device], check=False)

    def test_a_device_is_overwritten_only_when_that_is_asked_for(self):
        output = self.model_export()
        command = [self.options.dxf2d, *output.arguments, "-o", self.device]
        run = subprocess.run(command, capture_output=True, check=False)
        self.assertEqual(EXISTS, run.returncode, run.stderr)
        run = subprocess.run([*command, "--force"], capture_output=True, check=False)
        self.assertEqual((DONE, b""), (run.returncode, run.stderr))
        with open(self.device, "rb") as device:
            self.assertEqual(output.new, device.read(len(output.new)))

    def test_a_device_that_is_too_small_is_a_failed_write(self):
        output = self.model_export(side=150)
        self.assertGreater(len(output.new), 1 << 16)
        run = subprocess.run([self.options.dxf2d, *output.arguments, "-o", self.device, "--force"],
                             capture_output=True, check=False)
        self.assertEqual(WRITE_FAILED, run.returncode, run.stderr)


class LongNames(FaultTests):
    def test_a_path_as_long_as_the_system_allows_works(self):
        output = self.model_export()
        for name in ("n", "n" * 255):
            path = self.folder_of_length(4090 - 1 - len(name))
            drawing = path / name
            self.assertEqual(4090, len(os.fsencode(drawing)))
            for options in ([], ["--force"]):
                run = subprocess.run([self.options.dxf2d, *output.arguments, *options, "-o",
                                      drawing], capture_output=True, check=False)
                self.assertEqual((DONE, b""), (run.returncode, run.stderr))
                self.assertEqual(output.new, drawing.read_bytes())
                self.assertEqual([name], os.listdir(path))

    def folder_of_length(self, length):
        path = self.folder
        while len(os.fsencode(path)) < length - 250:
            path = path / ("d" * 200)
        path = path / ("e" * (length - 1 - len(os.fsencode(path))))
        path.mkdir(parents=True)
        return path


def modes_of_open_files(folder, log):
    """A command that writes the modes of the files in `folder` that its parent process has open."""
    return (f"for f in /proc/$PPID/fd/*; do case $(readlink $f) in {folder}/*) "
            f"stat -L -c %a $f;; esac; done > {log}")


def access_control_list(user, named, group, mask, other):
    """A list with one named user, `named`: (number, rights), as the system stores it."""
    none = 0xffffffff
    entries = [(0x01, user, none), (0x02, named[1], named[0]), (0x04, group, none),
               (0x10, mask, none), (0x20, other, none)]
    packed = b"".join(tag.to_bytes(2, "little") + rights.to_bytes(2, "little")
                      + number.to_bytes(4, "little") for tag, rights, number in entries)
    return (2).to_bytes(4, "little") + packed


if __name__ == "__main__":
    run_tests(__doc__.splitlines()[0],
              plugin="the plug-in of the program",
              runs_a_command="the plug-in runs_a_command",
              reaches_out="the plug-in reaches_out",
              acts_after_a_call="the module acts_after_a_call, to be preloaded",
              without_unnamed_files="the module without_unnamed_files, to be preloaded")
