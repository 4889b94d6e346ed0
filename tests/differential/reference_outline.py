"""The lines of face sets and line sets that a plan shows; the reference implementation of the rules.

Ordered sets are sorted anew where they are visited and every chain starts its scan again after each
link; nothing here is clever, so that it can be read against the rules.
"""

import itertools

from host_arithmetic import ORIGIN, all_finite, angle_between, polygon_normal

POLYGON, LINE_STRIP, TRIANGLES, FAN, STRIP, SEGMENT = -7, -6, -5, -4, -3, -1

# Difference of two normals' z components above which two faces do not both stand edge-on.
DZ_TOLERANCE = 0.001
# Radians between two edge-on faces above which their common edge is drawn.
CREASE_ANGLE = 0.04


def face_outline(points, indices, reverse_orientation):
    """Chains of (x, y) points; none when the set has no outline."""
    points, indices = weld(points, indices)
    usable = [all_finite(point) for point in points]
    flat_polygons, explicit = expand(indices, usable, long_segments=False)
    polygons = split(flat_polygons)
    normals = [normal_or_zero(points, usable, polygon, not reverse_orientation)
               for polygon in polygons]
    outline = explicit | {edge for edge, faces in adjacency(polygons, usable).items()
                          if is_drawn(sorted(faces), normals)}
    return chains(distinct(outline, points), points)


def line_outline(points, indices):
    """As face_outline, but without regard to how polygons face."""
    points, indices = weld(points, indices)
    usable = [all_finite(point) for point in points]
    flat_polygons, explicit = expand(indices, usable, long_segments=True)
    outline = explicit | {edge for edge, faces in adjacency(split(flat_polygons), usable).items()
                          if len(faces) == 1}
    return chains(distinct(outline, points), points)


def weld(points, indices):
    """Equal points become one, the first. A point that is not finite equals no other."""
    first_of = {}
    first = [first_of.setdefault(point, number) if all_finite(point) else number
             for number, point in enumerate(points)]
    dropped = list(itertools.accumulate(int(home != number) for number, home in enumerate(first)))

    def renumber(entry):
        if entry < 0:
            return entry
        if entry >= len(points):
            return entry - (dropped[-1] if dropped else 0)
        return first[entry] - dropped[first[entry]]

    kept = [point for number, point in enumerate(points) if first[number] == number]
    return kept, [renumber(entry) for entry in indices]


def expand(indices, usable, long_segments):
    """The polygons, one flat list with -7 after each, and the set of explicit edges."""
    polygons = []
    explicit = set()
    start = cursor = 0
    while cursor < len(indices):
        code = indices[cursor]
        if code >= 0:
            cursor += 1
            continue
        run = indices[start:cursor]
        for polygon in run_polygons(code, run, indices[start:]):
            polygons += polygon
            polygons.append(POLYGON)
        explicit |= {(a, b) for a, b in run_segments(code, run, long_segments)
                     if names_point(a, usable) and names_point(b, usable)}
        start = cursor + 1
        # The next two entries are never looked at as codes: every run is taken to have two.
        cursor += 3
    return polygons, explicit


def run_polygons(code, run, run_and_rest):
    if len(run) < 3:
        return []
    if code == POLYGON:
        return [run]
    if code == TRIANGLES:
        # The last group takes what follows in the list, the run's own code included.
        return [run_and_rest[k:k + 3] for k in range(0, len(run), 3)]
    if code == FAN:
        return [[run[0], run[k + 1], run[k + 2]] for k in range(len(run) - 2)]
    if code == STRIP:
        return [[run[k], run[k + (k & 1) + 1], run[k + ((k + 1) & 1) + 1]]
                for k in range(len(run) - 2)]
    return []


def run_segments(code, run, long_segments):
    if code == LINE_STRIP or (code == SEGMENT and (long_segments or len(run) == 2)):
        return list(zip(run, run[1:]))
    return []


def names_point(entry, usable):
    return 0 <= entry < len(usable) and usable[entry]


def split(flat_polygons):
    polygons = []
    current = []
    for entry in flat_polygons:
        if entry == POLYGON:
            polygons.append(current)
            current = []
        else:
            current.append(entry)
    return polygons


def normal_or_zero(points, usable, polygon, counter_clockwise_is_front):
    if not all(names_point(entry, usable) for entry in polygon):
        return ORIGIN
    corners = [points[entry] for entry in polygon]
    return polygon_normal(corners, counter_clockwise_is_front) or ORIGIN


def adjacency(polygons, usable):
    """The numbers of the polygons on each edge; an edge has its smaller point number first."""
    faces_of = {}
    for number, polygon in enumerate(polygons):
        for a, b in zip(polygon, polygon[1:] + polygon[:1]):
            if a != b and names_point(a, usable) and names_point(b, usable):
                faces_of.setdefault((min(a, b), max(a, b)), set()).add(number)
    return faces_of


def is_drawn(faces, normals):
    if len(faces) == 1:
        return True
    if len(faces) > 2:
        return False
    u, v = normals[faces[0]], normals[faces[1]]
    if u[2] * v[2] > 0.0:
        return False
    if abs(u[2] - v[2]) > DZ_TOLERANCE:
        return True
    return abs(angle_between(u, v)) > CREASE_ANGLE


def distinct(outline, points):
    """The edges in order, without those that are points in the plan or repeat a segment of it."""
    seen = set()
    kept = []
    for a, b in sorted(outline):
        p, q = points[a][:2], points[b][:2]
        segment = (min(p, q), max(p, q))
        if p != q and segment not in seen:
            seen.add(segment)
            kept.append((a, b))
    return kept


def chains(edges, points):
    """Links the edges, in their order, into chains of (x, y) points that grow at their end only."""
    edges = list(edges)
    result = []
    while edges:
        a, end = edges.pop(0)
        chain = [a, end]
        link = first_link(edges, end)
        while link is not None:
            a, b = edges.pop(link)
            end = b if a == end else a
            chain.append(end)
            link = first_link(edges, end)
        result.append([points[number][:2] for number in chain])
    return result


def first_link(edges, end):
    for position, edge in enumerate(edges):
        if end in edge:
            return position
    return None
