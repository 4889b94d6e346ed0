#include "app/export/block_sources.h"

#include <bit>
#include <cmath>
#include <string>
#include <unordered_map>

#include "platform/path_text.h"

namespace dxf2d {

namespace {

std::string blockName(std::size_t number) { return "GO_" + std::to_string(number); }

// A place in the scene as the walk reaches it.
struct Visited {
  const KtSceneNode* node;
  SourceName object;
  SourceName group;
  std::int32_t trueColor;
  // Below the top, the leaf of `source`; the node itself otherwise.
  const NodeSource* source;
  std::size_t leaf;
  // Once its children are done.
  bool isLeaving;
  std::size_t block;
};

std::int32_t trueColorOf(const KtSceneNode& node, std::int32_t inherited) {
  if (!node.color) {
    return inherited;
  }
  std::int32_t rgb = 0;
  for (const double component : *node.color) {
    constexpr double kMost = 255.0;
    const double level = component >= 0.0 && component <= 1.0 ? component : 0.0;
    rgb = rgb << 8 | static_cast<std::int32_t>(std::lround(level * kMost));
  }
  return rgb;
}

class TableMaker {
 public:
  TableMaker(const KtScene& scene, const std::vector<NodeSource>& sources,
             const std::vector<std::uint8_t>& taken)
      : scene_(scene), sources_(sources), taken_(taken) {}

  finish::SideTable Run() {
    for (std::size_t i = 0; i < scene_.nodes.size(); ++i) {
      const NodeSource* const source = sources_.empty() ? nullptr : &sources_[i];
      open_.push_back({&scene_.nodes[i], {}, {}, kNoTrueColor, source, 0, false, 0});
      while (!open_.empty()) {
        const Visited next = std::move(open_.back());
        open_.pop_back();
        if (next.isLeaving) {
          AddInsert(next);
        } else {
          Enter(next);
        }
      }
    }
    return std::move(table_);
  }

 private:
  void Enter(Visited place) {
    const KtSceneNode& node = *place.node;
    if (node.lod) {
      if (!node.lod->levels.empty()) {
        place.node = &node.lod->levels.front();
        open_.push_back(std::move(place));
      }
      return;
    }
    const std::size_t number = ++count_;
    const bool isTaken = number <= taken_.size() && taken_[number - 1] != 0;
    Name(place);
    place.trueColor = trueColorOf(node, place.trueColor);
    place.block = number;
    if (isTaken) {
      const auto drawn = drawn_.find(node.graphicName);
      place.block = drawn == drawn_.end() ? number : drawn->second;
    } else if (!node.graphicName.empty() && !node.realObjectId.empty()) {
      drawn_[node.graphicName] = number;
    }
    place.isLeaving = true;
    open_.push_back(place);
    if (isTaken) {
      return;
    }
    if (!node.geometry.empty() || node.label) {
      AddBlock(place);
    }
    place.isLeaving = false;
    for (std::size_t i = node.children.size(); i-- > 0;) {
      Visited child = place;
      child.node = &node.children[i];
      child.leaf = i;
      if (place.source != nullptr && !place.source->nodes.empty()) {
        child.source = &place.source->nodes[i];
      }
      open_.push_back(std::move(child));
    }
  }

  void Name(Visited& place) const {
    const KtSceneNode& node = *place.node;
    if (place.source != nullptr) {
      place.object = place.source->object;
      place.group = place.source->group;
    } else if (!node.objectId.empty()) {
      place.group = place.object;
      // Nodes stay where they are.
      place.object = {pathToBytes(node.objectId), std::bit_cast<std::uintptr_t>(&node)};
    }
  }

  void AddBlock(const Visited& place) {
    finish::BlockSource block{place.object, place.group, {}};
    if (place.source == nullptr) {
      block.part.trueColor = place.trueColor;
      block.part.kind = place.node->geometry.empty() ? PartKind::kLabel : PartKind::kBorder;
    } else if (place.leaf < place.source->leaves.size()) {
      block.part = place.source->leaves[place.leaf];
    }
    table_.blocks.emplace(blockName(place.block), std::move(block));
  }

  void AddInsert(const Visited& place) {
    if (!place.node->objectId.empty()) {
      table_.inserts.push_back({blockName(place.block), place.object, place.group});
    }
  }

  const KtScene& scene_;
  const std::vector<NodeSource>& sources_;
  const std::vector<std::uint8_t>& taken_;
  finish::SideTable table_;
  std::vector<Visited> open_;
  // Of the nodes so far; the first is 1.
  std::size_t count_ = 0;
  // The block that was drawn last under a graphic name.
  std::unordered_map<std::u16string, std::size_t> drawn_;
};

}  // namespace

finish::SideTable sideTableOf(const KtScene& scene, const std::vector<NodeSource>& sources,
                              const std::vector<std::uint8_t>& taken) {
  return TableMaker(scene, sources, taken).Run();
}

}  // namespace dxf2d
