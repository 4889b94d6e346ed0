"""Random scenes, each from a seed: valid scene files that stress every rule of the drawing."""

import math
import random

from random_labels import random_label
from random_sets import near, random_coordinate, random_set

GRAPHIC_NAMES = ["g", "g", "h", "k", "G", "ö", "中", "\U0001f600"]
OBJECT_IDS = ["A", "B", "C", "ä", " "]


def random_scene(seed):
    """The same scene for the same seed. The content of a scene file, for `json.dump`."""
    rng = random.Random(seed)
    scene = {"nodes": [tree(rng, rng.choice([0, 0, 1, 1, 2, 3])) for _ in range(rng.randint(1, 4))]}
    if rng.random() < 0.02:
        scene["nodes"] = []
    if rng.random() < 0.1:
        scene["nodes"].append(chain(rng))
    if rng.random() < 0.1:
        scene["nodes"].append(outgrown(rng))
    if rng.random() < 0.25:
        scene["nodes"] += instances(rng)
    if rng.random() < 0.5:
        scene["format"] = "ktscene"
        scene["version"] = 1
    return scene


def tree(rng, depth):
    if rng.random() < 0.06:
        return {"lod": level_of_detail(rng, depth)}
    node = content(rng)
    if depth > 0:
        node["children"] = [tree(rng, depth - 1) for _ in range(rng.randint(0, 3))]
    return node


def level_of_detail(rng, depth):
    lod = {"levels": [tree(rng, max(depth - 1, 0)) for _ in range(rng.randint(0, 2))]}
    if rng.random() < 0.7:
        lod["ranges"] = [random_coordinate(rng) for _ in range(rng.randint(0, 3))]
    return lod


def content(rng):
    node = names(rng)
    if rng.random() < 0.55:
        node["matrix"] = random_matrix(rng)
    if rng.random() < 0.25:
        node["color"] = random_color(rng)
    if rng.random() < 0.7:
        node["geometry"] = [geometry(rng) for _ in range(rng.choice([0, 1, 1, 1, 1, 2, 3]))]
    if rng.random() < 0.3:
        node["label"] = random_label(rng)
    if rng.random() < 0.1:
        node["bounds"] = {"min": [random_coordinate(rng) for _ in range(3)],
                          "max": [random_coordinate(rng) for _ in range(3)]}
    return node


def names(rng):
    node = {}
    if rng.random() < 0.7:
        node["graphicName"] = rng.choice(GRAPHIC_NAMES)
    if rng.random() < 0.6:
        node["objectId"] = rng.choice(OBJECT_IDS)
    if rng.random() < 0.55:
        node["realObjectId"] = rng.choice(["R", "S", "ü"])
    for key in ("graphicName", "objectId", "realObjectId"):
        if rng.random() < 0.04:
            node[key] = ""
    if rng.random() < 0.1:
        node["item"] = rng.random() < 0.3
    return node


def geometry(rng):
    kind = rng.random()
    if kind < 0.06:
        return {"box": [size(rng) for _ in range(3)]}
    if kind < 0.09:
        return {"cylinder": [size(rng), size(rng)]}
    coords, indices = random_set(rng)
    shape = {"coords": coords, "indices": indices}
    if kind < 0.3:
        return {"lineSet": shape}
    if rng.random() < 0.3:
        shape["reverseOrientation"] = rng.random() < 0.7
    if rng.random() < 0.3:
        shape["closedSurface"] = rng.random() < 0.5
    return {"faceSet": shape}


def size(rng):
    return rng.choice([1, 2, 3.5, 0.1, 1e-8, 1e15, rng.uniform(0.1, 9)])


def random_color(rng):
    kind = rng.random()
    if kind < 0.4:
        return [rng.choice([0, 0.5, 1]) for _ in range(3)]
    if kind < 0.7:
        return [rng.choice([0, 0.15, 0.075, 0.25, 0.33, 0.464, 0.65, 0.75, 0.825, 0.0375, 1])
                for _ in range(3)]
    if kind < 0.8:
        return [rng.random()] * 3
    if kind < 0.85:
        return [0, 0.15, rng.choice([0.0375, 0.05, 0.09375, 0.1125, 0.5, 0.75])]
    return [rng.random() for _ in range(3)]


def rows(x, y, z, move=(0, 0, 0)):
    return [*x, 0, *y, 0, *z, 0, *move, 1]


def translation(rng):
    return [random_coordinate(rng) for _ in range(3)]


def about_x(angle):
    c, s = math.cos(angle), math.sin(angle)
    return (1, 0, 0), (0, c, s), (0, -s, c)


def about_y(angle):
    c, s = math.cos(angle), math.sin(angle)
    return (c, 0, -s), (0, 1, 0), (s, 0, c)


def about_z(angle):
    c, s = math.cos(angle), math.sin(angle)
    return (c, s, 0), (-s, c, 0), (0, 0, 1)


def quarter(rng):
    c, s = rng.choice([(1, 0), (0, 1), (-1, 0), (0, -1)])
    axes = [((c, s, 0), (-s, c, 0), (0, 0, 1)), ((1, 0, 0), (0, c, s), (0, -s, c)),
            ((c, 0, -s), (0, 1, 0), (s, 0, c))]
    return rng.choice(axes[:1] * 3 + axes)


def turned(rng):
    angle = rng.choice([near(rng, 0.001), -near(rng, 0.001), 0.5, 1e-9, math.pi, -2.5,
                        rng.uniform(-4, 4)])
    return about_z(angle)


def tilted(rng):
    angle = near(rng, rng.choice([0.03, 0.01, 0.01, 0.03, 0.02, math.pi / 2, math.pi, 1.0]))
    return rng.choice([about_x, about_y])(rng.choice([angle, -angle]))


def mirrored(rng):
    signs = [rng.choice([1, -1, -1, -0.0 - 1]) for _ in range(3)]
    return (signs[0], 0, 0), (0, signs[1], 0), (0, 0, signs[2])


def singular(rng):
    result = [[1, 0, 0], [0, 1, 0], [0, 0, 1]]
    row = rng.randrange(3)
    result[row] = rng.choice([[0, 0, 0], list(result[row - 1]), [-0.0, 0, -0.0],
                              [-v for v in result[row - 1]]])
    return result


def scaled(rng):
    factor = rng.choice([2, 0.5, 3, 1e-3, 1e6, 1e15, 1e-15, 1e-200])
    if rng.random() < 0.6:
        return (factor, 0, 0), (0, factor, 0), (0, 0, factor)
    return (factor, 0, 0), (0, 1, 0), (0, 0, rng.choice([1, -2]))


def anything(rng):
    return [[random_coordinate(rng) for _ in range(3)] for _ in range(3)]


def sheared(rng):
    return (1, 0, 0), (rng.choice([1, 0.5, -2]), 1, 0), (rng.choice([0, 0.02, 0.4]), 0, 1)


def swapped(rng):
    """Half turns about an axis between two others, and mirrors across one."""
    result = [(0, 1, 0), (1, 0, 0), (0, 0, rng.choice([-1, 1]))]
    rng.shuffle(result)
    return result


MATRICES = [quarter, quarter, turned, turned, tilted, tilted, mirrored, singular, scaled, scaled,
            anything, sheared, swapped]


def random_matrix(rng):
    if rng.random() < 0.35:
        return rows((1, 0, 0), (0, 1, 0), (0, 0, 1), translation(rng))
    move = translation(rng) if rng.random() < 0.6 else (0, 0, 0)
    return rows(*rng.choice(MATRICES)(rng), move)


def instances(rng):
    """Nodes that share one graphic, each placed a little differently."""
    first = content(rng)
    first.update({"graphicName": "shared", "realObjectId": "R", "objectId": "A"})
    first.pop("color", None)
    result = [first]
    for _ in range(rng.randint(1, 4)):
        node = names(rng)
        node["graphicName"] = "shared"
        node["realObjectId"] = rng.choice(["R", "S", "R", ""])
        node["matrix"] = random_matrix(rng)
        node["geometry"] = [geometry(rng)]
        if rng.random() < 0.2:
            node["color"] = random_color(rng)
        if rng.random() < 0.3:
            node["children"] = [tree(rng, 0)]
        result.append(node)
    return result


def chain(rng):
    """Nodes one below the other, whose transforms may outgrow what a double holds."""
    matrix = random_matrix(rng)
    grow = rng.choice([None, 1e15, 1e10, -1e12, 1e-12])
    node = content(rng)
    for _ in range(rng.choice([5, 22, 40, 120])):
        above = names(rng) if rng.random() < 0.4 else {}
        if grow is not None:
            axis = (rng.choice([grow, grow, 1]), 0, 0)
            above["matrix"] = rows(axis, (0, grow, 0), (0, 0, grow), translation(rng))
        elif rng.random() < 0.5:
            above["matrix"] = matrix
        if rng.random() < 0.2:
            above["geometry"] = [geometry(rng)]
        above["children"] = [node]
        node = above
    return node


def outgrown(rng):
    """Geometry of which some points stay finite and some do not once they are placed."""
    factor = rng.choice([1e15, -1e15])
    count = rng.randint(3, 7)
    coords = [rng.choice([0, 1, -2, 3, 1e6, 1e9, -1e12, 1e15]) for _ in range(3 * count)]
    indices = []
    for _ in range(rng.randint(1, 4)):
        indices += [rng.randrange(count) for _ in range(rng.randint(3, 5))]
        indices.append(rng.choice([-7, -6, -5, -4, -3]))
    shape = {rng.choice(["faceSet", "lineSet"]): {"coords": coords, "indices": indices}}
    node = {"graphicName": "g", "objectId": "A", "matrix": random_matrix(rng), "geometry": [shape]}
    for _ in range(rng.choice([19, 20, 20, 20, 21])):
        node = {"matrix": rows((factor, 0, 0), (0, factor, 0), (0, 0, abs(factor)),
                               translation(rng)), "children": [node]}
    if rng.random() < 0.3:
        node["realObjectId"] = "R"
    return node
