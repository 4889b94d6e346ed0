"""The bytes of a drawing: groups of two lines, text in a code page."""

import math

from reference_head import group


class Drawing:
    """Collects what is written; `content` is the whole file so far."""

    def __init__(self, code_page):
        self.encoding = "utf-8" if code_page == 65001 else f"cp{code_page}"
        self.pieces = []

    def write(self, text):
        """`text` holds UTF-16 units, one a character."""
        self.pieces.append(converted(text, self.encoding))

    def content(self):
        return b"".join(self.pieces)


def converted(units, encoding):
    """As many bytes as there are units: more are cut, fewer filled up with zeros."""
    if units.isascii():
        return units.encode("ascii")
    data = b"".join(character_bytes(character, encoding) for character in from_units(units))
    return data[:len(units)].ljust(len(units), b"\0")


def character_bytes(character, encoding):
    try:
        return character.encode(encoding)
    except UnicodeEncodeError:
        return b"?" * len(to_units(character))


def to_units(text):
    """A text as its UTF-16 units, one a character."""
    data = text.encode("utf-16-le", "surrogatepass")
    return "".join(chr(data[k] | data[k + 1] << 8) for k in range(0, len(data), 2))


def from_units(units):
    data = units.encode("utf-16-le", "surrogatepass")
    return data.decode("utf-16-le", "surrogatepass")


def real(value):
    return "%f" % value


def finite_or_zero(value):
    return value if math.isfinite(value) else 0.0


def point(x, y, first_code=10):
    """A point in the plan; the third coordinate of a drawing is always 0."""
    return (group(first_code, real(x)) + group(first_code + 10, real(y))
            + group(first_code + 20, real(0.0)))


LAYER = group(8, 0)
SEQUENCE_END = group(0, "SEQEND")
ATTRIBUTES_FOLLOW = group(66, "    1")
BLOCK_END = group(0, "ENDBLK") + LAYER


def block_begin(name):
    return (group(0, "BLOCK") + LAYER + group(2, name) + group(70, 64) + point(0.0, 0.0)
            + group(3, name))


def nested_insert(name):
    return (group(0, "INSERT") + LAYER + ATTRIBUTES_FOLLOW + group(2, name) + point(0.0, 0.0)
            + SEQUENCE_END)


def polyline(color_index, points):
    """An open line through (x, y) points."""
    begin = (group(0, "POLYLINE") + LAYER + group(62, 254 if color_index == -1 else color_index)
             + group(66, 1) + point(0.0, 0.0) + group(70, 0))
    # The addition turns -0 to 0, as the identity transform does.
    vertices = "".join(group(0, "VERTEX") + LAYER + group(70, 0) + point(x + 0.0, y + 0.0)
                       for x, y in points)
    return begin + vertices + SEQUENCE_END
