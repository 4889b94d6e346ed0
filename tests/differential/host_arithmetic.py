"""The host's arithmetic on points and transforms: doubles, added in the host's order.

A point or direction is a tuple of three floats. A transform is a tuple of 16 floats for row
vectors, elements 12 to 14 the translation.
"""

import math

IDENTITY = (1.0, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0)
ORIGIN = (0.0, 0.0, 0.0)


def all_finite(values):
    return all(math.isfinite(value) for value in values)


def length(v):
    return math.sqrt((v[0] * v[0] + v[1] * v[1]) + v[2] * v[2])


def dot(u, v):
    return (u[0] * v[0] + u[1] * v[1]) + u[2] * v[2]


def cross(u, v):
    return (u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0])


def difference(p, q):
    return (p[0] - q[0], p[1] - q[1], p[2] - q[2])


def transformed(point, m):
    x, y, z = point
    return (((x * m[0] + y * m[4]) + z * m[8]) + m[12],
            ((x * m[1] + y * m[5]) + z * m[9]) + m[13],
            ((x * m[2] + y * m[6]) + z * m[10]) + m[14])


def product(parent, local):
    """`local` first, then `parent`."""
    return tuple(((local[row] * parent[column] + local[row + 1] * parent[4 + column])
                  + local[row + 2] * parent[8 + column]) + local[row + 3] * parent[12 + column]
                 for row in (0, 4, 8, 12) for column in range(4))


def inverse(m):
    """The inverse of an affine transform, or None when its determinant is 0 or not finite."""
    numerators = (m[5] * m[10] - m[6] * m[9], m[2] * m[9] - m[1] * m[10], m[1] * m[6] - m[2] * m[5],
                  m[6] * m[8] - m[4] * m[10], m[0] * m[10] - m[2] * m[8], m[2] * m[4] - m[0] * m[6],
                  m[4] * m[9] - m[5] * m[8], m[1] * m[8] - m[0] * m[9], m[0] * m[5] - m[1] * m[4])
    determinant = (m[0] * numerators[0] + m[1] * numerators[3]) + m[2] * numerators[6]
    if determinant == 0.0 or not math.isfinite(determinant):
        return None
    i = [numerator / determinant for numerator in numerators]
    t = m[12:15]
    moved = [-((t[0] * i[j] + t[1] * i[3 + j]) + t[2] * i[6 + j]) for j in range(3)]
    return (i[0], i[1], i[2], 0.0, i[3], i[4], i[5], 0.0, i[6], i[7], i[8], 0.0,
            moved[0], moved[1], moved[2], 1.0)


def relative(a, b):
    """`a` seen from `b`: exactly the identity when they are equal, `a` when `b` has no inverse."""
    if all(x == y for x, y in zip(a, b)):
        return IDENTITY
    back = inverse(b)
    return a if back is None else product(back, a)


def rotation_rows(m):
    """The three unit rows, right-handed, or None when a row has no direction."""
    rows = []
    for first in (0, 4, 8):
        row = m[first:first + 3]
        size = length(row)
        if size == 0.0 or not math.isfinite(size):
            return None
        rows.append(tuple(value / size for value in row))
    x, y, z = rows
    if dot(cross(x, y), z) < 0.0:
        z = tuple(-value for value in z)
    return x, y, z


def rotation_angles(m):
    """Rotations in radians about x (applied first), y and z."""
    rows = rotation_rows(m)
    if rows is None:
        return 0.0, 0.0, 0.0
    x, y, z = rows
    level = math.sqrt(x[0] * x[0] + x[1] * x[1])
    about_y = math.atan2(-x[2], level)
    if level < 1e-12:
        return 0.0, about_y, math.atan2(-y[0], y[1])
    return math.atan2(y[2], z[2]), about_y, math.atan2(x[1], x[0])


def rotation_axis(m):
    """The rotation as the three components of its axis and the angle in radians."""
    rows = rotation_rows(m)
    if rows is None:
        return 0.0, 0.0, 0.0, 0.0
    x, y, z = rows
    v = (y[2] - z[1], z[0] - x[2], x[1] - y[0])
    n = length(v)
    t = ((x[0] + y[1]) + z[2]) - 1.0
    if n > 0.0:
        return v[0] / n, v[1] / n, v[2] / n, math.atan2(n, t)
    if t > 0.0:
        return 0.0, 0.0, 0.0, 0.0
    return half_turn(rows)


def half_turn(rows):
    diagonal = [rows[k][k] for k in range(3)]
    k = diagonal.index(max(diagonal))
    axis = [0.0, 0.0, 0.0]
    axis[k] = math.sqrt((diagonal[k] + 1.0) / 2.0)
    for j in range(3):
        if j != k:
            axis[j] = (rows[k][j] + rows[j][k]) / (4.0 * axis[k])
    return axis[0], axis[1], axis[2], math.pi


def turned_about_z(radians):
    c, s = math.cos(radians), math.sin(radians)
    return (c, s, 0.0, 0.0, -s, c, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0)


def polygon_normal(corners, counter_clockwise_is_front):
    """The unit normal of a polygon given as its points, or None when it has none."""
    if len(corners) < 3:
        return None
    total = ORIGIN
    for k in range(1, len(corners) - 1):
        part = cross(difference(corners[k], corners[0]), difference(corners[k + 1], corners[0]))
        total = (total[0] + part[0], total[1] + part[1], total[2] + part[2])
    size = length(total)
    if size == 0.0 or not math.isfinite(size):
        return None
    normal = tuple(value / size for value in total)
    return normal if counter_clockwise_is_front else tuple(-value for value in normal)


def angle_between(u, v):
    """In radians, from 0 to pi; 0 when either direction is the zero vector."""
    if u == ORIGIN or v == ORIGIN:
        return 0.0
    return math.atan2(length(cross(u, v)), dot(u, v))
