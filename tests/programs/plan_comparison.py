"""Compares drawings by what they show: the same lines, however they are cut into blocks and polylines."""
import ezdxf
from ezdxf import disassemble
from shapely.affinity import translate
from shapely.geometry import LineString
from shapely.ops import unary_union


def lines_of(path):
    """All lines of the drawing in plan, as one geometry."""
    lines = []
    for entity in disassemble.recursive_decompose(ezdxf.readfile(path).modelspace()):
        if entity.dxftype() != "POLYLINE":
            continue
        points = [tuple(vertex.dxf.location)[:2] for vertex in entity.vertices]
        if entity.is_closed:
            points.append(points[0])
        lines.extend(LineString(pair) for pair in zip(points, points[1:]) if pair[0] != pair[1])
    return unary_union(lines)


def assert_same_lines(left, right, tolerance=1e-3):
    """Fails if a part of one geometry is farther than `tolerance` from all of the other."""
    for name, one, other in (("left", left, right), ("right", right, left)):
        assert one.length > 0, f"the {name} drawing shows nothing"
        alone = one.difference(other.buffer(tolerance))
        assert alone.is_empty, f"in the {name} drawing alone: {alone.length} of {one.length}: {alone.wkt[:400]}"


def assert_same_plan(left, right, anywhere=False):
    """Compares two files. `anywhere`: after both are shifted to the origin."""
    plans = [lines_of(path) for path in (left, right)]
    if anywhere:
        plans = [translate(plan, -plan.bounds[0], -plan.bounds[1]) for plan in plans]
    assert_same_lines(*plans)


def blocks_of(path):
    """The names of the blocks that are placed, one for each object."""
    return [insert.dxf.name for insert in ezdxf.readfile(path).modelspace().query("INSERT")]
