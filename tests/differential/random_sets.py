"""Random face sets and line sets: (coords, indices) that stress every rule for runs and outlines.

Coordinates mostly lie on a small grid, so that points coincide, segments repeat and faces are
coplanar far more often than in real scenes.
"""

import math

CODES = [-7, -7, -7, -6, -5, -5, -4, -3, -2, -1, -8, -100, -2147483648]


def random_coordinate(rng):
    kind = rng.random()
    if kind < 0.72:
        return rng.randint(-3, 3)
    if kind < 0.82:
        return rng.randint(-6, 6) / 2
    if kind < 0.87:
        return -0.0
    if kind < 0.93:
        return rng.uniform(-5, 5)
    if kind < 0.96:
        return rng.choice([1e15, -1e15, 999999999999999.9, 1e-7, -4e-7, 5e-7, -1e-300, 5e-324])
    return round(rng.uniform(-2000, 2000), 3)


def grid_coordinate(rng):
    return rng.randint(-2, 2)


def random_points(rng, count):
    pick = grid_coordinate if rng.random() < 0.6 else random_coordinate
    points = [[pick(rng), pick(rng), pick(rng)] for _ in range(count)]
    if rng.random() < 0.4:
        level = rng.randint(-1, 1)
        for point in points:
            point[2] = level
    for _ in range(rng.choice([0, 0, 1, 3])):
        if points:
            points[rng.randrange(count)] = list(rng.choice(points))
    return points


def flat(points):
    return [value for point in points for value in point]


def noise(rng):
    """Anything at all for indices."""
    count = rng.randint(1, 8)
    indices = []
    for _ in range(rng.randint(1, 30)):
        if rng.random() < 0.3:
            indices.append(rng.choice(CODES))
        else:
            indices.append(rng.randint(-9 if rng.random() < 0.1 else 0,
                                       count if rng.random() < 0.1 else count - 1))
    return flat(random_points(rng, count)), indices


def runs(rng):
    """Runs that are mostly well formed, now and then too short, too long or wrong in one entry."""
    count = rng.randint(3, 12)
    indices = []
    for _ in range(rng.randint(1, 8)):
        code = rng.choice(CODES)
        length = rng.choice([0, 1, 2, 2, 3, 3, 3, 4, 5, 6, 7, 9])
        run = [rng.randrange(count) for _ in range(length)]
        if run and rng.random() < 0.12:
            run[rng.randrange(len(run))] = rng.choice(
                [-7, -7, -1, -5, -6, -2, -9, count, count + 5, 2147483647])
        indices += run + [code]
    if rng.random() < 0.15:
        indices.pop()
    if rng.random() < 0.1:
        indices = indices[rng.randrange(3):]
    return flat(random_points(rng, count)), indices


def height_field(rng):
    """A tessellated patch over a grid, welded or with its points repeated for each face."""
    across, along = rng.randint(1, 4), rng.randint(1, 3)
    heights = rng.choice([[0], [0, 1], [0, 0, 0, 2], [-1, 0, 1]])
    points = [[x, y, rng.choice(heights)] for y in range(along + 1) for x in range(across + 1)]
    quads = []
    for y in range(along):
        for x in range(across):
            a = y * (across + 1) + x
            quads.append([a, a + 1, a + across + 2, a + across + 1])
    for quad in quads:
        if rng.random() < 0.15:
            quad.reverse()
    quads = [quad for quad in quads if rng.random() < 0.9]
    style = rng.choice(["quads", "triangles", "list", "fans", "strips"])
    if rng.random() < 0.3:
        points, quads = unshared(points, quads)
    return flat(points), quad_runs(quads, style)


def unshared(points, polygons):
    own = [points[entry] for polygon in polygons for entry in polygon]
    numbers = iter(range(len(own)))
    return own, [[next(numbers) for _ in polygon] for polygon in polygons]


def quad_runs(quads, style):
    indices = []
    for a, b, c, d in quads:
        if style == "quads":
            indices += [a, b, c, d, -7]
        elif style == "triangles":
            indices += [a, b, c, -7, a, c, d, -7]
        elif style == "list":
            indices += [a, b, c, a, c, d]
        elif style == "fans":
            indices += [a, b, c, d, -4]
        else:
            indices += [a, b, d, c, -3]
    return indices + [-5] if style == "list" else indices


def prism(rng):
    """A closed body, sometimes with a face missing, doubled or turned round."""
    corners = rng.choice([3, 4, 4, 5, 6, 8])
    if corners == 4:
        rim = [(0, 0), (2, 0), (2, 1), (0, 1)]
    else:
        rim = [(2 * math.cos(2 * math.pi * k / corners), 2 * math.sin(2 * math.pi * k / corners))
               for k in range(corners)]
    shift = rng.choice([0, 0, 0.5, 1e-4, 1])
    scale = rng.choice([1, 1, 0.5, 0])
    points = [[x, y, 0] for x, y in rim]
    points += [[x * scale + shift, y * scale, 3] for x, y in rim]
    faces = [list(range(corners))[::-1], list(range(corners, 2 * corners))]
    for k in range(corners):
        after = (k + 1) % corners
        faces.append([k, after, corners + after, corners + k])
    if rng.random() < 0.3:
        faces.pop(rng.randrange(len(faces)))
    if rng.random() < 0.3:
        faces.append(list(rng.choice(faces)))
    if rng.random() < 0.3:
        rng.choice(faces).reverse()
    rng.shuffle(faces)
    if rng.random() < 0.2:
        points, faces = unshared(points, faces)
    return flat(points), [entry for face in faces for entry in (*face, -7)]


def near(rng, value):
    return value + rng.choice([0.0, 1e-17, -1e-17, 1e-12, -1e-12, 1e-6, -1e-6, 0.01, -0.01]) * (
        1.0 if value == 0.0 else abs(value))


def hinge(rng):
    """Two faces on one steep edge, about as far apart as the tolerances of the outline are."""
    lean = rng.choice([1e-4, 3e-4, 5e-4, 0.001, 0.01])
    tall = 1.0 / lean
    middle = rng.choice([math.pi / 2, 0.0, math.pi, rng.uniform(0, 2 * math.pi)])
    apart = near(rng, rng.choice([0.04, 0.04, 0.02, math.pi - 0.04, math.pi]))
    first, second = middle - apart / 2, middle + apart / 2
    points = [[0, 0, 0], [lean * tall, 0, tall],
              [-math.sin(first), math.cos(first), 0], [math.sin(second), -math.cos(second), 0]]
    return flat(points), [0, 1, 2, -7, 1, 0, 3, -7]


def tilted_pair(rng):
    """Two faces on one level edge whose normals' z components differ by about the tolerance."""
    dz = near(rng, 0.001)
    share = rng.choice([0.5, 0.0, 1.0, rng.random()])
    ups = [dz * share, -dz * (1.0 - share)]
    points = [[0, 0, 0], [1, 0, 0]]
    for up in ups:
        points.append([0.5, -up, math.sqrt(1.0 - up * up) * rng.choice([1, 1, -1])])
    return flat(points), [0, 1, 2, -7, 1, 0, 3, -7]


def book(rng):
    """Faces around one edge: one, two, three or more pages."""
    points = [[0, 0, 0], [0, 2, rng.randint(0, 1)]]
    indices = []
    for page in range(rng.randint(1, 4)):
        points.append([rng.choice([-2, -1, 1, 2]), rng.randint(-1, 2), rng.randint(-1, 1)])
        edge = [0, 1] if rng.random() < 0.5 else [1, 0]
        indices += edge + [page + 2, -7]
    if rng.random() < 0.3:
        indices += rng.choice([[0, 1, -1], [1, 0, -1], [1, 0, -6], [0, 0, -1], [0, 1, 0, -1]])
    return flat(points), indices


def lines(rng):
    count = rng.randint(2, 10)
    indices = []
    for _ in range(rng.randint(1, 5)):
        run = [rng.randrange(count) for _ in range(rng.randint(1, 7))]
        indices += run + [rng.choice([-6, -6, -1, -1, -2])]
    return flat(random_points(rng, count)), indices


def upright(rng):
    """Lines along the z axis, which a plan does not show."""
    points = [[1, 1, 0], [1, 1, 2], [1, 1, 5], [2, 1, 0]]
    return flat(points), [0, 1, 2, -6] + ([0, 3, -1] if rng.random() < 0.3 else [])


def empty(rng):
    return rng.choice([([], [0, 1, 2, -7]), ([0, 0, 0], []), ([], []), ([1, 2], [0, 0, 0, -7]),
                       ([0, 0, 0, 1, 0, 0, 0, 1, 0], [0, 1, 2, -2])])


KINDS = [noise, runs, runs, runs, height_field, height_field, prism, prism, hinge, tilted_pair,
         book, lines, lines, upright, empty]


def random_set(rng):
    coords, indices = rng.choice(KINDS)(rng)
    coords = list(coords)
    if rng.random() < 0.12:
        coords += [rng.randint(-3, 3) for _ in range(rng.randint(1, 2))]
    if rng.random() < 0.04:
        indices = indices + [0, 1, 2, 3, -5][: rng.randint(1, 5)]
    return coords, list(indices)
