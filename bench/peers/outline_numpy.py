#!/usr/bin/python3
"""The plan of a binary STL as DXF, in numpy alone: the same outline rule, as fast as we know how.

usage: outline_numpy.py [--sort] MODEL.stl DRAWING.dxf

  --sort  find equal points and edges by np.unique, as such scripts are usually written

What makes it fast: equal points and equal edges are found by scattering into tables by hash (the
last writer stays, the others compare themselves with it, and the few that collide go round again),
not by sorting; unit normals are computed only where the sign of z leaves a doubt; chains are ranked
by pointer doubling; vertices are written as one table of bytes.
"""
import ctypes
import sys

import numpy as np

DZ_TOLERANCE = 0.001
CREASE_ANGLE = 0.04
BY_SORTING = "--sort" in sys.argv[1:]


def read_corners(path):
    """The corners of all triangles, float32 (3 n, 3); -0 becomes 0."""
    record = np.dtype([("normal", "<f4", 3), ("corners", "<f4", (3, 3)), ("attribute", "<u2")])
    with open(path, "rb") as file:
        file.seek(80)
        count = int(np.fromfile(file, "<u4", 1)[0])
        records = np.fromfile(file, record, count)
    corners = np.empty((len(records), 3, 3), np.float32)
    np.add(records["corners"], np.float32(0), out=corners)
    return corners.reshape(-1, 3)


def table_bits(count):
    """Eight slots an entry: most entries are doubles of others, so few collide."""
    return max(8, int(count * 2).bit_length())


def representatives_by_sorting(keys):
    """As representatives, by np.unique."""
    if len(keys) > 1:
        keys = [np.unique(keys[0], return_inverse=True)[1].astype(np.uint64) << np.uint64(32)
                | keys[1]]
    _, firsts, inverse = np.unique(keys[0], return_index=True, return_inverse=True)
    return firsts.astype(np.int32)[inverse]


def representatives(keys, hashes, bits):
    """For each entry the number of one entry with equal keys, the same for all of them."""
    if BY_SORTING:
        return representatives_by_sorting(keys)
    count = len(hashes)
    table = np.empty(1 << bits, np.int32)
    numbers = np.arange(count, dtype=np.int32)
    slots = (hashes >> np.uint64(64 - bits)).astype(np.int64)
    table[slots] = numbers
    result = table[slots]
    differs = keys[0][result] != keys[0]
    for key in keys[1:]:
        differs |= key[result] != key
    left = np.flatnonzero(differs).astype(np.int32)
    while len(left):
        hashes = hashes[left] * np.uint64(0x9E3779B97F4A7C15) if len(left) < len(hashes) else hashes
        slots = (hashes >> np.uint64(64 - bits)).astype(np.int64)
        table[slots] = left
        found = table[slots]
        same = np.ones(len(left), bool)
        for key in keys:
            same &= key[found] == key[left]
        result[left[same]] = found[same]
        left = left[~same]
        hashes = hashes[~same]
    return result


def weld(corners):
    bits = corners.view(np.uint32)
    x, y, z = (np.ascontiguousarray(bits[:, axis]) for axis in range(3))
    plan = x.astype(np.uint64) << np.uint64(32) | y
    hashes = plan * np.uint64(0xD6E8FEB86659FD93)
    hashes ^= hashes >> np.uint64(32)
    hashes += z
    hashes *= np.uint64(0x9E3779B97F4A7C15)
    return representatives([plan, z], hashes, table_bits(len(x))), plan


def normals_of(corners, triangles=None):
    """Normals of any length by component, of all triangles or of some."""
    points = corners.reshape(-1, 3, 3)
    if triangles is not None:
        points = points[triangles]
    (x0, y0, z0), (x1, y1, z1), (x2, y2, z2) = (
        [points[:, corner, axis].astype(np.float64) for axis in range(3)] for corner in range(3))
    for origin, first, second in (x0, x1, x2), (y0, y1, y2), (z0, z1, z2):
        first -= origin
        second -= origin
    return y1 * z2 - z1 * y2, z1 * x2 - x1 * z2, x1 * y2 - y1 * x2


def unit_normals(corners, triangles=None):
    x, y, z = normals_of(corners, triangles)
    lengths = np.sqrt(x * x + y * y + z * z)
    lengths[lengths == 0] = 1
    return x / lengths, y / lengths, z / lengths


def normal_z(corners):
    """The z components of the normals of all triangles, of any length."""
    x = corners[:, 0].reshape(-1, 3).astype(np.float64)
    y = corners[:, 1].reshape(-1, 3).astype(np.float64)
    return (x[:, 1] - x[:, 0]) * (y[:, 2] - y[:, 0]) - (y[:, 1] - y[:, 0]) * (x[:, 2] - x[:, 0])


def silhouettes(corners, f, g, z):
    """Which of the edges between the triangles f and g are drawn."""
    drawn = np.zeros(len(f), bool)
    doubtful = np.flatnonzero(~(z[f] * z[g] > 0))
    f, g = f[doubtful], g[doubtful]
    if 2 * len(doubtful) > len(z):
        normals = unit_normals(corners)
        u, v = [n[f] for n in normals], [n[g] for n in normals]
    else:
        u, v = unit_normals(corners, f), unit_normals(corners, g)
    steep = np.abs(u[2] - v[2]) > DZ_TOLERANCE
    level = np.flatnonzero(~steep)
    (ux, uy, uz), (vx, vy, vz) = [n[level] for n in u], [n[level] for n in v]
    cross = np.sqrt((uy * vz - uz * vy) ** 2 + (uz * vx - ux * vz) ** 2 + (ux * vy - uy * vx) ** 2)
    steep[level] = np.arctan2(cross, ux * vx + uy * vy + uz * vz) > CREASE_ANGLE
    drawn[doubtful] = steep
    return drawn


def outline_edges(corners, points, plan):
    """The ends of the edges that a plan shows."""
    ends = np.empty((3, len(points) // 3), np.int32)
    ends[:] = points.reshape(-1, 3).T
    # An edge that stands upright is a point in plan: it is out before it is looked at.
    place = plan.reshape(-1, 3)
    lows, highs, owners = [], [], []
    for a, b in (0, 1), (1, 2), (2, 0):
        low, high = np.minimum(ends[a], ends[b]), np.maximum(ends[a], ends[b])
        shown = np.flatnonzero(place[:, a] != place[:, b])
        if len(shown) < len(low):
            low, high = low[shown], high[shown]
        lows.append(low)
        highs.append(high)
        owners.append(shown)
    low, high, owner = np.concatenate(lows), np.concatenate(highs), np.concatenate(owners)
    keys = low.astype(np.uint64)
    keys <<= np.uint64(32)
    keys |= high.view(np.uint32)
    hashes = keys * np.uint64(0x9E3779B97F4A7C15)
    hashes ^= hashes >> np.uint64(29)
    hashes *= np.uint64(0xBF58476D1CE4E5B9)
    edge = representatives([keys], hashes, table_bits(len(keys)))
    users = np.bincount(edge, minlength=len(keys))
    borders = np.flatnonzero(users == 1)
    # Of two users the edge's representative is one; the other names it.
    second = np.flatnonzero((users == 0) & (users[edge] == 2))
    drawn = silhouettes(corners, owner[edge[second]], owner[second], normal_z(corners))
    edges = np.concatenate([borders, second[drawn]])
    return low[edges], high[edges]


def distinct_segments(first, second, plan):
    """Ends as numbers of places in plan, each segment once and none of no length."""
    places, ends = np.unique(plan[np.concatenate([first, second])], return_inverse=True)
    first, second = np.split(ends.astype(np.uint64), 2)
    low = np.minimum(first, second)
    high = np.maximum(first, second)
    keys = np.unique((low << np.uint64(32) | high)[low != high])
    coordinates = np.stack([places >> np.uint64(32), places], axis=1).astype(np.uint32)
    return (coordinates.view(np.float32).astype(np.float64), (keys >> np.uint64(32)).astype(np.int64),
            (keys & np.uint64(0xFFFFFFFF)).astype(np.int64))


def partners(ends):
    """Pairs the segment ends at each place, in order; -1 for the one that is left over."""
    order = np.argsort(ends, kind="stable")
    place = ends[order]
    begins = np.empty(len(place), bool)
    begins[:1] = True
    begins[1:] = place[1:] != place[:-1]
    start = np.maximum.accumulate(np.where(begins, np.arange(len(place)), 0))
    odd = (np.arange(len(place)) - start) & 1 == 1
    partner = np.full(len(ends), -1)
    seconds = np.flatnonzero(odd)
    partner[order[seconds]] = order[seconds - 1]
    partner[order[seconds - 1]] = order[seconds]
    return partner


def chains(first, second):
    """Joins segments into chains: the places of all vertices in order, and each chain's length.

    Side 2 s is segment s from its first end, side 2 s + 1 from its second; before a side comes the
    other side of its partner.
    """
    ends = np.stack([first, second], axis=1).reshape(-1)
    partner = partners(ends)
    sides = np.arange(len(ends))
    before = np.where(partner < 0, sides, partner ^ 1)
    # The smallest side of each ring, by doubling; -1 marks the beginnings of paths, which rings
    # get by being cut there.
    open_ends = partner < 0
    before[open_ends] = sides[open_ends]
    least = np.where(open_ends, -1, sides)
    step = before
    while True:
        better = np.minimum(least, least[step])
        if np.array_equal(better, least):
            break
        least = better
        step = step[step]
    before = np.where(least == sides, sides, before)
    root = before
    rank = (before != sides).astype(np.int64)
    while True:
        further = root[root]
        if np.array_equal(further, root):
            break
        rank += rank[root]
        root = further
    return ends, root, rank


def vertex_order(first, second):
    ends, root, rank = chains(first, second)
    # Every chain is there twice, once in each direction: the one with the smaller root is kept.
    segment_root = root.reshape(-1, 2)
    side = 2 * np.arange(len(segment_root)) + (segment_root[:, 1] < segment_root[:, 0])
    order = side[np.lexsort((rank[side], root[side]))]
    begins = np.flatnonzero(np.diff(root[order], prepend=-1))
    lengths = np.diff(begins, append=len(order))
    # A chain of n segments has n + 1 vertices.
    last = begins + lengths - 1
    return np.insert(ends[order], last + 1, ends[order[last] ^ 1]), lengths + 1


THOUSANDS = np.array([list(b"%03d" % i) for i in range(1000)], np.uint8)


def decimal_bytes(values):
    """Six decimals in columns of bytes, with zeros in front."""
    micro = np.rint(np.abs(values) * 1e6).astype(np.int64)
    groups = max(3, (len(str(int(micro.max(initial=0)))) + 2) // 3)
    columns = np.empty((len(values), 3 * groups + 2), np.uint8)
    columns[:, 0] = np.where(values < 0, ord("-"), ord("0"))
    columns[:, -7] = ord(".")
    place = columns.shape[1]
    for group in range(groups):
        rest = micro // 1000
        place -= 3 + (group == 2)
        columns[:, place:place + 3] = THOUSANDS[micro - 1000 * rest]
        micro = rest
    return columns


POLYLINE = (b"  0\nPOLYLINE\n  8\n0\n 62\n254\n 66\n1\n 10\n0.000000\n 20\n0.000000\n 30\n0.000000\n"
            b" 70\n0\n")


def write_drawing(path, vertices, lengths):
    x = decimal_bytes(vertices[:, 0])
    y = decimal_bytes(vertices[:, 1])
    pieces = [b"  0\nVERTEX\n  8\n0\n 70\n0\n 10\n", x, b"\n 20\n", y, b"\n 30\n0.000000\n"]
    width = sum(len(p) if isinstance(p, bytes) else p.shape[1] for p in pieces)
    table = np.empty((len(vertices), width), np.uint8)
    column = 0
    for piece in pieces:
        size = len(piece) if isinstance(piece, bytes) else piece.shape[1]
        table[:, column:column + size] = (np.frombuffer(piece, np.uint8)
                                          if isinstance(piece, bytes) else piece)
        column += size
    data = memoryview(table).cast("B")
    between = b"  0\nSEQEND\n"
    with open(path, "wb") as file:
        file.write(b"  0\nSECTION\n  2\nENTITIES\n")
        parts = []
        begin = 0
        for length in lengths.tolist():
            end = begin + length * width
            parts += (POLYLINE, data[begin:end], between)
            begin = end
        file.write(b"".join(parts))
        file.write(b"  0\nENDSEC\n  0\nEOF\n")


def keep_freed_memory():
    """Large arrays are otherwise mapped and cleared by the kernel anew each time."""
    trim_threshold, map_maximum = -1, -4
    libc = ctypes.CDLL(None)
    libc.mallopt(trim_threshold, 2**31 - 1)
    libc.mallopt(map_maximum, 0)


def main():
    keep_freed_memory()
    corners = read_corners(sys.argv[-2])
    points, plan = weld(corners)
    first, second = outline_edges(corners, points, plan)
    places, first, second = distinct_segments(first, second, plan)
    order, lengths = vertex_order(first, second)
    write_drawing(sys.argv[-1], places[order], lengths)
    print(f"{len(first)} segments in {len(lengths)} polylines")


main()
