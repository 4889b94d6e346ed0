#include "app/model/model_listing.h"

#include <assimp/scene.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>

#include "app/cli/printable.h"
#include "app/cli/translation.h"
#include "app/model/mesh_check.h"
#include "app/model/model_objects.h"

namespace dxf2d {
namespace {

using Json = nlohmann::ordered_json;

void addBox(const SourceMesh& mesh, const Affine& world, ListedNode& node) {
  mesh.WithVertices([&](const auto& at) {
    for (std::size_t i = 0; i < mesh.VertexCount(); ++i) {
      const auto& v = at(i);
      Affine point;
      point.shift = {v.x, v.y, v.z};
      const std::array<double, 3> placed = compose(point, world).shift;
      for (std::size_t axis = 0; axis < 3; ++axis) {
        node.least[axis] = std::min(node.least[axis], placed[axis]);
        node.greatest[axis] = std::max(node.greatest[axis], placed[axis]);
      }
    }
  });
}

std::size_t trianglesOf(const SourceMesh& mesh) {
  std::size_t triangles = 0;
  mesh.VisitFaces([&triangles](const unsigned*, unsigned corners) {
    triangles += corners < 3 ? 0 : corners - 2;
  });
  return triangles;
}

std::optional<Color> colorOf(const aiScene& model, const aiMesh& mesh) {
  const unsigned material = mesh.mMaterialIndex;
  if (material >= model.mNumMaterials || model.mMaterials[material] == nullptr) {
    return std::nullopt;
  }
  return materialColor(*model.mMaterials[material]);
}

// Adds to each node what the nodes below it hold.
void addUpwards(std::vector<ListedNode>& nodes) {
  for (std::size_t i = nodes.size(); i-- > 1;) {
    const ListedNode& node = nodes[i];
    ListedNode& parent = nodes[node.parent];
    parent.objects += node.objects;
    parent.instances += node.instances;
    parent.triangles += node.triangles;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      parent.least[axis] = std::min(parent.least[axis], node.least[axis]);
      parent.greatest[axis] = std::max(parent.greatest[axis], node.greatest[axis]);
    }
  }
}

// Leaves out nodes without objects where only some are chosen.
std::vector<ListedNode> withObjects(std::vector<ListedNode> nodes) {
  std::vector<std::size_t> numbers(nodes.size(), kNoParent);
  std::vector<ListedNode> kept;
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    if (nodes[i].objects == 0) {
      continue;
    }
    numbers[i] = kept.size();
    kept.push_back(std::move(nodes[i]));
    if (kept.back().parent != kNoParent) {
      kept.back().parent = numbers[kept.back().parent];
    }
  }
  return kept;
}

bool hasSize(const ListedNode& node) { return node.least[0] <= node.greatest[0]; }

std::string colorText(const Color& color) {
  char text[8];
  const auto byte = [](double component) {
    return static_cast<unsigned>(std::lround(component * 255.0)) & 0xffU;
  };
  std::snprintf(text, sizeof text, "#%02x%02x%02x", byte(color[0]), byte(color[1]), byte(color[2]));
  return text;
}

std::string sizeText(const ListedNode& node) {
  if (!hasSize(node)) {
    return "-";
  }
  char text[96];
  std::snprintf(text, sizeof text, "%.4g x %.4g x %.4g", node.greatest[0] - node.least[0],
                node.greatest[1] - node.least[1], node.greatest[2] - node.least[2]);
  return text;
}

Json jsonOf(const ListedNode& node) {
  Json json;
  json["name"] = node.name;
  json["path"] = node.path;
  json["depth"] = node.depth;
  json["parent"] = node.parent == kNoParent ? Json() : Json(node.parent);
  json["objects"] = node.objects;
  json["instances"] = node.instances;
  json["triangles"] = node.triangles;
  json["size"] = nullptr;
  if (hasSize(node)) {
    json["size"] = {node.greatest[0] - node.least[0], node.greatest[1] - node.least[1],
                    node.greatest[2] - node.least[2]};
  }
  json["color"] = node.color ? Json(colorText(*node.color)) : Json();
  return json;
}

}  // namespace

std::vector<ListedNode> listNodes(const aiScene& model, const Affine& upright,
                                  const ObjectFilter& filter, const ModelSource& source,
                                  LimitChecker& limits) {
  // Throws for all that is wrong, and says which nodes are chosen.
  const std::vector<ModelObject> objects =
      collectObjects(model, upright, filter, source.path, limits);
  std::size_t next = 0;
  std::set<std::vector<unsigned>> seen;
  std::vector<ListedNode> nodes;
  walkNodes(model, upright, limits, [&](const VisitedNode& visited) {
    ListedNode& node = nodes.emplace_back();
    node.parent = visited.parent;
    node.depth = visited.depth;
    node.name = nameOf(visited.node);
    node.path = visited.path;
    node.least.fill(std::numeric_limits<double>::infinity());
    node.greatest.fill(-std::numeric_limits<double>::infinity());
    if (next == objects.size() || objects[next].node != &visited.node) {
      return;
    }
    const ModelObject& object = objects[next++];
    node.objects = 1;
    node.instances = seen.insert(object.meshes).second ? 0 : 1;
    for (const unsigned mesh : object.meshes) {
      const SourceMesh held = sourceMesh(model, source, mesh);
      limits.AddVertices(held.VertexCount());
      addBox(held, object.world, node);
      node.triangles += trianglesOf(held);
    }
    node.color = colorOf(model, *model.mMeshes[object.meshes.front()]);
  });
  requireUnchanged(source);
  addUpwards(nodes);
  return filter.IsEmpty() ? nodes : withObjects(std::move(nodes));
}

std::string listingAsText(const std::vector<ListedNode>& nodes, LengthUnit unit) {
  // Deeper nodes are indented no further, so that a chain of nodes does not grow without bound.
  constexpr std::size_t kDeepest = 40;
  std::string text = tr("objects instances triangles   color  name, and size in units (%1)",
                        {tr(unitName(unit).c_str())}) +
                     "\n";
  for (const ListedNode& node : nodes) {
    char counts[96];
    std::snprintf(counts, sizeof counts, "%7zu %9zu %9zu %7s  ", node.objects, node.instances,
                  node.triangles, node.color ? colorText(*node.color).c_str() : "-");
    text += counts + std::string(2 * std::min(node.depth, kDeepest), ' ') +
            (node.name.empty() ? tr("(unnamed)") : printable(node.name)) + "  " + sizeText(node) +
            "\n";
  }
  return text;
}

std::string listingAsJson(const std::vector<ListedNode>& nodes, LengthUnit unit,
                          const std::string& path) {
  Json json;
  json["model"] = path;
  json["unit"] = unitName(unit);
  json["nodes"] = Json::array();
  for (const ListedNode& node : nodes) {
    json["nodes"].push_back(jsonOf(node));
  }
  // Names that are not UTF-8 show U+FFFD.
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace dxf2d
