"""The Python module ktscene, with and without NumPy."""
import array
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import threading
import tracemalloc
import unittest

import ktscene

try:
    import numpy
except ImportError:
    numpy = None

SQUARE = [(0, 0, 0), (2, 0, 0), (2, 1, 0), (0, 1, 0)]
QUARTER_TURN = [0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1]


class SceneTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.scene = ktscene.Scene()
        self.addCleanup(self.scene.close)

    def written(self):
        path = self.folder / "scene.json"
        self.scene.write(path)
        return json.loads(path.read_text(encoding="utf-8"))["nodes"]

    def face_set(self, *arguments, **options):
        """What a new node has of the mesh."""
        self.scene.add_object("a").add_faces(*arguments, **options)
        return self.written()[-1]["geometry"][0]["faceSet"]

    def test_sequences_and_buffers_give_one_set(self):
        flat = [number for point in SQUARE for number in point]
        expected = self.face_set(SQUARE, [0, 1, 2, 3], counts=[4])
        self.assertEqual(expected["coords"], flat)
        self.assertEqual(expected["indices"], [0, 1, 2, 3, -7])
        for code in "fd":
            for indices in ([0, 1, 2, 3, -7], array.array("i", [0, 1, 2, 3, -7])):
                self.assertEqual(self.face_set(array.array(code, flat), indices), expected)
        # A buffer of another type is copied.
        self.assertEqual(self.face_set(array.array("h", flat), array.array("h", [0, 1, 2, 3, -7])), expected)
        self.assertEqual(self.face_set(SQUARE, [0, 1, 2], run=ktscene.Run.TRIANGLES)["indices"], [0, 1, 2, -5])

    @unittest.skipIf(numpy is None, "NumPy is not installed")
    def test_numpy_arrays_give_the_same_set(self):
        expected = self.face_set(SQUARE, [0, 1, 2, 3], counts=[4])
        for coords in (numpy.array(SQUARE, "f4"), numpy.array(SQUARE, "f8"), numpy.array(SQUARE, "i2"),
                       numpy.array(SQUARE, ">f4"), numpy.array(SQUARE, "f8", order="F"),
                       numpy.repeat(numpy.array(SQUARE, "f8"), 2, axis=0)[::2]):
            for kind in ("i4", "u4", "i8", "u1"):
                indices = numpy.arange(4).astype(kind)
                self.assertEqual(self.face_set(coords, indices, counts=numpy.array([4], kind)), expected)
        for bad in (numpy.array([0, 1, 2**33]), numpy.array([0.0, 1.5, 2.0])):
            with self.assertRaisesRegex(ValueError, "32-bit"):
                self.face_set(SQUARE, bad, run=ktscene.Run.TRIANGLES)

    @unittest.skipIf(numpy is None, "NumPy is not installed")
    def test_arrays_are_read_where_they_are(self):
        count = 300_000
        coords = numpy.zeros((count, 3), "f4")
        coords[:, 0] = numpy.arange(count)
        coords.flags.writeable = False
        indices = numpy.arange(count, dtype="u4")
        tracemalloc.start()
        self.scene.add_object("a").add_faces(coords, indices, run=ktscene.Run.TRIANGLES)
        _, peak = tracemalloc.get_traced_memory()
        tracemalloc.stop()
        self.assertLess(peak, 20_000)
        # They live as long as the scene.
        before = sys.getrefcount(coords)
        self.scene.close()
        self.assertLess(sys.getrefcount(coords), before)

    def test_lent_buffers_show_later_changes_and_cannot_be_resized(self):
        coords = array.array("d", [number for point in SQUARE for number in point])
        self.scene.add_object("a").add_faces(coords, array.array("i", [0, 1, 2]), run=ktscene.Run.TRIANGLES)
        coords[0] = 0.5
        self.assertEqual(self.written()[0]["geometry"][0]["faceSet"]["coords"][0], 0.5)
        with self.assertRaises(BufferError):
            coords.append(1.0)
        self.scene.close()
        coords.append(1.0)

    def test_a_refused_mesh_lets_go_of_its_arrays(self):
        coords = array.array("d", [0, 0])
        with self.assertRaisesRegex(ktscene.Error, "multiple of 3") as caught:
            self.scene.add_object("a").add_faces(coords, [0], run=ktscene.Run.TRIANGLES)
        self.assertEqual(caught.exception.status, 1)
        coords.append(1.0)
        self.assertNotIn("geometry", self.written()[0])

    def test_matrices_are_split(self):
        scaled = [4 * number for number in QUARTER_TURN[:12]] + [5, 6, 7, 1]
        placement, residual = ktscene.split_matrix(scaled)
        self.assertEqual(placement, QUARTER_TURN[:12] + [5, 6, 7, 1])
        self.assertEqual(residual, [4, 0, 0, 0, 0, 4, 0, 0, 0, 0, 4, 0, 0, 0, 0, 1])
        part = self.scene.add_object("a", "look", matrix=[scaled[i:i + 4] for i in range(0, 16, 4)])
        part.add_faces(SQUARE, [0, 1, 2, 3], counts=[4])
        [node] = self.written()
        self.assertEqual(node["matrix"], placement)
        self.assertEqual(node["children"][0]["matrix"], residual)
        self.assertNotEqual(node["graphicName"], "look")
        with self.assertRaisesRegex(ValueError, "matrix of 3"):
            self.scene.add_object("b", matrix=[1, 2, 3])

    def test_objects_of_one_look_are_one_block(self):
        first = self.scene.add_object("crate-1", "crate")
        first.add_faces(SQUARE, [0, 1, 2, 3], counts=[4])
        self.scene.add_object("crate-2", "crate", matrix=ktscene.translation(5, 3, 0)).share(first)
        self.scene.add_object("crate-3", "crate", color=(1, 0, 0)).share(first)
        path = self.folder / "crates.dxf"
        self.scene.draw(path)
        entities = path.read_text(encoding="latin-1").split("\nENTITIES\n")[1]
        self.assertEqual(entities.count("\nGO_1\n"), 2)
        self.assertEqual(entities.count("\nINSERT\n"), 3)

    def test_rounding_keeps_no_two_objects_apart(self):
        first = self.scene.add_object("a", "look", matrix=[2, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1])
        first.add_faces(SQUARE, [0, 1, 2, 3], counts=[4])
        for name, scale in (("b", 2 + 1e-7), ("c", 2.1), ("d", 1 - 1e-7)):
            matrix = [scale, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 9, 0, 0, 1]
            self.scene.add_object(name, "look", matrix=matrix).share(first)
        looks = [node["graphicName"] for node in self.written()]
        self.assertEqual([looks.index(look) for look in looks], [0, 0, 2, 3])
        self.assertEqual(self.written()[1]["children"][0]["matrix"][0], 2)
        self.assertNotIn("children", self.written()[3])

    def test_labels_and_lines_are_drawn(self):
        node = self.scene.add_object("a", color=(0, 1, 0))
        node.add_lines(SQUARE, [0, 1, 2], counts=[3])
        node.add_node().set_label("Tür\nzwei", 2.5, (1, 2, 3), angle=90, align="C")
        path = self.folder / "a.dxf"
        self.scene.draw(path)
        text = path.read_bytes()
        self.assertIn("Tür".encode("cp1252"), text)
        self.assertIn(b"\nzwei\n", text)
        self.assertEqual(text.count(b"\nVERTEX\n"), 3)
        with self.assertRaisesRegex(ktscene.Error, "alignment"):
            node.set_label("a", 1.0, align="middle")
        with self.assertRaisesRegex(ValueError, "zero character"):
            node.set_label("a\0b", 1.0)

    def test_the_check_names_what_is_wrong(self):
        node = self.scene.add_object("a")
        node.add_faces(SQUARE, [0, 1, 2, 3], counts=[4])
        self.assertEqual(self.scene.check(), [])
        self.scene.add_object("b").add_faces(SQUARE, [0, 1, 9], run=ktscene.Run.TRIANGLES)
        [finding] = self.scene.check()
        self.assertTrue(finding.is_error)
        self.assertEqual(finding.node, "/nodes/1/geometry/0")
        self.assertIn("point 9 of 4", finding.problem)
        self.assertIn("from 0", finding.remedy)

    def test_progress_counts_and_cancels(self):
        for name in "abc":
            self.scene.add_object(name).add_faces(SQUARE, [0, 1, 2, 3], counts=[4])
        counts = []
        self.scene.draw(self.folder / "a.dxf", progress=counts.append)
        self.assertEqual(counts, [0, 1, 2])
        with self.assertRaises(ktscene.Canceled):
            self.scene.draw(self.folder / "b.dxf", progress=lambda nodes: nodes < 1)
        with self.assertRaises(ZeroDivisionError):
            self.scene.draw(self.folder / "b.dxf", progress=lambda nodes: 1 / nodes)
        self.assertEqual(os.listdir(self.folder), ["a.dxf"])

    def test_what_fails_says_why(self):
        with self.assertRaisesRegex(ktscene.Error, "no/such.so") as caught:
            self.scene.draw(self.folder / "a.dxf", plugin="no/such.so")
        self.assertEqual(caught.exception.status, 3)
        with self.assertRaisesRegex(ktscene.Error, "missing") as caught:
            self.scene.draw(self.folder / "missing" / "a.dxf")
        self.assertEqual(caught.exception.status, 4)
        node = self.scene.add_object("a")
        self.scene.close()
        self.scene.close()
        with self.assertRaisesRegex(ValueError, "closed"):
            node.set_color(1, 0, 0)
        with self.assertRaisesRegex(ValueError, "closed"):
            self.scene.draw(self.folder / "a.dxf")
        self.assertEqual(os.listdir(self.folder), [])

    def test_threads_draw_at_once(self):
        self.scene.add_object("a").add_faces(SQUARE, [0, 1, 2, 3], counts=[4])
        paths = [self.folder / f"{i}.dxf" for i in range(4)]
        threads = [threading.Thread(target=self.scene.draw, args=(path,)) for path in paths]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(len({path.read_bytes() for path in paths}), 1)

    def test_without_a_library_the_import_says_what_to_do(self):
        environment = dict(os.environ, KTSCENE_LIBRARY="/no/libKtScene.so.1")
        done = subprocess.run([sys.executable, "-B", "-c", "import ktscene"], env=environment,
                              stderr=subprocess.PIPE, text=True)
        self.assertEqual(done.returncode, 1)
        self.assertRegex(done.stderr, "ImportError: ktscene: .*KTSCENE_LIBRARY")

    def test_the_versions_agree(self):
        self.assertEqual(".".join(map(str, ktscene.library_version())), ktscene.__version__)


if __name__ == "__main__":
    unittest.main()
