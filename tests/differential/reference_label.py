"""Labels: their string, layout and TEXT entities; the reference implementation of the drawing rules.

All text here holds UTF-16 units, one a character.
"""

import re

from host_arithmetic import rotation_axis, transformed, turned_about_z
from reference_groups import BLOCK_END, LAYER, block_begin, point, real, to_units
from reference_head import group
from reference_palette import nearest_color_index

CONTROL = re.compile("[\x00-\x1f\x7f-\x9f]")
NUMBER = r"([+-]?(?:[0-9]+(?:\.[0-9]*)?|\.[0-9]+)(?:[eE][+-]?[0-9]+)?) +"
FIELDS = re.compile(" *" + 7 * NUMBER + "([^ ]) +([01]) +" + 3 * NUMBER + "([0-9]{1,10})(?= |$)")
LINE = re.compile(r' +"((?:[^"\\]|\\["\\])*)"(?= |$)')

WIDTH_FACTOR = 0.8
NARROW_FACTOR = 0.4
DEGREE = 3.141592653589793
MAGNITUDE = 1e15


class LabelText:
    """What the string says of size, place and lines; `parse_label` fills it."""

    def __init__(self, numbers, align, lines):
        _, self.height, _, self.x, self.y, _, self.angle, *self.color = numbers
        self.align = align
        self.lines = lines


def parse_label(text):
    """None when the string does not fit."""
    text = CONTROL.sub(" ", text)
    fields = FIELDS.match(text)
    if fields is None:
        return None
    numbers = [float(fields[k]) for k in (1, 2, 3, 4, 5, 6, 7, 10, 11, 12)]
    if any(abs(number) > MAGNITUDE for number in numbers) or int(fields[13]) > 4294967295:
        return None
    lines = parse_lines(text[fields.end():])
    return None if lines is None else LabelText(numbers, fields[8], lines)


def parse_lines(text):
    lines = []
    while text.strip(" "):
        line = LINE.match(text)
        if line is None:
            return None
        lines.append(re.sub(r'\\(["\\])', r"\1", line[1]))
        text = text[line.end():]
    return lines


def label_entities(label_string, color_index, matrix, block_name):
    """The pieces of the block of a label, or None when nothing is to be written."""
    label = parse_label(to_units(label_string)[2:].lstrip())
    if label is None or is_tilted(matrix) or not label.lines:
        return None
    color = color_index if 1 <= color_index < 256 else rgb_index(*label.color)
    pieces = [block_begin(block_name)]
    for number, line in enumerate(label.lines):
        pieces += text_entity(label, number, line, color)
    pieces.append(BLOCK_END)
    return pieces


def is_tilted(matrix):
    x, y, _, angle = rotation_axis(matrix)
    return abs(angle) > 0.01 and (abs(x) > 0.01 or abs(y) > 0.01)


def rgb_index(red, green, blue):
    index = nearest_color_index(red, green, blue)
    return index if 1 <= index <= 255 else 7


def text_entity(label, number, line, color):
    text = group(0, "TEXT") + group(40, real(label.height)) + group(62, color)
    text += alignment(label, number)
    if abs(label.angle) > 0.001:
        text += group(50, real(label.angle))
    text += group(41, real(WIDTH_FACTOR)) + "  1\n"
    return [text, line, "\n" + group(7, "STANDARD") + LAYER]


def alignment(label, number):
    if label.align not in ("C", "L", "R"):
        return ""
    h = label.height
    centering = 0.75 * h * (1 - len(label.lines))
    drop = -1.5 * h * number
    if label.align == "C":
        offset, code = (0.0, drop - centering, 0.0), 1
    elif label.align == "L":
        offset, code = (-(widest(label.lines) / 2.0) * h, drop - centering, 0.0), 0
    else:
        # Unlike the others, a right-aligned label hangs below its anchor.
        offset, code = ((widest(label.lines) / 2.0) * h, drop + centering, 0.0), 2
    x, y, _ = turned(offset, label.angle)
    x, y = x + label.x, y + label.y
    return point(x, y) + point(x, y, first_code=11) + group(72, code) + group(73, 2)


def turned(offset, degrees):
    if abs(degrees) < 1e-05:
        return offset
    return transformed(offset, turned_about_z(degrees * DEGREE / 180.0))


def widest(lines):
    """The estimated width of the longest line, in units of the text height."""
    widths = [0.0]
    for line in lines:
        width = 0.0
        for character in line:
            width += WIDTH_FACTOR * NARROW_FACTOR if character in "!il" else WIDTH_FACTOR
        widths.append(width)
    return max(widths)
