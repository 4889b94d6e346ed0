"""What ezdxf finds in a drawing."""

import math
from collections import Counter

import ezdxf
from ezdxf.lldxf.tagger import ascii_tags_loader

# Group codes whose values are numbers with a fraction, in the entities and tables of this form.
FRACTIONS = range(10, 60)


class Bounds:
    """How far points reach: min_x, max_x, min_y, max_y."""

    SIDES = ("min_x", "max_x", "min_y", "max_y")

    def __init__(self, min_x=math.inf, max_x=-math.inf, min_y=math.inf, max_y=-math.inf):
        self.min_x, self.max_x, self.min_y, self.max_y = min_x, max_x, min_y, max_y

    @classmethod
    def of(cls, points):
        xs = [point.x for point in points]
        ys = [point.y for point in points]
        return cls(min(xs), max(xs), min(ys), max(ys)) if points else cls()

    def inside_by(self, other):
        """By side, how far this one stays inside the other; below 0 where it reaches out of it."""
        return {"min_x": self.min_x - other.min_x, "max_x": other.max_x - self.max_x,
                "min_y": self.min_y - other.min_y, "max_y": other.max_y - self.max_y}

    def __str__(self):
        return f"x {self.min_x:.9g} to {self.max_x:.9g}, y {self.min_y:.9g} to {self.max_y:.9g}"


class DrawingFacts:
    """A drawing's counts, its bounds as placed, and what is wrong with it on its own.

    counts     blocks, inserts, polylines, vertices; anywhere in the drawing
    placed     how many times each block is inserted in the drawing itself, by name
    bounds     of all vertices where the inserts put them
    faults     sentences; none for a sound drawing
    """

    def __init__(self, path):
        self.faults = []
        self._read_groups(path)
        self._document = ezdxf.readfile(path)
        self._points = {}
        space = self._document.modelspace()
        self.placed = Counter(insert.dxf.name for insert in space.query("INSERT"))
        self.bounds = Bounds.of(self._points_of(space))
        layouts = [space, *self._own_blocks()]
        entities = Counter(entity.dxftype() for layout in layouts for entity in layout)
        for kind in entities.keys() - {"INSERT", "POLYLINE"}:
            self.faults.append(f"holds {entities[kind]} {kind}, which no model gives")
        self.counts = {
            "blocks": len(self._own_blocks()),
            "inserts": entities["INSERT"],
            "polylines": entities["POLYLINE"],
            "vertices": sum(len(polyline.vertices) for layout in layouts
                            for polyline in layout.query("POLYLINE"))}

    def _own_blocks(self):
        return [block for block in self._document.blocks if not block.name.startswith("*")]

    def _read_groups(self, path):
        """Looks at what ezdxf silently fixes when it reads a drawing."""
        names = Counter()
        in_block = False
        with open(path, encoding="latin-1", newline=None) as stream:
            for code, value in ascii_tags_loader(stream):
                if code == 0:
                    in_block = value == "BLOCK"
                elif code == 2 and in_block:
                    # Readers take names that differ in case alone for the same.
                    names[value.casefold()] += 1
                elif code in FRACTIONS and not math.isfinite(float(value)):
                    self.faults.append(f"holds the number {value}")
        self.faults += [f"holds {count} blocks named {name}"
                        for name, count in names.items() if count > 1]

    def _points_of(self, layout):
        points = [vertex.dxf.location for polyline in layout.query("POLYLINE")
                  for vertex in polyline.vertices]
        for insert in layout.query("INSERT"):
            name = insert.dxf.name
            if name not in self._document.blocks:
                self.faults.append(f"inserts the block {name}, which is not there")
                continue
            if name not in self._points:
                self._points[name] = self._points_of(self._document.blocks.get(name))
            points += insert.matrix44().transform_vertices(self._points[name])
        return points
