"""A Blender add-on that exports the scene as a plan in DXF: File > Export > Plan (.dxf).

Install this file in Preferences > Add-ons > Install. It needs the module ktscene in Blender's
Python (PYTHONPATH, or python3-ktscene where Blender is Debian's). Without windows:

    blender -b house.blend --python export_plan.py -- house.dxf
"""
import sys

import bpy
import ktscene
import numpy
from bpy.props import BoolProperty, StringProperty
from bpy_extras.io_utils import ExportHelper

bl_info = {
    "name": "Export plan (DXF)",
    "author": "dxf2d",
    "version": (1, 0, 0),
    "blender": (2, 93, 0),
    "location": "File > Export",
    "description": "Exports what is visible as a plan, seen from above",
    "category": "Import-Export",
}

# Types that have surfaces or edges; Blender makes no meshes for others.
TYPES = {"MESH", "CURVE", "SURFACE", "META", "FONT"}


class MeshArrays:
    """The arrays of a mesh as they are after its modifiers: its polygons, and its edges without any."""

    def __init__(self, mesh):
        self.coords = numpy.empty(3 * len(mesh.vertices), numpy.float32)
        mesh.vertices.foreach_get("co", self.coords)
        self.corners = numpy.empty(len(mesh.loops), numpy.int32)
        mesh.loops.foreach_get("vertex_index", self.corners)
        self.counts = numpy.empty(len(mesh.polygons), numpy.int32)
        mesh.polygons.foreach_get("loop_total", self.counts)
        edges = numpy.empty(2 * len(mesh.edges), numpy.int32)
        mesh.edges.foreach_get("vertices", edges)
        is_loose = numpy.ones(len(mesh.edges), bool)
        used = numpy.empty(len(mesh.loops), numpy.int32)
        mesh.loops.foreach_get("edge_index", used)
        is_loose[used] = False
        self.loose = edges.reshape(-1, 2)[is_loose]

    def is_empty(self):
        return not len(self.counts) and not len(self.loose)

    def add_to(self, node):
        if not len(self.loose):
            # Blender's own lists, without a copy.
            node.add_faces(self.coords, self.corners, counts=self.counts)
            return
        lines = numpy.insert(self.loose, 2, ktscene.Run.SEGMENT, axis=1).ravel()
        if not len(self.counts):
            node.add_lines(self.coords, lines)
            return
        polygons = numpy.insert(self.corners, numpy.cumsum(self.counts), ktscene.Run.POLYGON)
        node.add_faces(self.coords, numpy.concatenate((polygons, lines)))


def row_vectors(matrix):
    """Blender's matrices are for column vectors."""
    return [number for row in matrix.transposed() for number in row]


def color_of(thing):
    """The viewport color of the first material, if there is one."""
    materials = [slot.material for slot in thing.material_slots if slot.material is not None]
    return tuple(min(max(part, 0.0), 1.0) for part in materials[0].diffuse_color[:3]) if materials else None


def visible_instances(depsgraph, only_selected):
    """Each object that shows and what it is an instance of, those of collections and particles too."""
    for instance in depsgraph.object_instances:
        thing = instance.object
        source = instance.parent if instance.is_instance else thing
        if thing.type in TYPES and instance.show_self and (not only_selected or source.original.select_get()):
            yield instance, thing


def add_instance(scene, number, instance, thing, arrays, first_of):
    """Adds an object of the drawing. Those that share a mesh are one block where they look alike."""
    # Without modifiers, objects of one mesh share it; else each has one of its own.
    owner = thing.original if thing.original.modifiers or thing.type != "MESH" else thing.original.data
    if owner not in arrays:
        mesh = thing.to_mesh()
        arrays[owner] = MeshArrays(mesh)
        thing.to_mesh_clear()
    mesh = arrays[owner]
    if mesh.is_empty():
        return 0
    # The name alone would not do: instances share it.
    node = scene.add_object(f"{thing.name} #{number}", f"{type(owner).__name__} {owner.name_full}",
                            matrix=row_vectors(instance.matrix_world), color=color_of(thing))
    if owner in first_of:
        node.share(first_of[owner])
    else:
        mesh.add_to(node)
        first_of[owner] = node
    return 1


def export_plan(context, path, only_selected=False):
    """Draws what is visible into the file at `path`. Returns the number of objects, and findings."""
    arrays = {}
    first_of = {}
    drawn = 0
    with ktscene.Scene() as scene:
        instances = visible_instances(context.evaluated_depsgraph_get(), only_selected)
        for number, (instance, thing) in enumerate(instances):
            drawn += add_instance(scene, number, instance, thing, arrays, first_of)
        if not drawn:
            raise ValueError(f"{path}: nothing to draw; make an object with faces or edges visible")
        findings = scene.check()
        scene.draw(path)
    return drawn, findings


class EXPORT_SCENE_OT_plan(bpy.types.Operator, ExportHelper):
    """Export what is visible as a plan in DXF, seen from above"""

    bl_idname = "export_scene.plan"
    bl_label = "Export Plan"
    filename_ext = ".dxf"
    filter_glob: StringProperty(default="*.dxf", options={"HIDDEN"})
    only_selected: BoolProperty(name="Selected only", description="Export selected objects only")

    def execute(self, context):
        try:
            drawn, findings = export_plan(context, self.filepath, self.only_selected)
        except (ktscene.Error, ValueError) as error:
            self.report({"ERROR"}, str(error))
            return {"CANCELLED"}
        for finding in findings:
            self.report({"WARNING"}, f"{finding.node} {finding.problem}; {finding.remedy}")
        self.report({"INFO"}, f"{self.filepath}: {drawn} objects")
        return {"FINISHED"}


def menu_entry(self, _):
    self.layout.operator(EXPORT_SCENE_OT_plan.bl_idname, text="Plan (.dxf)")


def register():
    bpy.utils.register_class(EXPORT_SCENE_OT_plan)
    bpy.types.TOPBAR_MT_file_export.append(menu_entry)


def unregister():
    bpy.types.TOPBAR_MT_file_export.remove(menu_entry)
    bpy.utils.unregister_class(EXPORT_SCENE_OT_plan)


def main():
    """Run by `blender --python`: with a path after "--" the scene is exported, else the menu is extended."""
    register()
    if "--" in sys.argv and sys.argv[sys.argv.index("--") + 1:]:
        path = sys.argv[sys.argv.index("--") + 1]
        try:
            print(f"{path}: {export_plan(bpy.context, path)[0]} objects")
        except (ktscene.Error, ValueError) as error:
            print(f"export_plan: {error}", file=sys.stderr)
            sys.exit(1)


if __name__ == "__main__":
    main()
