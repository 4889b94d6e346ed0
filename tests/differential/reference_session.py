"""The walk over a scene and the records, blocks and placements that it leads to."""

from host_arithmetic import (IDENTITY, product, relative, rotation_angles, transformed)
from reference_groups import (ATTRIBUTES_FOLLOW, BLOCK_END, LAYER, SEQUENCE_END, block_begin,
                          finite_or_zero, nested_insert, point, polyline, real)
from reference_head import group, head
from reference_label import label_entities
from reference_outline import face_outline, line_outline
from reference_palette import nearest_color_index
from reference_shapes import box, cylinder

# Radians out of the drawing plane up to which geometry counts as seen in plan …
INSTANCE_TILT = 0.03
# … and up to which an INSERT is placed rather than left at the origin.
PLACEMENT_TILT = 0.01
# Radians about z above which an INSERT says its rotation.
LEAST_ROTATION = 0.001
DEGREES_PER_RADIAN = 57.29577951308232


class Record:
    """One opened node, seen from the drawing; `matrix` is its world transform."""

    def __init__(self, number, parent, node):
        self.name = f"GO_{number}"
        self.parent = parent
        self.children = []
        self.has_geometry = False
        self.object_id = node.get("objectId", "")
        self.graphic_name = node.get("graphicName", "")
        self.real_object_id = node.get("realObjectId", "")
        self.color_index = parent.color_index if parent else -1
        self.matrix = IDENTITY
        if parent:
            local = tuple(float(v) for v in node.get("matrix", IDENTITY))
            self.matrix = product(parent.matrix, local)

    def mark(self):
        """Notes geometry on this record and all above it."""
        record = self
        while record:
            record.has_geometry = True
            record = record.parent


def is_plan_view(matrix):
    a, b, _ = rotation_angles(matrix)
    return abs(a) + abs(b) <= INSTANCE_TILT


class Session:
    """One scene into one drawing."""

    def __init__(self, drawing):
        self.drawing = drawing
        self.root = self.current = Record(0, None, {})
        self.next_number = 1
        self.reusable = {}
        self.inserts = []

    def export(self, nodes):
        self.drawing.write(head())
        for node in nodes:
            self.walk(node)
        self.write_blocks(self.root)
        self.drawing.write(group(0, "ENDSEC") + group(0, "SECTION") + group(2, "ENTITIES"))
        self.prune_inserts()
        for record in self.inserts:
            self.write_placement(record)
        self.drawing.write(group(0, "ENDSEC") + group(0, "EOF"))

    def walk(self, node):
        if "lod" in node:
            for level in node["lod"]["levels"][:1]:
                self.walk(level)
            return
        if self.reuse(node):
            self.current = self.current.parent
            return
        self.open(node)
        if "color" in node:
            self.current.color_index = nearest_color_index(*map(float, node["color"]))
        for item in node.get("geometry", []):
            self.geometry(item)
        if "label" in node:
            self.label(node["label"])
        for child in node.get("children", []):
            self.walk(child)
        self.current = self.current.parent

    def reuse(self, node):
        """True when the node is drawn as an earlier node's block; its record is then current."""
        if not node.get("realObjectId") or not node.get("graphicName"):
            return False
        if node["graphicName"] not in self.reusable:
            return False
        record = Record(self.next_number, self.current, node)
        if "color" in node or not is_plan_view(record.matrix):
            return False
        record.name = self.reusable[node["graphicName"]].name
        self.enter(record)
        return True

    def open(self, node):
        record = Record(self.next_number, self.current, node)
        self.enter(record)
        if (node.get("realObjectId") and node.get("item", True) and "color" not in node
                and is_plan_view(record.matrix) and node.get("graphicName")):
            self.reusable[node["graphicName"]] = record

    def enter(self, record):
        self.current.children.append(record)
        self.current = record
        self.next_number += 1

    def geometry(self, item):
        (kind, value), = item.items()
        if kind == "box":
            self.face_set(*box(*map(float, value)), reverse_orientation=False)
        elif kind == "cylinder":
            self.face_set(*cylinder(*map(float, value)), reverse_orientation=False)
        elif kind == "faceSet":
            self.face_set(triples(value["coords"]), value["indices"],
                          value.get("reverseOrientation", False), bool(value["coords"]))
        else:
            self.line_set(triples(value["coords"]), value["indices"], bool(value["coords"]))

    def face_set(self, points, indices, reverse_orientation, has_coords=True):
        if indices and has_coords:
            self.write_outline(face_outline(self.placed(points), indices, reverse_orientation))

    def line_set(self, points, indices, has_coords):
        if indices and has_coords:
            self.write_outline(line_outline(self.placed(points), indices))

    def placed(self, points):
        """The points in the frame of the nearest object at or above the current record."""
        owner = self.current
        while owner and not owner.real_object_id:
            owner = owner.parent
        matrix = relative(self.current.matrix, owner.matrix if owner else IDENTITY)
        if owner and not is_plan_view(owner.matrix):
            matrix = self.current.matrix
        return [transformed(p, matrix) for p in points]

    def write_outline(self, chains):
        if not chains:
            return
        self.current.mark()
        self.drawing.write(block_begin(self.current.name))
        for chain in chains:
            self.drawing.write(polyline(self.current.color_index, chain))
        self.drawing.write(BLOCK_END)

    def label(self, label):
        pieces = label_entities(label["text"], label.get("colorIndex", 0), self.current.matrix,
                                self.current.name)
        if pieces is not None:
            self.current.mark()
            for piece in pieces:
                self.drawing.write(piece)

    def write_blocks(self, record):
        """Children first: a block of INSERTs for each record whose children have geometry."""
        if not record.children:
            if record.object_id and record.graphic_name:
                self.inserts.append(record)
            return
        for child in record.children:
            self.write_blocks(child)
        if not any(child.has_geometry for child in record.children):
            return
        self.drawing.write(block_begin(record.name))
        if record.object_id:
            self.inserts.append(record)
        for child in record.children:
            if child.has_geometry:
                self.drawing.write(nested_insert(child.name))
        self.drawing.write(BLOCK_END)

    def prune_inserts(self):
        """An object whose direct children are objects is not placed itself."""
        found = True
        while found:
            found = False
            for record in self.inserts:
                if any(child.object_id for child in record.children):
                    self.inserts.remove(record)
                    found = True
                    break

    def write_placement(self, record):
        a, b, angle = rotation_angles(record.matrix)
        x, y = finite_or_zero(record.matrix[12]), finite_or_zero(record.matrix[13])
        if abs(a) + abs(b) > PLACEMENT_TILT:
            x = y = angle = 0.0
        text = group(0, "INSERT") + LAYER + ATTRIBUTES_FOLLOW + group(2, record.name) + point(x, y)
        if abs(angle) > LEAST_ROTATION:
            text += group(50, real(angle * DEGREES_PER_RADIAN))
        self.drawing.write(text + SEQUENCE_END)


def triples(coords):
    """Points from a flat list, whose remainder is ignored."""
    values = [float(value) for value in coords]
    return [tuple(values[k:k + 3]) for k in range(0, len(values) - 2, 3)]
