#!/usr/bin/env python3
"""An importer for dxf2d: turns an elevation grid (Esri ASCII raster, .asc) into binary glTF."""
import array
import json
import struct
import sys


def read_grid(path):
    with open(path, encoding="ascii") as file:
        words = file.read().split()
    header = {words[i].lower(): float(words[i + 1]) for i in range(0, 12, 2)}
    heights = [float(word) for word in words[12:]]
    columns, rows = int(header["ncols"]), int(header["nrows"])
    if len(heights) != columns * rows:
        raise ValueError(f"it has {len(heights)} heights and announces {columns * rows}")
    return header, columns, rows, heights


def main():
    header, columns, rows, heights = read_grid(sys.argv[1])
    size, none = header["cellsize"], header.get("nodata_value")
    points, triangles = array.array("f"), array.array("I")
    for row in range(rows):  # the first row is the northernmost
        for column in range(columns):
            points.extend((column * size, (rows - 1 - row) * size, heights[row * columns + column]))
    for row in range(rows - 1):
        for corner in range(row * columns, (row + 1) * columns - 1):
            a, b, c, d = corner, corner + 1, corner + columns + 1, corner + columns
            if none not in (heights[a], heights[b], heights[c], heights[d]):
                triangles.extend((a, d, c, a, c, b))
    data = points.tobytes() + triangles.tobytes()
    view = len(points) * points.itemsize
    # Far from its origin a grid would lose its last digits in single precision.
    extras = {"unit": "m", "up": "z", "origin": [header["xllcorner"], header["yllcorner"], 0.0]}
    document = json.dumps({
        "asset": {"version": "2.0", "extras": extras}, "scene": 0, "scenes": [{"nodes": [0]}],
        "nodes": [{"name": "terrain", "mesh": 0}],
        "meshes": [{"primitives": [{"attributes": {"POSITION": 0}, "indices": 1}]}],
        "accessors": [
            {"bufferView": 0, "componentType": 5126, "count": columns * rows, "type": "VEC3"},
            {"bufferView": 1, "componentType": 5125, "count": len(triangles), "type": "SCALAR"}],
        "bufferViews": [{"buffer": 0, "byteLength": view},
                        {"buffer": 0, "byteOffset": view, "byteLength": len(data) - view}],
        "buffers": [{"byteLength": len(data)}]}).encode()
    document += b" " * (-len(document) % 4)
    with open(sys.argv[2], "wb") as file:
        file.write(struct.pack("<4sIIII", b"glTF", 2, 28 + len(document) + len(data),
                               len(document), 0x4E4F534A))
        file.write(document + struct.pack("<II", len(data), 0x004E4942) + data)


if __name__ == "__main__":
    try:
        main()
    except (OSError, ValueError, KeyError, IndexError) as error:
        sys.exit(str(error))
