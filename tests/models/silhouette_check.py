"""Holds the drawing of one model against the silhouette of its triangles.

The silhouette is the outline of the union of all triangles, projected onto the sheet, as shapely
finds it; assimp reads the model once more for it, apart from the program under test.
"""

from itertools import product

import ezdxf
import numpy as np
from shapely.geometry import LineString, MultiLineString, Polygon
from shapely.ops import unary_union
from shapely.prepared import prep
from shapely.strtree import STRtree

# Share of the silhouette's length that the drawing has to cover.
COVERED = 0.98
# Of the model's larger side in plan: how far a drawn line may be off.
LINE_TOLERANCE = 2e-4
# Of the same: holes narrower than this are cracks between triangles.
CRACK_WIDTH = 1e-6
# Of the object's larger side in plan: ends of segments nearer than this are one.
SEGMENT_TOLERANCE = 1e-6
# Drawings have six digits after the point.
LAST_DIGIT = 1e-6
# Triangles above which a model is left to the other checks; the union takes long.
MOST_TRIANGLES = 20_000


def complaints_about(drawing, triangles):
    """Sentences about what is wrong with a drawing (a path); none if all is well.

    triangles: shape (n, 3, 2), in drawing units; lines of the model as triangles without area.
    """
    size = float(np.ptp(triangles.reshape(-1, 2), axis=0).max())
    if size == 0:
        return []
    segments = DrawnSegments(drawing)
    shape = union_of(triangles, size)
    return [*uncovered(shape, segments.placed, size),
            *outside(shape, triangles, segments.placed, size),
            *doubled(segments.by_object)]


class DrawnSegments:
    """placed: shape (n, 2, 2), where the inserts put them; by_object: a list of such arrays, one
    for each block that objects share."""

    def __init__(self, path):
        self._document = ezdxf.readfile(path)
        self._blocks = {}
        inserts = self._document.modelspace().query("INSERT")
        placed = [self._moved(self._segments_of(insert.dxf.name), insert.matrix44())
                  for insert in inserts]
        self.placed = np.concatenate(placed) if placed else np.empty((0, 2, 2))
        self.by_object = [self._segments_of(name)
                          for name in {insert.dxf.name for insert in inserts}]

    def _segments_of(self, name):
        if name not in self._blocks:
            parts = [np.empty((0, 2, 2))]
            block = self._document.blocks.get(name)
            for polyline in block.query("POLYLINE"):
                points = np.array([vertex.dxf.location.vec2 for vertex in polyline.vertices])
                parts.append(np.stack([points[:-1], points[1:]], axis=1))
            for insert in block.query("INSERT"):
                parts.append(self._moved(self._segments_of(insert.dxf.name), insert.matrix44()))
            self._blocks[name] = np.concatenate(parts)
        return self._blocks[name]

    @staticmethod
    def _moved(segments, matrix):
        points = [(x, y, 0) for x, y in segments.reshape(-1, 2)]
        moved = np.array([(p.x, p.y) for p in matrix.transform_vertices(points)])
        return moved.reshape(-1, 2, 2)


def union_of(triangles, size):
    """The union of the triangles that are wider than a line."""
    a, b, c = triangles[:, 0], triangles[:, 1], triangles[:, 2]
    areas = np.abs((b[:, 0] - a[:, 0]) * (c[:, 1] - a[:, 1]) -
                   (b[:, 1] - a[:, 1]) * (c[:, 0] - a[:, 0])) / 2
    kept = triangles[areas > 1e-12 * size * size]
    union = unary_union([Polygon(corners) for corners in kept])
    # Where roundings leave lines behind, the area is what counts.
    return union if union.geom_type != "GeometryCollection" else union.buffer(0)


def uncovered(shape, segments, size):
    rings = [ring for ring in rings_of(shape) if is_wide(ring, size)]
    if not rings:
        return
    boundary = MultiLineString(rings)
    # Only what reaches the boundary, as this takes long.
    reach = prep(boundary.buffer(LINE_TOLERANCE * size))
    drawn = near_lines([s for s in segments if reach.intersects(LineString(s))],
                       LINE_TOLERANCE * size)
    share = 1 - boundary.difference(drawn).length / boundary.length
    if share < COVERED:
        yield f"draws {100 * share:.1f} % of the silhouette"


def rings_of(shape):
    for polygon in getattr(shape, "geoms", [shape] if not shape.is_empty else []):
        yield polygon.exterior
        yield from polygon.interiors


def is_wide(ring, size):
    """False for the cracks that roundings leave between triangles that meet."""
    return Polygon(ring).area > CRACK_WIDTH * size * ring.length


def outside(shape, triangles, segments, size):
    # Faces on edge, and lines of the model, show as lines, which the union does not hold.
    flat = [LineString(corners) for corners in triangles]
    room = prep(shape.buffer(LINE_TOLERANCE * size))
    beyond = [line for line in map(LineString, segments)
              if line.length > 0 and not room.contains(line)]
    if not beyond:
        return
    tree = STRtree(flat)
    for line in beyond:
        near = tree.query(line.buffer(LINE_TOLERANCE * size))
        if not unary_union([edge.buffer(LINE_TOLERANCE * size) for edge in near]).contains(line):
            yield f"draws outside the model, from {line.coords[0]} to {line.coords[1]}"
            return


def near_lines(segments, distance):
    return MultiLineString([LineString(s) for s in segments]).buffer(distance)


def doubled(objects):
    for segments in objects:
        # Points of an object are one within a share of its own extent.
        size = np.ptp(segments.reshape(-1, 2), axis=0).max() if len(segments) else 0
        twice = count_twice(segments, max(SEGMENT_TOLERANCE * size, LAST_DIGIT))
        if twice:
            yield f"draws {twice} segments of one object twice"
            return


def count_twice(segments, tolerance):
    """How many segments have the ends of another: all whose ends are half the tolerance apart, none
    beyond the tolerance, along either axis."""
    cells = np.concatenate([segments, segments[:, ::-1]]) / tolerance
    # Near points fall into one cell of at least one of the grids that are half a cell apart.
    shifts = np.array(list(product((0, 0.5), repeat=4))).reshape(-1, 2, 2)
    most = 0
    for shift in shifts:
        keys = np.floor(cells + shift).astype(np.int64).reshape(-1, 4)
        keys = keys[(keys[:, :2] != keys[:, 2:]).any(axis=1)]
        most = max(most, len(keys) - len(np.unique(keys, axis=0)))
    # Each is there both ways round.
    return (most + 1) // 2
