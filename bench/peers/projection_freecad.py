#!/usr/bin/python3
"""The plan of an STL as DXF by FreeCAD's hidden-line projection.

usage: projection_freecad.py MODEL.stl DRAWING.dxf

FreeCAD knows which edges others hide, which an outline plan does not ask for; a user who wants a plan
of a mesh from it has no other way. For small models: 10,000 triangles take it many seconds.
"""
import sys

# Where Debian's package freecad-python3 installs the modules.
sys.path[:0] = ["/usr/lib/freecad-python3/lib", "/usr/lib/freecad/Mod"]

import FreeCAD  # noqa: E402
import Mesh  # noqa: E402
import Part  # noqa: E402
import TechDraw  # noqa: E402

WELD_TOLERANCE = 1e-6


def main():
    model, drawing = sys.argv[1:]
    shape = Part.Shape()
    shape.makeShapeFromMesh(Mesh.Mesh(model).Topology, WELD_TOLERANCE)
    from_above = FreeCAD.Vector(0, 0, 1)
    with open(drawing, "w", encoding="ascii") as file:
        file.write(TechDraw.projectToDXF(shape, from_above))


main()
