"""Holds a drawing with hidden lines removed against the triangles of its model.

Points of what is drawn must lie on an edge, or a line along which faces cross, that can be seen
there; points of edges that can be seen must be drawn.
"""

import numpy as np

from brute_force import Cover, near_pairs
from model_edges import ModelEdges

# Of the model's diagonal: how far drawn lines may be off, on top of a drawing's last digit.
REACH = 3e-6
LAST_DIGIT = 1e-6
# Of the same: what is as near to a face as this may touch it.
TOUCH = 1e-6


def distances(places, segments):
    """From each place to its segment, and where on the segment, both in plan."""
    a, along = segments[:, 0, :2], segments[:, 1, :2] - segments[:, 0, :2]
    squared = np.maximum(np.einsum("ij,ij->i", along, along), 1e-300)
    t = np.clip(np.einsum("ij,ij->i", places - a, along) / squared, 0, 1)
    return np.linalg.norm(places - a - t[:, None] * along, axis=1), t


def points_on(segments, count, random):
    """Points spread evenly over the length in plan, and which segments they are on."""
    length = np.linalg.norm(segments[:, 1, :2] - segments[:, 0, :2], axis=1)
    chosen = random.choice(len(segments), count, p=length / length.sum())
    t = random.random(count)[:, None]
    return segments[chosen, 0] + t * (segments[chosen, 1] - segments[chosen, 0])


class VisibilityCheck:
    def __init__(self, objects, triangles, sides, drawn, seed=7):
        """triangles: (n, 3, 3), as seen; objects: (n,); sides: see ModelEdges; drawn:
        segments (m, 2, 2)."""
        self.drawn = drawn
        self.random = np.random.default_rng(seed)
        corners = triangles.reshape(-1, 3)
        diagonal = float(np.linalg.norm(corners.max(axis=0) - corners.min(axis=0)))
        self.reach = REACH * diagonal + LAST_DIGIT
        self.edges = ModelEdges(objects, triangles, sides, 1e-9 * diagonal)
        self.cover = Cover(triangles, self.reach, TOUCH * diagonal + LAST_DIGIT)

    def wrongly_drawn(self, count):
        """Of `count` points of the drawing, those that do not belong into it."""
        places = points_on(self.drawn, count, self.random)
        edges = self.edges.ends[self.edges.may]
        right = np.zeros(count, bool)
        low, high = edges[..., :2].min(axis=1), edges[..., :2].max(axis=1)
        for place, edge in near_pairs(places, low - self.reach, high + self.reach):
            distance, t = distances(places[place], edges[edge])
            near = distance <= self.reach
            place, edge, t = place[near], edge[near], t[near][:, None]
            points = edges[edge, 0] + t * (edges[edge, 1] - edges[edge, 0])
            hidden, _ = self.cover.judge(points)
            right[place[~hidden]] = True
        rest = np.flatnonzero(~right)
        right[rest] = self.cover.on_piercing(places[rest], self.reach)
        return places[~right]

    def not_drawn(self, count):
        """Of `count` points of edges that can be seen, those that the drawing lacks; and how many
        there were, which is fewer where little can be seen."""
        edges = self.edges.ends[self.edges.must]
        expected = []
        for _ in range(40):
            if len(edges) == 0 or sum(map(len, expected)) >= count:
                break
            points = points_on(edges, 2 * count, self.random)
            expected.append(points[self.cover.judge(points)[1]])
        places = np.concatenate([np.empty((0, 3)), *expected])[:count, :2]
        found = np.zeros(len(places), bool)
        low, high = self.drawn.min(axis=1), self.drawn.max(axis=1)
        for place, line in near_pairs(places, low - self.reach, high + self.reach):
            found[place[distances(places[place], self.drawn[line])[0] <= self.reach]] = True
        return places[~found], len(places)
