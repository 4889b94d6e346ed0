"""Models whose objects hide, touch and pierce each other, as binary STL files.

Each function returns triangles as an array of shape (n, 3, 3) in single precision, about `count`
of them, the same ones at every call. The area in plan grows with the count, so that as much lies
above each other in large models as in small ones.
"""

import numpy as np

BOX_TRIANGLES = np.array([[0, 2, 3], [0, 3, 1], [4, 5, 7], [4, 7, 6], [0, 1, 5], [0, 5, 4],
                          [2, 6, 7], [2, 7, 3], [0, 4, 6], [0, 6, 2], [1, 3, 7], [1, 7, 5]])
BOX_CORNERS = np.array([[-1 if not i >> axis & 1 else 1 for axis in range(3)] for i in range(8)])


def turns(angles, axis):
    """Matrices of shape (n, 3, 3) that turn about an axis."""
    matrices = np.zeros((len(angles), 3, 3))
    a, b = [other for other in range(3) if other != axis]
    matrices[:, axis, axis] = 1
    matrices[:, a, a] = matrices[:, b, b] = np.cos(angles)
    matrices[:, a, b] = -np.sin(angles)
    matrices[:, b, a] = np.sin(angles)
    return matrices


def boxes(halves, centers, matrices):
    corners = BOX_CORNERS[None] * halves[:, None]
    corners = np.einsum("nij,nkj->nki", matrices, corners) + centers[:, None]
    return corners[:, BOX_TRIANGLES].reshape(-1, 3, 3).astype(np.float32)


def piled_boxes(count):
    """Flat boxes on top of each other, each turned about z; no two touch."""
    n = max(count // 12, 1)
    random = np.random.default_rng(1)
    side = np.sqrt(n)
    halves = 0.24 + 0.8 * random.random((n, 3))
    halves[:, 2] = 0.01
    centers = random.random((n, 3)) * side
    # Those above the same place are 0.05 apart on average.
    centers[:, 2] = 0.05 * random.permutation(n)
    return boxes(halves, centers, turns(2 * np.pi * random.random(n), 2))


def interpenetrating_boxes(count):
    """Boxes of all attitudes that pierce each other."""
    n = max(count // 12, 1)
    random = np.random.default_rng(2)
    side = np.sqrt(n)
    centers = random.random((n, 3)) * [side, side, 6]
    matrices = turns(2 * np.pi * random.random(n), 2) @ turns(2 * np.pi * random.random(n), 0)
    return boxes(0.24 + 0.8 * random.random((n, 3)), centers, matrices)


def spheres(count):
    """Overlapping spheres of 2,400 triangles, their poles on top."""
    around, up = 48, 26
    n = max(count // (2 * around * (up - 1)), 1)
    random = np.random.default_rng(3)
    longitude = 2 * np.pi * np.arange(around + 1) / around
    latitude = np.pi * np.arange(up + 1) / up
    ring = np.sin(latitude)[:, None]
    grid = np.stack([ring * np.cos(longitude), ring * np.sin(longitude),
                     np.broadcast_to(np.cos(latitude)[:, None], (up + 1, around + 1))], axis=-1)
    # The seam is one line of points.
    grid[:, -1] = grid[:, 0]
    grid[0], grid[-1] = [0, 0, 1], [0, 0, -1]
    a, b, c, d = grid[:-1, :-1], grid[1:, :-1], grid[1:, 1:], grid[:-1, 1:]
    unit = np.concatenate([np.stack([a, b, c], axis=2)[:-1].reshape(-1, 3, 3),
                           np.stack([a, c, d], axis=2)[1:].reshape(-1, 3, 3)])
    centers = random.random((n, 3)) * [1.5 * np.sqrt(n), 1.5 * np.sqrt(n), 4]
    radii = 0.4 + 0.8 * random.random(n)
    placed = unit[None] * radii[:, None, None, None] + centers[:, None, None]
    return placed.reshape(-1, 3, 3).astype(np.float32)


def terrain(count):
    """Hills over a square grid, seen aslant: they hide each other."""
    n = max(int(np.sqrt(count / 2)), 2)
    x, y = np.meshgrid(np.arange(n + 1.0), np.arange(n + 1.0), indexing="ij")
    z = 3 * np.sin(x / 7) * np.cos(y / 9) + 0.4 * np.sin(x * 1.3 + y * 0.7)
    points = np.stack([x, y + 0.2 * z, z - 0.9 * y], axis=-1)
    a, b, c, d = points[:-1, :-1], points[1:, :-1], points[1:, 1:], points[:-1, 1:]
    triangles = np.concatenate([np.stack([a, b, c], axis=2), np.stack([a, c, d], axis=2)])
    return triangles.reshape(-1, 3, 3).astype(np.float32)


MODELS = {"piled_boxes": piled_boxes, "interpenetrating_boxes": interpenetrating_boxes,
          "spheres": spheres, "terrain": terrain}


def write_stl(path, triangles):
    record = np.zeros(len(triangles), dtype=[("normal", "<f4", 3), ("corners", "<f4", (3, 3)),
                                             ("attribute", "<u2")])
    record["corners"] = triangles
    with open(path, "wb") as stream:
        stream.write(b"dxf2d sample model".ljust(80))
        stream.write(np.uint32(len(triangles)).tobytes())
        stream.write(record.tobytes())
