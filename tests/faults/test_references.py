#!/usr/bin/env python3
"""Files that a model refers to and that are missing, elsewhere, or not files at all."""

import os
import shutil
import struct
import subprocess

from promise import DONE, INPUT, FaultTests, run_tests

OBJECT = "v 0 0 0\nv 4 0 0\nv 4 3 0\nf 1 2 3\n"

BUFFERED = """{"asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0]}],
"nodes": [{"mesh": 0}], "meshes": [{"primitives": [{"attributes": {"POSITION": 0}}]}],
"accessors": [{"bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3",
"min": [0, 0, 0], "max": [4, 0, 3]}], "bufferViews": [{"buffer": 0, "byteLength": 36}],
"buffers": [{"byteLength": 36, "uri": "triangle.bin"}]}"""

LWO = "/usr/share/assimp/models/LWO/LWO2/boxuv.lwo"

SCENE = """LWSC
3

LoadObject {}
ShowObject 7 7
"""


class References(FaultTests):
    def export(self, model, *options):
        drawing = self.folder / "plan.dxf"
        return subprocess.run([self.options.dxf2d, "export", model, "-f", "-o", drawing, *options],
                              capture_output=True, check=False, timeout=60)

    def model(self, text, name="model.obj"):
        path = self.folder / "models" / name
        path.parent.mkdir(exist_ok=True)
        path.write_text(text)
        return path

    def assert_drawn(self, run, note):
        self.assertEqual((DONE, b""), (run.returncode, run.stderr))
        self.assertTrue(run.stdout.endswith(note + b"\n"), run.stdout)

    def test_a_missing_material_file_is_named(self):
        model = self.model("mtllib m.mtl\n" + OBJECT)
        self.assert_drawn(self.export(model), b"; missing: m.mtl")
        strict = self.export(model, "--strict")
        self.assertEqual(INPUT, strict.returncode)
        self.assertIn(b"m.mtl", strict.stderr)

    def test_a_material_file_that_is_named_after_the_model_is_named_too(self):
        self.assert_drawn(self.export(self.model("mtllib model.mtl\n" + OBJECT)),
                          b"; missing: model.mtl")

    def test_a_complete_model_has_no_missing_files(self):
        run = self.export(self.model(OBJECT), "--strict")
        self.assert_drawn(run, b"skipped: nothing")

    def test_a_scene_of_missing_objects_alone_is_refused(self):
        run = self.export(self.model(SCENE.format("chair.lwo"), "room.lws"))
        self.assertEqual(INPUT, run.returncode, run.stdout)
        self.assertIn(b"chair.lwo", run.stderr)
        self.assertFalse((self.folder / "plan.dxf").exists())

    def test_a_missing_object_beside_one_that_is_there_is_named(self):
        text = SCENE.format("desk.lwo") + "\nLoadObject chair.lwo\nShowObject 7 7\n"
        model = self.model(text, "room.lws")
        shutil.copy(LWO, model.with_name("desk.lwo"))
        self.assert_drawn(self.export(model), b"; missing: chair.lwo")
        strict = self.export(model, "--strict")
        self.assertEqual(INPUT, strict.returncode)
        self.assertIn(b"missing: chair.lwo", strict.stderr)

    def test_missing_buffers_are_named(self):
        model = self.model(BUFFERED, "model.gltf")
        run = self.export(model)
        self.assertEqual(INPUT, run.returncode, run.stdout)
        self.assertIn(b"triangle.bin", run.stderr)
        corners = struct.pack("<9f", 0, 0, 0, 4, 0, 0, 4, 0, 3)
        model.with_name("triangle.bin").write_bytes(corners)
        self.assert_drawn(self.export(model), b"skipped: nothing")

    def test_files_outside_the_directory_are_not_read(self):
        secret = self.folder / "secret.mtl"
        secret.write_text("newmtl secret\n")
        self.model("", "link.mtl").unlink()
        (self.folder / "models" / "link.mtl").symlink_to(secret)
        for name in ("../secret.mtl", str(secret), "link.mtl"):
            model = self.model(f"mtllib {name}\n" + OBJECT)
            run = self.export(model)
            self.assertEqual((DONE, b""), (run.returncode, run.stderr))
            self.assertIn(b"; outside: ", run.stdout)
            self.assertIn(os.path.basename(name).encode(), run.stdout)
            self.assertEqual(INPUT, self.export(model, "--strict").returncode)
            self.assertNotIn(b"outside", self.export(model, "--allow-outside").stdout)

    def test_a_fifo_does_not_block(self):
        model = self.model("mtllib pipe.mtl\n" + OBJECT)
        os.mkfifo(model.with_name("pipe.mtl"))
        for options in ([], ["--allow-outside"]):
            self.assert_drawn(self.export(model, *options), b"; outside: pipe.mtl")

    def test_a_model_that_is_a_link_is_read_and_refers_to_files_beside_the_link(self):
        far = self.folder / "far"
        far.mkdir()
        (far / "real.obj").write_text("mtllib m.mtl\n" + OBJECT)
        link = self.model("newmtl red\n", "m.mtl").with_name("link.obj")
        link.symlink_to(far / "real.obj")
        self.assert_drawn(self.export(link), b"skipped: nothing")


class Reads(FaultTests):
    """Every read of a model fails, or ends the file too early."""

    def test_a_failed_or_short_read_is_never_half_a_drawing(self):
        corner = "".join(f"v {i} {i * i % 17} 0\n" for i in range(3000))
        faces = "".join(f"f {i} {i + 1} {i + 2}\n" for i in range(1, 2998))
        folder = self.folder / "models"
        folder.mkdir()
        model = folder / "model.obj"
        model.write_text("mtllib m.mtl\n" + corner + faces)
        (folder / "m.mtl").write_text("newmtl red\nKd 1 0 0\n")
        self.sweep(model, folder / "m.mtl")

    def test_a_failed_read_of_a_binary_format_is_never_half_a_drawing(self):
        folder = self.folder / "models"
        folder.mkdir()
        model = folder / "model.ply"
        count = 400
        header = ("ply\nformat binary_little_endian 1.0\n"
                  f"element vertex {3 * count}\nproperty float x\nproperty float y\n"
                  f"property float z\nelement face {count}\n"
                  "property list uchar int vertex_indices\nend_header\n")
        model.write_bytes(header.encode() + b"".join(
            struct.pack("<9f", i, 0, 0, i + 1, 0, 0, i, 1, 0) for i in range(count)) + b"".join(
                struct.pack("<B3i", 3, 3 * i, 3 * i + 1, 3 * i + 2) for i in range(count)))
        self.sweep(model)

    def setUp(self):
        super().setUp()
        trial = subprocess.run(["strace", "-o", "/dev/null", "true"], capture_output=True,
                               check=False) if shutil.which("strace") else None
        if trial is None or trial.returncode != 0:
            self.skipTest("strace is not installed or cannot trace here")

    def sweep(self, model, *more_files):
        code, whole = self.drawn(model, [])
        self.assertEqual(DONE, code)
        refused = 0
        for file in (model, *more_files):
            for fault in ("error=EIO", "retval=0"):
                for number in range(1, 20):
                    inject = f"inject=read:{fault}:when={number}"
                    code, drawing = self.drawn(model, ["strace", "-f", "-o", self.folder / "trace",
                                                       "-P", file, "-e", "trace=read", "-e",
                                                       inject])
                    if code == DONE:
                        self.assertEqual(whole, drawing, (file, inject))
                    else:
                        self.assertEqual(INPUT, code, (file, inject))
                        refused += 1
                    if "INJECTED" not in (self.folder / "trace").read_text():
                        break
        self.assertGreater(refused, 0)

    def drawn(self, model, before):
        drawing = self.folder / "plan.dxf"
        drawing.unlink(missing_ok=True)
        run = subprocess.run([*before, self.options.dxf2d, "export", model, "-o", drawing],
                             capture_output=True, check=False,
                             env={**os.environ, "ASAN_OPTIONS": "detect_leaks=0"})
        return run.returncode, drawing.read_bytes() if drawing.exists() else None


if __name__ == "__main__":
    run_tests(__doc__.splitlines()[0])
