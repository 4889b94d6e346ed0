// What a model holds, node by node.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "app/model/affine.h"
#include "app/model/length_unit.h"
#include "app/model/model_limits.h"
#include "app/model/model_source.h"
#include "app/model/object_choice.h"
#include "app/model/part_color.h"

struct aiScene;

namespace dxf2d {

// A node of the model. Counts and size are those of the node and all below it.
struct ListedNode {
  // Number of the parent in the list, which comes before it; kNoParent (model_objects.h) for the
  // root.
  std::size_t parent = 0;
  std::size_t depth = 0;
  std::string name;
  std::string path;
  std::size_t objects = 0;
  // Objects whose meshes an earlier one has, too.
  std::size_t instances = 0;
  // Of the faces once they are cut into triangles; those of instances counted again.
  std::size_t triangles = 0;
  // Corners of the box around its vertices, in the model's units, z up; least above greatest where
  // there is none.
  std::array<double, 3> least{};
  std::array<double, 3> greatest{};
  // Of its own first mesh.
  std::optional<Color> color;
};

// The nodes that `filter` chooses and those that lead to them, a node before its children.
// `upright` is the turn that brings z up. Throws as collectObjects does; above the limit of
// vertices as well, instances counted again.
std::vector<ListedNode> listNodes(const aiScene& model, const Affine& upright,
                                  const ObjectFilter& filter, const ModelSource& source,
                                  LimitChecker& limits);

// The list as a table, a line for each node, indented as the tree.
std::string listingAsText(const std::vector<ListedNode>& nodes, LengthUnit unit);

// The list as a JSON document: {"model", "unit", "nodes": [{"name", "path", "depth", "parent",
// "objects", "instances", "triangles", "size", "color"}]}. "parent" is a number in the list or
// null, "size" three numbers or null, "color" "#rrggbb" or null.
std::string listingAsJson(const std::vector<ListedNode>& nodes, LengthUnit unit,
                          const std::string& path);

}  // namespace dxf2d
