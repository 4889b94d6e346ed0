"""Run in Blender: builds a scene, and exports it as a plan by the add-on and as OBJ for dxf2d.

usage: blender -b --factory-startup --python blender_scene.py -- ADD_ON DIRECTORY
"""
import importlib.util
import math
import pathlib
import sys

import bpy

add_on, folder = sys.argv[sys.argv.index("--") + 1:]
folder = pathlib.Path(folder)
bpy.ops.object.select_all(action="SELECT")
bpy.ops.object.delete()

# A table: a top, four legs that share a mesh, a modifier, and a cone that leans.
bpy.ops.mesh.primitive_cube_add(size=1, location=(0, 0, 1))
top = bpy.context.object
top.name = "top"
top.scale = (4, 2, 0.1)
top.rotation_euler = (0, 0, math.radians(20))
bpy.ops.mesh.primitive_cube_add(size=0.2, location=(1, 0.5, 0.5))
leg = bpy.context.object
for x, y, turn in ((-1, 0.5, 0.3), (1, -0.5, 0.6), (-1, -0.5, 0.9)):
    copy = leg.copy()
    copy.location = (x, y, 0.5)
    copy.rotation_euler = (0, 0, turn)
    bpy.context.collection.objects.link(copy)
bpy.ops.mesh.primitive_cube_add(size=1, location=(6, 0, 0))
array = bpy.context.object.modifiers.new("array", "ARRAY")
array.count = 3
array.relative_offset_displace = (1.5, 0, 0)
bpy.ops.mesh.primitive_cone_add(vertices=12, radius1=1, depth=3, location=(0, 6, 0), rotation=(0.4, 0.5, 0))
# Edges without faces: a mesh of some and a triangle, one of nothing else, and a curve.
for name, points, edges, faces in (
        ("kite", [(0, 0, 0), (1, 0, 0), (0, 1, 0), (-1, -2, 0)], [(0, 3)], [(0, 1, 2)]),
        ("wire", [(0, 0, 0), (2, 0, 1), (2, 1, 2)], [(0, 1), (1, 2)], [])):
    mesh = bpy.data.meshes.new(name)
    mesh.from_pydata(points, edges, faces)
    thing = bpy.data.objects.new(name, mesh)
    thing.location = (10, 10, 0) if name == "kite" else (20, 10, 0)
    bpy.context.collection.objects.link(thing)
curve = bpy.data.curves.new("path", "CURVE")
curve.dimensions = "3D"
spline = curve.splines.new("POLY")
spline.points.add(2)
for point, place in zip(spline.points, ((30, 10), (33, 10), (33, 14))):
    point.co = (*place, 0, 1)
bpy.context.collection.objects.link(bpy.data.objects.new("path", curve))
bpy.ops.mesh.primitive_cube_add(size=9, location=(50, 50, 0))
bpy.context.object.hide_set(True)
material = bpy.data.materials.new("red")
material.diffuse_color = (1, 0, 0, 1)
top.data.materials.append(material)

spec = importlib.util.spec_from_file_location("export_plan", add_on)
module = importlib.util.module_from_spec(spec)
spec.loader.exec_module(module)
module.register()
assert bpy.ops.export_scene.plan(filepath=str(folder / "table.dxf")) == {"FINISHED"}
try:
    bpy.ops.export_scene.plan(filepath=str(folder / "missing" / "table.dxf"))
    raise AssertionError("exported into a directory that is not there")
except RuntimeError as error:
    assert "missing/table.dxf" in str(error), error
drawn, findings = module.export_plan(bpy.context, str(folder / "again.dxf"))
assert (drawn, findings) == (10, []), (drawn, findings)
for thing in bpy.context.visible_objects:
    thing.select_set(True)
bpy.ops.export_scene.obj(filepath=str(folder / "table.obj"), use_selection=True, axis_forward="Y", axis_up="Z",
                         use_materials=False, use_mesh_modifiers=True)
module.unregister()
print("exported")
