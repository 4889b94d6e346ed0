"""The edges of triangles that a drawing may, or must, show."""

import numpy as np

from brute_force import cross, plan_widths


class ModelEdges:
    """ends: shape (n, 2, 3), longer in plan than `plan`; must: those that are certainly borders,
    silhouettes or creases; may: those that are so for some reading of the limits.

    sides: those of polygons, shape (m, 7), the object and both ends; edges inside of bent polygons
    depend on how these are cut and are no `must`."""

    CREASE = 30.0

    def __init__(self, objects, triangles, sides_of_polygons, plan):
        corners = np.concatenate([np.repeat(objects, 3)[:, None], triangles.reshape(-1, 3)],
                                 axis=1)
        polygon_ends = np.concatenate([sides_of_polygons[:, [0, 1, 2, 3]],
                                       sides_of_polygons[:, [0, 4, 5, 6]]])
        places, numbers = np.unique(np.concatenate([corners, polygon_ends]) + 0.0, axis=0,
                                    return_inverse=True)
        given = np.sort(numbers[len(corners):].reshape(2, -1).T, axis=1)
        numbers = numbers[:len(corners)].reshape(-1, 3)
        sides = np.concatenate([numbers[:, [i, (i + 1) % 3]] for i in range(3)])
        opposite = np.concatenate([numbers[:, (i + 2) % 3] for i in range(3)])
        face = np.tile(np.arange(len(triangles)), 3)
        sides.sort(axis=1)
        keep = sides[:, 0] != sides[:, 1]
        sides, opposite, face = sides[keep], opposite[keep], face[keep]
        order = np.lexsort((sides[:, 1], sides[:, 0]))
        sides, opposite, face = sides[order], opposite[order], face[order]
        starts = np.flatnonzero(np.any(np.diff(sides, axis=0, prepend=-1) != 0, axis=1))
        counts = np.diff(starts, append=len(sides))
        points = places[:, 1:]
        self.ends = points[sides[starts]]
        length = np.linalg.norm(self.ends[:, 1, :2] - self.ends[:, 0, :2], axis=1)
        two = np.flatnonzero(counts == 2)
        silhouette, maybe, degrees = self._judge_pairs(points, opposite, face, starts[two],
                                                       self.ends[two], plan_widths(triangles), plan)
        self.must = counts == 1
        self.may = counts != 2
        self.must[two] = silhouette | (degrees > self.CREASE + 1)
        self.may[two] = silhouette | maybe | (degrees > self.CREASE - 1)
        wide = length > 10 * plan
        # A border of a face without area is an edge of nothing.
        flat = self._area_of(triangles)[face[starts]] <= 1e-14 * self._area_of(triangles).max()
        keys = sides[starts] @ [len(places), 1]
        self.must &= wide & ~flat & np.isin(keys, given @ [len(places), 1])

    @staticmethod
    def _area_of(triangles):
        return np.linalg.norm(np.cross(triangles[:, 1] - triangles[:, 0],
                                       triangles[:, 2] - triangles[:, 0]), axis=1)

    @staticmethod
    def _judge_pairs(points, opposite, face, first, ends, widths, plan):
        """Of edges of two faces: certainly a silhouette, perhaps one, angle in degrees."""
        along = ends[:, 1] - ends[:, 0]
        away, side, wide = [], [], []
        for use in (first, first + 1):
            to = points[opposite[use]] - ends[:, 0]
            share = np.einsum("ij,ij->i", to, along) / np.einsum("ij,ij->i", along, along)
            away.append(to - share[:, None] * along)
            side.append(np.sign(cross(along, to)))
            wide.append(widths[face[use]])
        with np.errstate(divide="ignore", invalid="ignore"):
            cosine = np.einsum("ij,ij->i", away[0], away[1]) / (
                np.linalg.norm(away[0], axis=1) * np.linalg.norm(away[1], axis=1))
        degrees = 180 - np.degrees(np.arccos(np.clip(np.nan_to_num(cosine, nan=-1), -1, 1)))
        least = np.minimum(*wide)
        same = side[0] == side[1]
        return same & (least > 10 * plan), same | (least <= 10 * plan), degrees
