"""Two hundred small models in folders, some of them broken, and what becomes of them."""

import math
import pathlib

# Of these, BROKEN cannot be read, EMPTY has nothing to draw, LARGE needs more than LITTLE MiB, and two
# have one name.
COUNT = 200
LITTLE = 64
BROKEN, EMPTY, LARGE = "b/broken.stl", "c/empty.obj", "c/large.obj"


def box(size: float) -> str:
    corners = [(x, y, z) for x in (0, size) for y in (0, 1) for z in (0, 1)]
    faces = ["1 2 4 3", "5 7 8 6", "1 5 6 2", "3 4 8 7", "1 3 7 5", "2 6 8 4"]
    return "".join(f"v {x} {y} {z}\n" for x, y, z in corners) + "".join(f"f {f}\n" for f in faces)


def waves(count: int) -> str:
    height = [math.sin(i / 9) for i in range(count)]
    vertices = [f"v {i} {j} {height[i] * height[j]:.4f}\n" for i in range(count) for j in range(count)]
    faces = [f"f {a} {a + 1} {a + count + 1} {a + count}\n" for i in range(count - 1)
             for a in range(i * count + 1, i * count + count)]
    return "".join(vertices + faces)


def make(folder: pathlib.Path) -> None:
    for name in "abc":
        (folder / name).mkdir(parents=True)
    for number in range(COUNT - 5):
        (folder / "abc"[number % 3] / f"box {number}.obj").write_text(box(1 + number / 7))
    (folder / BROKEN).write_text("no triangles here")
    (folder / EMPTY).write_text("v 0 0 0\nv 1 0 0\nv 0 1 0\n# no faces\n")
    (folder / LARGE).write_text(waves(420))
    # Of one name: each keeps its end.
    (folder / "a/twin.obj").write_text(box(3))
    (folder / "a/twin.off").write_text("OFF\n3 1 0\n0 0 0\n5 0 0\n0 5 0\n3 0 1 2\n")
