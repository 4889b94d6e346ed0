#include "app/finish/layer_colors.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <unordered_set>
#include <utility>
#include <variant>
#include <vector>

namespace dxf2d::finish {

namespace {

using LayerNumber = std::uint32_t;

EntityProperties& propertiesOf(DrawingEntity& entity) {
  return std::visit([](EntityProperties& properties) -> EntityProperties& { return properties; },
                    entity);
}

template <typename Visit>
void forEachEntity(Drawing& drawing, const Visit& visit) {
  for (DrawingEntity& entity : drawing.entities) {
    visit(entity);
  }
  for (DrawingBlock& block : drawing.blocks) {
    for (DrawingEntity& entity : block.entities) {
      visit(entity);
    }
  }
}

// For each block the layers that its layer "0" stands for; for no block any where there are too
// many in all.
std::vector<std::vector<LayerNumber>> findInheritedLayers(const Drawing& drawing) {
  constexpr std::size_t kMost = 1'000'000;
  std::vector<std::vector<LayerNumber>> layers(drawing.blocks.size());
  std::unordered_set<std::uint64_t> found;
  std::vector<std::pair<std::size_t, LayerNumber>> open;
  const auto addAll = [&](const std::vector<DrawingEntity>& entities, LayerNumber around) {
    for (const DrawingEntity& entity : entities) {
      const auto* insert = std::get_if<InsertEntity>(&entity);
      if (insert == nullptr) {
        continue;
      }
      const LayerNumber layer = insert->layer != 0 ? insert->layer : around;
      if (found.insert(std::uint64_t{layer} << 32U | insert->block).second) {
        layers[insert->block].push_back(layer);
        open.emplace_back(insert->block, layer);
      }
    }
  };
  addAll(drawing.entities, 0);
  while (!open.empty() && found.size() <= kMost) {
    const auto [block, layer] = open.back();
    open.pop_back();
    addAll(drawing.blocks[block].entities, layer);
  }
  return open.empty() ? layers : std::vector<std::vector<LayerNumber>>(drawing.blocks.size());
}

using Color = std::pair<int, std::int32_t>;

bool isByLayer(const EntityProperties& properties) {
  return properties.color == kColorByLayer && properties.trueColor == kNoTrueColor;
}

// The color that an entity shows on its layer.
Color shownColor(const EntityProperties& properties, const Layer& layer) {
  return isByLayer(properties) ? Color{layer.color, layer.trueColor}
                               : Color{properties.color, properties.trueColor};
}

class LayerColors {
 public:
  explicit LayerColors(Drawing& drawing)
      : drawing_(drawing),
        inherited_(findInheritedLayers(drawing)),
        counts_(drawing.layers.size()),
        isKept_(drawing.layers.size(), 0) {}

  void Run() {
    ForEach([this](EntityProperties& properties, const std::vector<LayerNumber>& layers,
                   bool isInherited) { Count(properties, layers, isInherited); });
    Choose();
    ForEach([this](EntityProperties& properties, const std::vector<LayerNumber>& layers,
                   bool isInherited) { Agree(properties, layers, isInherited); });
    drawing_.layers = std::move(chosen_);
  }

 private:
  // Calls visit(properties, layers, isInherited) for what has a color and shows on layers.
  template <typename Visit>
  void ForEach(const Visit& visit) {
    const std::vector<LayerNumber> none;
    VisitEach(drawing_.entities, none, visit);
    for (std::size_t i = 0; i < drawing_.blocks.size(); ++i) {
      VisitEach(drawing_.blocks[i].entities, inherited_[i], visit);
    }
  }

  template <typename Visitor>
  static void VisitEach(std::vector<DrawingEntity>& entities,
                        const std::vector<LayerNumber>& inherited, const Visitor& visit) {
    std::vector<LayerNumber> own(1);
    for (DrawingEntity& entity : entities) {
      if (std::holds_alternative<InsertEntity>(entity)) {
        continue;
      }
      EntityProperties& properties = propertiesOf(entity);
      own.front() = properties.layer;
      if (properties.layer != 0) {
        visit(properties, own, false);
      } else if (!inherited.empty()) {
        visit(properties, inherited, true);
      }
    }
  }

  void Count(const EntityProperties& properties, const std::vector<LayerNumber>& layers,
             bool isInherited) {
    constexpr int kLastColor = 255;
    for (const LayerNumber layer : layers) {
      const Color color = shownColor(properties, drawing_.layers[layer]);
      // What is by block has no color of its own.
      if (color.first >= 1 && color.first <= kLastColor) {
        ++counts_[layer][color];
      }
      // It may show on layers of several colors, which no color of its own would.
      if (isInherited && isByLayer(properties)) {
        isKept_[layer] = 1;
      }
    }
  }

  void Choose() {
    chosen_ = drawing_.layers;
    for (std::size_t i = 1; i < chosen_.size(); ++i) {
      std::size_t most = 0;
      for (const auto& [color, count] : counts_[i]) {
        if (count > most && isKept_[i] == 0) {
          most = count;
          chosen_[i].color = color.first;
          chosen_[i].trueColor = color.second;
        }
      }
    }
  }

  void Agree(EntityProperties& properties, const std::vector<LayerNumber>& layers,
             bool isInherited) const {
    if (isInherited && isByLayer(properties)) {
      return;
    }
    const Color color = shownColor(properties, drawing_.layers[layers.front()]);
    const bool agrees = std::ranges::all_of(layers, [&](LayerNumber layer) {
      return layer != 0 && color == Color{chosen_[layer].color, chosen_[layer].trueColor};
    });
    properties.color = agrees ? kColorByLayer : color.first;
    properties.trueColor = agrees ? kNoTrueColor : color.second;
  }

  Drawing& drawing_;
  // By block.
  std::vector<std::vector<LayerNumber>> inherited_;
  // By layer.
  std::vector<std::map<Color, std::size_t>> counts_;
  std::vector<std::uint8_t> isKept_;
  std::vector<Layer> chosen_;
};

}  // namespace

void dropTrueColors(Drawing& drawing) {
  for (Layer& layer : drawing.layers) {
    layer.trueColor = kNoTrueColor;
  }
  forEachEntity(drawing,
                [](DrawingEntity& entity) { propertiesOf(entity).trueColor = kNoTrueColor; });
}

void agreeWithLayers(Drawing& drawing) { LayerColors(drawing).Run(); }

}  // namespace dxf2d::finish
