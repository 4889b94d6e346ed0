// What the nodes of a plan are of: what a drawing does not say.
#pragma once

#include <vector>

#include "app/drawing/part_source.h"
#include "app/model/part_color.h"

struct aiNode;
struct aiScene;

namespace dxf2d {

// Of a node at the top of a plan scene, or of a view.
struct NodeSource {
  SourceName object;
  // What the object is in: its storey, else the group right above it.
  SourceName group;
  // One for each child; of a label the only one is for the node itself.
  std::vector<PartSource> leaves;
  // Of a view of a sheet, which is of no object: one for each child, and no leaves.
  std::vector<NodeSource> nodes;
};

// Tells where what is drawn of a model comes from.
class SourceFinder {
 public:
  // Refers to the model.
  SourceFinder(const aiScene& model, PlanColors colors) : model_(model), colors_(colors) {}

  // Without leaves. The names are cleaned (readableName) where that leaves something. Objects
  // without a readable name, of their own or of a mesh, are parts of the nearest group that has
  // one, few levels above.
  NodeSource SourceOf(const aiNode& node) const;
  PartSource LeafOf(unsigned mesh, PartKind kind) const;

 private:
  // Hierarchies may be deep, and each object looks for itself.
  static constexpr int kMostLevels = 64;

  std::string ReadableName(const aiNode& node) const;
  SourceName NameOf(const aiNode& node) const;

  const aiScene& model_;
  PlanColors colors_;
};

}  // namespace dxf2d
