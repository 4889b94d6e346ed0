"""Run in FreeCAD: builds a document, and exports it as a plan by the macro and as STL for dxf2d.

Reads PLAN_MACRO, the macro's path, and PLAN_DIRECTORY, where its files go.
"""
import os
import sys
import traceback

import FreeCAD
import Mesh
import Part


def build(document):
    """A plate with a bore, two of which is a link; a wedge that leans, and a mesh."""
    plate = document.addObject("Part::Box", "Plate")
    plate.Length, plate.Width, plate.Height = 40, 20, 5
    drill = document.addObject("Part::Cylinder", "Drill")
    drill.Radius, drill.Height = 4, 20
    drill.Placement.Base = FreeCAD.Vector(10, 10, -5)
    cut = document.addObject("Part::Cut", "Bored")
    cut.Base, cut.Tool = plate, drill
    cut.Placement = FreeCAD.Placement(FreeCAD.Vector(5, 5, 0), FreeCAD.Rotation(FreeCAD.Vector(0, 0, 1), 30))
    link = document.addObject("App::Link", "Again")
    link.LinkedObject = cut
    link.Placement = FreeCAD.Placement(FreeCAD.Vector(80, 0, 0), FreeCAD.Rotation(FreeCAD.Vector(0, 0, 1), -45))
    wedge = document.addObject("Part::Wedge", "Wedge")
    wedge.Placement = FreeCAD.Placement(FreeCAD.Vector(0, 60, 0), FreeCAD.Rotation(FreeCAD.Vector(1, 1, 0), 25))
    part = document.addObject("App::Part", "Assembly")
    part.Placement.Base = FreeCAD.Vector(0, -50, 0)
    inner = document.addObject("Part::Box", "Inner")
    part.addObject(inner)
    inner.Placement.Base = FreeCAD.Vector(10, 0, 0)
    mesh = document.addObject("Mesh::Feature", "Stone")
    mesh.Mesh = Mesh.createBox(6, 8, 10)
    mesh.Placement.Base = FreeCAD.Vector(-30, 0, 0)
    document.recompute()
    return [cut, link, wedge, inner, mesh]


def build_lines(document):
    """A wire, an arc, a sketch that is turned, and a plate with a line at its corner."""
    def feature(name, shape, placement=FreeCAD.Placement()):
        thing = document.addObject("Part::Feature", name)
        thing.Shape = shape
        thing.Placement = placement
        return thing

    vector = FreeCAD.Vector
    wire = feature("Wire", Part.makePolygon([vector(100, 0, 0), vector(110, 0, 5), vector(110, 10, 9)]))
    arc = feature("Arc", Part.makeCircle(5, vector(0, 0, 0), vector(0, 0, 1), 0, 180),
                  FreeCAD.Placement(vector(120, 100, 0), FreeCAD.Rotation()))
    sketch = document.addObject("Sketcher::SketchObject", "Sketch")
    sketch.addGeometry(Part.LineSegment(vector(0, 0, 0), vector(8, 0, 0)))
    sketch.Placement = FreeCAD.Placement(vector(140, 0, 0), FreeCAD.Rotation(vector(0, 0, 1), 90))
    flag = feature("Flag", Part.makeCompound([Part.makePlane(4, 2), Part.makeLine(vector(0, 0, 0), vector(0, -6, 0))]),
                   FreeCAD.Placement(vector(160, 0, 0), FreeCAD.Rotation()))
    # An aid for construction, which is no part of the drawing.
    document.addObject("PartDesign::Line", "Axis")
    document.recompute()
    return [wire, arc, sketch, flag]


def triangles(thing):
    """In the document's coordinates."""
    is_link = thing.isDerivedFrom("App::Link")
    placement = thing.Placement if is_link else thing.getGlobalPlacement()
    if thing.isDerivedFrom("Mesh::Feature"):
        mesh = thing.Mesh.copy()
    else:
        shape = thing.getLinkedObject(True).Shape.copy()
        # The triangles of a surface depend on where it is.
        shape.Placement = FreeCAD.Placement()
        mesh = Mesh.Mesh(shape.tessellate(0.1))
    mesh.Placement = placement
    return mesh


def main():
    folder = os.environ["PLAN_DIRECTORY"]
    document = FreeCAD.newDocument()
    things = build(document)
    lines = build_lines(document)
    macro = {"__name__": "macro"}
    with open(os.environ["PLAN_MACRO"], encoding="utf-8") as file:
        exec(compile(file.read(), os.environ["PLAN_MACRO"], "exec"), macro)
    drawn, findings = macro["export_plan"](document, f"{folder}/plate.dxf")
    assert (drawn, findings) == (len(things + lines), []), ([thing.Name for thing in macro["drawn_things"](document)], findings)
    try:
        macro["export_plan"](document, f"{folder}/missing/plate.dxf")
        raise AssertionError("exported into a directory that is not there")
    except macro["ktscene"].Error as error:
        assert "missing/plate.dxf" in str(error), error
    # One file for each, as dxf2d draws objects one by one.
    for thing in things:
        triangles(thing).write(f"{folder}/{thing.Name}.stl")
    document.saveAs(f"{folder}/plate.FCStd")
    print("exported")


try:
    main()
except BaseException:  # FreeCAD would go on, to its prompt.
    traceback.print_exc(file=sys.stdout)
    sys.stdout.flush()
    os._exit(1)
os._exit(0)
