"""Renders a glTF model from a corner, shaded, on white paper.

usage: blender --background --factory-startup --python render_model.py -- MODEL.glb PICTURE.png [SIZE]
"""
import math
import sys

import bpy
import numpy
from mathutils import Matrix, Vector

# From the front left, as --view -30,25 of dxf2d export.
AZIMUTH = math.radians(-30)
ELEVATION = math.radians(25)


def main():
    model, picture, *size = sys.argv[sys.argv.index("--") + 1:]
    bpy.ops.wm.read_factory_settings(use_empty=True)
    # Blender 3.4 asks for a name that numpy 1.24 no longer has.
    numpy.bool = bool
    bpy.ops.import_scene.gltf(filepath=model)
    scene = bpy.context.scene
    # Importers of dxf2d write models with z up; Blender takes the y of glTF to be up.
    for thing in scene.objects:
        if thing.parent is None:
            thing.matrix_world = Matrix.Rotation(math.radians(-90), 4, "X") @ thing.matrix_world
    bpy.context.view_layer.update()
    add_camera(scene, corners(scene))
    add_light(scene)
    scene.render.engine = "CYCLES"
    scene.cycles.samples = 32
    scene.cycles.use_denoising = False
    scene.view_settings.view_transform = "Standard"
    scene.render.film_transparent = True
    scene.render.resolution_x = scene.render.resolution_y = int(size[0]) if size else 800
    scene.render.filepath = picture
    bpy.ops.render.render(write_still=True)


def corners(scene):
    """Those of the boxes around all meshes."""
    return [thing.matrix_world @ Vector(corner)
            for thing in scene.objects if thing.type == "MESH" for corner in thing.bound_box]


def add_camera(scene, points):
    towards_viewer = Vector((math.sin(AZIMUTH) * math.cos(ELEVATION),
                             -math.cos(AZIMUTH) * math.cos(ELEVATION), math.sin(ELEVATION)))
    turned = towards_viewer.to_track_quat("Z", "Y")
    seen = [turned.inverted() @ point for point in points]
    low = Vector(min(point[axis] for point in seen) for axis in range(3))
    high = Vector(max(point[axis] for point in seen) for axis in range(3))
    data = bpy.data.cameras.new("camera")
    data.type = "ORTHO"
    data.ortho_scale = 1.02 * max(high.x - low.x, high.y - low.y)
    data.clip_end = 10 * (high - low).length
    camera = bpy.data.objects.new("camera", data)
    middle = (low + high) / 2
    camera.location = turned @ Vector((middle.x, middle.y, high.z + (high - low).length))
    camera.rotation_euler = turned.to_euler()
    scene.collection.objects.link(camera)
    scene.camera = camera


def add_light(scene):
    world = bpy.data.worlds.new("sky")
    world.use_nodes = True
    world.node_tree.nodes["Background"].inputs["Strength"].default_value = 0.55
    world.node_tree.nodes["Background"].inputs["Color"].default_value = (0.75, 0.8, 0.9, 1)
    scene.world = world
    sun = bpy.data.objects.new("sun", bpy.data.lights.new("sun", "SUN"))
    sun.data.energy = 1.6
    sun.rotation_euler = (math.radians(45), 0, math.radians(-60))
    scene.collection.objects.link(sun)


if __name__ == "__main__":
    main()
