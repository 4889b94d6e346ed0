"""What can be seen from above, by looking at all triangles: no grid, no sweep, no shared code.

Points are arrays of shape (n, 3), triangles (m, 3, 3), the viewer is at z = +infinity. Boxes only
spare the exact look at pairs that are far apart.
"""

import numpy as np

# Pairs looked at together.
CHUNK = 2_000_000


def near_pairs(places, low, high):
    """Yields arrays of numbers (place, box) of places (n, 2) in boxes low .. high (m, 2)."""
    order = np.argsort(places[:, 0], kind="stable")
    xs = places[order, 0]
    first = np.searchsorted(xs, low[:, 0], "left")
    counts = np.searchsorted(xs, high[:, 0], "right") - first
    boxes = np.flatnonzero(counts > 0)
    ends = np.cumsum(counts[boxes])
    begin = 0
    while begin < len(boxes):
        done = ends[begin - 1] if begin else 0
        end = max(begin + 1, int(np.searchsorted(ends, done + CHUNK, "right")))
        part = boxes[begin:end]
        box = np.repeat(part, counts[part])
        offsets = np.arange(len(box)) - np.repeat(np.cumsum(counts[part]) - counts[part],
                                                  counts[part])
        place = order[first[box] + offsets]
        y = places[place, 1]
        inside = (y >= low[box, 1]) & (y <= high[box, 1])
        yield place[inside], box[inside]
        begin = end


def cross(a, b):
    return a[..., 0] * b[..., 1] - a[..., 1] * b[..., 0]


def depth_in_plan(places, triangles):
    """How far inside of its triangle's plan each place lies; negative outside."""
    with np.errstate(divide="ignore", invalid="ignore"):
        sides = []
        for i in range(3):
            a, b = triangles[:, i, :2], triangles[:, (i + 1) % 3, :2]
            sides.append(cross(b - a, places - a) / np.linalg.norm(b - a, axis=1))
        area = cross(triangles[:, 1, :2] - triangles[:, 0, :2],
                     triangles[:, 2, :2] - triangles[:, 0, :2])
        depth = np.min(np.sign(area)[:, None] * np.stack(sides, axis=1), axis=1)
    return np.where(np.isfinite(depth) & (area != 0), depth, -np.inf)


def normals(triangles):
    """Upward normals of length 1; NaN for triangles without area."""
    normal = np.cross(triangles[:, 1] - triangles[:, 0], triangles[:, 2] - triangles[:, 0])
    with np.errstate(divide="ignore", invalid="ignore"):
        normal /= np.linalg.norm(normal, axis=1)[:, None]
    return normal * np.where(normal[:, 2] < 0, -1, 1)[:, None]


def plan_widths(triangles):
    """Doubled area by longest side, both in plan."""
    a, b, c = (triangles[:, i, :2] for i in range(3))
    longest = np.max([np.linalg.norm(b - a, axis=1), np.linalg.norm(c - b, axis=1),
                      np.linalg.norm(a - c, axis=1)], axis=0)
    return np.abs(cross(b - a, c - a)) / np.maximum(longest, 1e-300)


class Cover:
    """What lies above points.

    plan, touch: within these distances, in plan and square to a face, nothing is certain.
    """

    def __init__(self, triangles, plan, touch):
        self.triangles = triangles[plan_widths(triangles) > plan * 1e-3]
        self.normals = normals(self.triangles)
        self.plan, self.touch = plan, touch
        self.low = self.triangles[..., :2].min(axis=1) - plan
        self.high = self.triangles[..., :2].max(axis=1) + plan

    def judge(self, points):
        """(hidden, visible): what of each point is certain."""
        hidden = np.zeros(len(points), bool)
        touched = np.zeros(len(points), bool)
        for point, triangle in near_pairs(points[:, :2], self.low, self.high):
            corners = self.triangles[triangle]
            depth = depth_in_plan(points[point, :2], corners)
            below = -np.einsum("ij,ij->i", points[point] - corners[:, 0], self.normals[triangle])
            hidden[point[(depth > self.plan) & (below > self.touch)]] = True
            touched[point[(depth > -self.plan) & (below > self.touch / 16)]] = True
        return hidden, ~touched & ~hidden

    def on_piercing(self, places, reach):
        """Whether the two highest faces over a place cross each other within `reach` of it."""
        found = [pairs for pairs in near_pairs(places, self.low, self.high)]
        if not found:
            return np.zeros(len(places), bool)
        point, triangle = (np.concatenate(arrays) for arrays in zip(*found))
        keep = depth_in_plan(places[point], self.triangles[triangle]) > -reach
        point, triangle = point[keep], triangle[keep]
        normal = self.normals[triangle]
        offset = places[point] - self.triangles[triangle, 0, :2]
        slopes = -normal[:, :2] / normal[:, 2:]
        height = self.triangles[triangle, 0, 2] + np.einsum("ij,ij->i", offset, slopes)
        result = np.zeros(len(places), bool)
        order = np.lexsort((-height, point))
        point, height, slopes = point[order], height[order], slopes[order]
        starts = np.flatnonzero(np.diff(point, prepend=-1))
        for begin, end in zip(starts, [*starts[1:], len(point)]):
            steep = np.linalg.norm(slopes[begin:end], axis=1)
            near = height[begin] - height[begin:end] <= (4 * reach * (steep[0] + steep) +
                                                         4 * self.touch)
            bent = np.linalg.norm(slopes[begin:end] - slopes[begin], axis=1) > 1e-3
            result[point[begin]] = bool(np.any(near & bent))
        return result
