"""Analytic shapes as the face sets that stand in for them: (points, indices)."""

import math

POLYGON = -7


def box(a, b, c):
    corners = [(-a / 2, -b / 2), (a / 2, -b / 2), (a / 2, b / 2), (-a / 2, b / 2)]
    points = [(x, y, 0.0) for x, y in corners] + [(x, y, c) for x, y in corners]
    polygons = [(3, 2, 1, 0), (4, 5, 6, 7), (0, 1, 5, 4), (1, 2, 6, 5), (2, 3, 7, 6), (3, 0, 4, 7)]
    return points, closed_runs(polygons)


def cylinder(r, h):
    angles = [6.283185307179586 * i / 32 for i in range(32)]
    rim = [(r * math.cos(angle), r * math.sin(angle)) for angle in angles]
    points = [(x, y, 0.0) for x, y in rim] + [(x, y, h) for x, y in rim]
    polygons = [tuple(range(31, -1, -1)), tuple(range(32, 64))]
    for i in range(32):
        after = (i + 1) % 32
        polygons.append((i, after, 32 + after, 32 + i))
    return points, closed_runs(polygons)


def closed_runs(polygons):
    return [entry for polygon in polygons for entry in (*polygon, POLYGON)]
