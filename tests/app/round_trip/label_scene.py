"""A scene of several hundred labels, and where each of their lines must stand in its drawing."""

import itertools
import math
import random

from placed_texts import PlacedText, placed

LEFT_OF_CENTER = {"C": 0, "L": -1, "R": 1}
JUSTIFICATION = {"L": (0, 2), "C": (1, 2), "R": (2, 2), "X": (0, 0)}
# By color index, what a label may say instead.
PURE = {1: "1 0 0", 2: "1 1 0", 3: "0 1 0", 4: "0 1 1", 5: "0 0 1", 6: "1 0 1", 7: "1 1 1"}
# Degrees: labels and their nodes.
ANGLES = (0, 30, -90, 123.456, 180, 359.5)
TURNS = (0, 45, -120.5)
CELL = 40.0


def advance(line):
    """The width that the layout takes a line for, in heights."""
    return sum(0.32 if letter in "!il" else 0.8 for letter in line)


def offset(align, lines, number, height):
    """Of a line from the anchor, before the label's turn."""
    centering = 0.75 * height * (len(lines) - 1)
    # Right-aligned lines hang below their anchor.
    y = -1.5 * height * number + (-centering if align == "R" else centering)
    return LEFT_OF_CENTER[align] * max(map(advance, lines)) / 2 * height, y


class Label:
    """One label at a place of its own; draws what it leaves open from `chance`."""

    def __init__(self, number, align, angle, turn, chance, letters):
        self.number, self.align, self.angle, self.turn = number, align, angle, turn
        self.origin = (CELL * (number % 20), -CELL * (number // 20))
        self.anchor = (chance.uniform(-3, 3), chance.uniform(-3, 3))
        self.height = chance.choice((0.5, 1, 2.5))
        self.lines = [f"{align}{angle} {''.join(chance.choices(letters, k=chance.randint(1, 8)))}i"
                      for _ in range(chance.randint(1, 4))]
        self.color = chance.choice((*PURE, 30, 142, 255))
        self.color_in_text = self.color in PURE and chance.random() < 0.5

    def node(self):
        cosine, sine = math.cos(math.radians(self.turn)), math.sin(math.radians(self.turn))
        red_green_blue = PURE[self.color] if self.color_in_text else "0 0 0"
        quoted = " ".join('"' + line.replace("\\", r"\\").replace('"', r'\"') + '"'
                          for line in self.lines)
        text = (f"T:0 {self.height} 0 {self.anchor[0]!r} {self.anchor[1]!r} 5 {self.angle} "
                f"{self.align} 0 {red_green_blue} 0 {quoted}")
        return {
            "graphicName": "note", "objectId": f"note {self.number}",
            "matrix": [cosine, sine, 0, 0, -sine, cosine, 0, 0, 0, 0, 1, 0, *self.origin, 0, 1],
            "label": {"text": text, "colorIndex": 0 if self.color_in_text else self.color},
        }

    def texts(self):
        """What a reader must find."""
        for number, line in enumerate(self.lines):
            point = (0, 0)
            if self.align in LEFT_OF_CENTER:
                shift = offset(self.align, self.lines, number, self.height)
                point = placed(shift, self.anchor, self.angle)
            point = placed(point, self.origin, self.turn)
            yield PlacedText(line, [point, point], self.height, 0.8, JUSTIFICATION[self.align],
                             self.angle + self.turn, self.color)


def labels(letters, count=360):
    """Every alignment with every angle on every turn, at least four times."""
    chance = random.Random(letters)
    kinds = itertools.cycle(itertools.product("CLRX", ANGLES, TURNS))
    return [Label(number, *kind, chance, letters)
            for number, kind in zip(range(count), kinds)]


def scene(labels_of_scene):
    return {"format": "ktscene", "version": 1, "nodes": [label.node() for label in labels_of_scene]}
