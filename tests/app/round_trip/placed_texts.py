"""The texts of a drawing as other programs read them."""

import math
import subprocess

import ezdxf


class PlacedText:
    """A text where it stands in the drawing; lengths in drawing units, the angle in degrees."""

    def __init__(self, text, points, height, width, justification, angle, color):
        self.text = text
        # The first and the second alignment point.
        self.points = points
        self.height = height
        self.width = width
        # Groups 72 and 73.
        self.justification = justification
        self.angle = angle
        self.color = color

    def differs_from(self, other):
        """What is not the same, by name; None when nothing is."""
        for name in ("text", "justification", "color"):
            if getattr(self, name) != getattr(other, name):
                return name
        for name in ("height", "width"):
            if not close(getattr(self, name), getattr(other, name)):
                return name
        mine, others = (sum(text.points, ()) for text in (self, other))
        if not all(map(close, mine, others)):
            return "points"
        # 360 degrees are none.
        turn = math.remainder(self.angle - other.angle, 360)
        return None if abs(turn) < 2e-6 else "angle"

    def __repr__(self):
        return f"{vars(self)}"


def close(a, b):
    """Six decimals each for the text and for the block that it stands in, which may be turned."""
    return abs(a - b) <= 5e-6 + 1e-7 * max(abs(a), abs(b))


def placed(point, origin, degrees):
    """`point` of a block that is inserted at `origin` with a turn."""
    cosine, sine = math.cos(math.radians(degrees)), math.sin(math.radians(degrees))
    return (origin[0] + point[0] * cosine - point[1] * sine,
            origin[1] + point[0] * sine + point[1] * cosine)


def decoded(text):
    """What \\U+XXXX stands for; surrogate pairs are one character."""
    units = ezdxf.decode_dxf_unicode(text)
    return units.encode("utf-16-le", "surrogatepass").decode("utf-16-le")


def read_by_ezdxf(path, encoding):
    drawing = ezdxf.readfile(path, encoding=encoding)
    texts = []
    for insert in drawing.modelspace().query("INSERT"):
        for entity in insert.virtual_entities():
            if entity.dxftype() != "TEXT":
                continue
            dxf = entity.dxf
            first = dxf.get("insert", (0, 0, 0))
            second = dxf.get("align_point", first)
            texts.append(PlacedText(
                decoded(dxf.text), [(first[0], first[1]), (second[0], second[1])], dxf.height,
                dxf.width, (dxf.halign, dxf.valign), dxf.rotation, dxf.color))
    return texts


def read_by_dxflib(program, path, encoding):
    output = subprocess.run([program, path], check=True, stdout=subprocess.PIPE).stdout
    rows = [row.split("\t") for row in output.decode(encoding).split("\n")[:-1]]
    blocks = {}
    for kind, block, *fields in rows:
        if kind == "text":
            blocks.setdefault(block, []).append(fields)
    texts = []
    for kind, block, *fields in rows:
        if kind != "insert" or block not in blocks:
            continue
        x, y, turn = map(float, fields)
        texts += [text_of_row(row, (x, y), turn) for row in blocks[block]]
    return texts


def text_of_row(row, origin, turn):
    x1, y1, x2, y2, height, width = map(float, row[:6])
    # Where there is no second point, dxflib makes it no number.
    second = (x1, y1) if math.isnan(x2) else (x2, y2)
    points = [placed(point, origin, turn) for point in ((x1, y1), second)]
    justification = (int(row[6]), int(row[7]))
    angle, color, text = float(row[8]) + turn, int(row[9]), row[10]
    return PlacedText(decoded(text), points, height, width, justification, angle, color)
