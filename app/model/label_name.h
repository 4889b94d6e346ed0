// Names of a model's nodes as people would write them on a drawing.
#pragma once

#include <string>
#include <string_view>

namespace dxf2d {

// `name` (UTF-8) without what exporters added to it: identifiers (IFC GUIDs, hexadecimal numbers),
// counters ("Mesh.001", "nodes[55]", "chair_12"), the class that IFC readers write in front
// ("IfcWallStandardCase_"), and underscores for spaces. Points of omission stay. Empty when nothing
// readable is left: generic words of exporters ("Mesh", "node", "IfcMappedItem", "Object",
// "Geometry"), numbers, or an identifier alone.
std::string readableName(std::string_view name);

// True for helper objects, which have no label: bounding boxes and volumes, colliders, cameras,
// lights.
bool isHelperName(std::string_view name);

}  // namespace dxf2d
