#include "app/model/storey.h"

#include <assimp/scene.h>

#include <limits>
#include <unordered_set>

#include "app/cli/failure.h"
#include "app/cli/translation.h"
#include "app/model/label_name.h"
#include "app/model/name_pattern.h"

namespace dxf2d {
namespace {

// What assimp puts before the name of an IfcBuildingStorey.
constexpr std::string_view kStoreyClass = "IfcBuildingStorey_";

std::string listOf(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) {
    list += (list.empty() ? "'" : ", '") + name + "'";
  }
  return list;
}

}  // namespace

bool isStorey(const aiNode& node) { return nameOf(node).starts_with(kStoreyClass); }

Storey findStorey(const aiScene& model, const Affine& sheet, const std::string& pattern,
                  const std::string& path) {
  const std::u16string folded = foldedCase(pattern);
  std::vector<std::string> names;
  std::vector<std::string> matches;
  Storey storey;
  // The walk for the objects counts the nodes.
  constexpr std::size_t kAny = std::numeric_limits<std::size_t>::max();
  LimitChecker limits({kAny, kAny}, path);
  walkNodes(model, sheet, limits, [&](const VisitedNode& visited) {
    if (!isStorey(visited.node)) {
      return;
    }
    const std::string name = nameOf(visited.node);
    const std::string readable = readableName(name);
    names.push_back(readable.empty() ? name : readable);
    if (matchesPattern(foldedCase(readable), folded) || matchesPattern(foldedCase(name), folded)) {
      matches.push_back(names.back());
      storey = {&visited.node, visited.world.shift[2]};
    }
  });
  if (names.empty()) {
    throw UsageError({path, tr("--storey needs a model with storeys, such as a building in IFC"),
                      tr("use --cut instead")});
  }
  if (matches.size() != 1) {
    const char* const problem = matches.empty()
                                    ? marked("no storey matches --storey '%1'")
                                    : marked("more than one storey matches --storey '%1'");
    throw UsageError({path, tr(problem, {pattern}), tr("choose one of %1", {listOf(names)})});
  }
  return storey;
}

void keepObjectsBelow(const aiNode& node, std::vector<ModelObject>& objects) {
  std::unordered_set<const aiNode*> below;
  std::vector<const aiNode*> ahead{&node};
  while (!ahead.empty()) {
    const aiNode& next = *ahead.back();
    ahead.pop_back();
    below.insert(&next);
    ahead.insert(ahead.end(), next.mChildren, next.mChildren + next.mNumChildren);
  }
  std::erase_if(objects, [&](const ModelObject& object) { return !below.contains(object.node); });
}

}  // namespace dxf2d
