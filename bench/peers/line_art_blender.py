"""Draws the visible lines of an STL, seen from above, with Blender's line art.

usage: blender --background --factory-startup --python line_art_blender.py -- MODEL.stl

Borders, silhouettes, creases and intersections, as `dxf2d export --hidden remove` draws them. Prints
the seconds that line art alone takes, without Blender's start and the reading of the model.
"""
import math
import sys
import time

import bpy
import numpy as np

# Lines at which faces meet at a smaller angle are creases.
CREASE = math.radians(180 - 30)


def main():
    scene = bpy.context.scene
    for thing in list(bpy.data.objects):
        bpy.data.objects.remove(thing)
    read_stl(sys.argv[-1], scene)
    lines = make_line_art(scene)
    start = time.perf_counter()
    lines.grease_pencil_modifiers[0].show_viewport = True
    evaluated = lines.evaluated_get(bpy.context.evaluated_depsgraph_get()).data
    seconds = time.perf_counter() - start
    strokes = sum(len(frame.strokes) for layer in evaluated.layers for frame in layer.frames)
    if strokes == 0:
        sys.exit("line_art_blender: nothing was drawn")
    print(f"strokes {strokes}")
    print(f"seconds {seconds:.3f}")


def read_stl(path, scene):
    """As one mesh, which the importer welds, with a camera right above it."""
    bpy.ops.import_mesh.stl(filepath=path)
    mesh = bpy.context.object.data
    points = np.empty(3 * len(mesh.vertices), dtype=np.float32)
    mesh.vertices.foreach_get("co", points)
    points = points.reshape(-1, 3)
    low, high = points.min(axis=0), points.max(axis=0)
    camera = bpy.data.cameras.new("camera")
    camera.type = "ORTHO"
    camera.ortho_scale = 1.1 * float((high - low)[:2].max())
    height = float((high - low).max())
    camera.clip_start, camera.clip_end = 0.1 * height, 10 * height
    eye = bpy.data.objects.new("camera", camera)
    eye.location = ((low[0] + high[0]) / 2, (low[1] + high[1]) / 2, high[2] + height)
    scene.collection.objects.link(eye)
    scene.camera = eye
    scene.render.resolution_x = scene.render.resolution_y = 1000
    bpy.context.view_layer.update()


def make_line_art(scene):
    data = bpy.data.grease_pencils.new("lines")
    data.layers.new("lines").frames.new(scene.frame_current)
    ink = bpy.data.materials.new("ink")
    bpy.data.materials.create_gpencil_data(ink)
    data.materials.append(ink)
    lines = bpy.data.objects.new("lines", data)
    scene.collection.objects.link(lines)
    modifier = lines.grease_pencil_modifiers.new("lines", "GP_LINEART")
    modifier.show_viewport = False
    modifier.source_type = "SCENE"
    modifier.target_layer = "lines"
    modifier.target_material = ink
    modifier.use_contour = modifier.use_loose = True
    modifier.use_crease = modifier.use_intersection = True
    modifier.use_material = modifier.use_edge_mark = False
    modifier.crease_threshold = CREASE
    return lines


main()
