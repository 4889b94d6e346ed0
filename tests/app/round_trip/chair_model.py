"""A glTF model of many chairs of one mesh, and the names that must stand in its drawing."""

import base64
import math
import struct

from placed_texts import PlacedText

# As users name things, and what a drawing's text must not make of it.
NAMES = ("chair", "chair", "K\u00fcche", "\u0421\u0442\u0443\u043b", "\u6905\u5b50", "\U0001f600 chair",
         'say "hi"', "C:\\chairs\\one", "\\U+0041", "100 % oak")
# The seat, along x and y of the plan: large enough for every name to stand in its middle.
SEAT = (8.0, 4.0)
HEIGHT = 0.25
# The index of labels, whatever the color of their objects.
DEFAULT_PEN = 7


def turn_of(number):
    return 0.3 * number


def place_of(number):
    return 16.0 * (number % 4), -16.0 * (number // 4)


def node(number, name):
    """y is up in glTF: the plan's y is its -z, and a turn in plan is one about y."""
    x, y = place_of(number)
    half = turn_of(number) / 2
    return {"name": name, "mesh": 0, "translation": [x, 0.5, -y],
            "rotation": [0, math.sin(half), 0, math.cos(half)]}


def model():
    width, depth = SEAT
    corners = struct.pack("<12f", 0, 0, 0, width, 0, 0, width, 0, -depth, 0, 0, -depth)
    data = corners + struct.pack("<6H", 0, 1, 2, 0, 2, 3)
    return {
        "asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": list(range(len(NAMES)))}],
        "nodes": [node(number, name) for number, name in enumerate(NAMES)],
        "meshes": [{"name": "seat", "primitives": [
            {"attributes": {"POSITION": 0}, "indices": 1, "material": 0}]}],
        "materials": [{"pbrMetallicRoughness": {"baseColorFactor": [1, 0, 0, 1]}}],
        "accessors": [
            {"bufferView": 0, "componentType": 5126, "count": 4, "type": "VEC3",
             "min": [0, 0, -depth], "max": [width, 0, 0]},
            {"bufferView": 1, "componentType": 5123, "count": 6, "type": "SCALAR"}],
        "bufferViews": [{"buffer": 0, "byteOffset": 0, "byteLength": 48},
                        {"buffer": 0, "byteOffset": 48, "byteLength": 12}],
        "buffers": [{"byteLength": len(data), "uri": "data:application/octet-stream;base64,"
                     + base64.b64encode(data).decode()}],
    }


def texts():
    """The middle of a turned rectangle's extent is the rectangle's own."""
    for number, name in enumerate(NAMES):
        cosine, sine = math.cos(turn_of(number)), math.sin(turn_of(number))
        x, y = place_of(number)
        center = (x + (SEAT[0] * cosine - SEAT[1] * sine) / 2,
                  y + (SEAT[0] * sine + SEAT[1] * cosine) / 2)
        yield PlacedText(name, [center, center], HEIGHT, 0.8, (1, 2), 0.0, DEFAULT_PEN)
