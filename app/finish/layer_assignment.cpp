#include "app/finish/layer_assignment.h"

#include <algorithm>
#include <compare>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

#include "app/finish/symbol_names.h"

namespace dxf2d::finish {

namespace {

EntityProperties& propertiesOf(DrawingEntity& entity) {
  return std::visit([](EntityProperties& properties) -> EntityProperties& { return properties; },
                    entity);
}

std::string_view kindName(PartKind kind) {
  switch (kind) {
    case PartKind::kBorder:
      return "border";
    case PartKind::kCrease:
      return "crease";
    case PartKind::kCut:
      return "cut";
    case PartKind::kHidden:
      return "hidden";
    case PartKind::kLabel:
      return "label";
  }
  return "";
}

// Hundredths of a millimeter.
std::int16_t kindWeight(PartKind kind) {
  switch (kind) {
    case PartKind::kCut:
      return 50;
    case PartKind::kHidden:
      return 18;
    case PartKind::kLabel:
      return kDefaultLineWeight;
    case PartKind::kBorder:
    case PartKind::kCrease:
      break;
  }
  return 25;
}

// What a layer is made for: things of one name are apart where their keys are.
struct LayerKey {
  std::string name;
  std::uint64_t key;

  friend auto operator<=>(const LayerKey&,
                          const LayerKey&) = default;  // NOLINT(modernize-use-nullptr)
};

// Empty for what stays on its layer.
LayerKey keyOfPlace(const SourceName& object, const SourceName& group, LayerScheme scheme) {
  const SourceName& source = scheme == LayerScheme::kObject ? object : group;
  return source.key == 0 ? LayerKey{} : LayerKey{source.name, source.key};
}

// Whether layers are made of where things are, and not of what they are.
bool isByPlace(LayerScheme scheme) {
  return scheme == LayerScheme::kObject || scheme == LayerScheme::kGroup;
}

class LayerAssignment {
 public:
  LayerAssignment(Drawing& drawing, const SideTable& sources, LayerScheme scheme)
      : drawing_(drawing), sources_(sources), scheme_(scheme) {
    for (const Layer& layer : drawing.layers) {
      names_.Add(layer.name);
    }
  }

  void Run() {
    if (isByPlace(scheme_)) {
      PlaceInserts();
      FindShared();
    }
    for (std::size_t i = 0; i < drawing_.blocks.size(); ++i) {
      const auto place = sources_.blocks.find(drawing_.blocks[i].name);
      if (place != sources_.blocks.end()) {
        Style(drawing_.blocks[i].entities, place->second,
              isShared_.empty() || isShared_[i] == 0 ? LayerOf(place->second) : 0);
      }
    }
  }

 private:
  // Puts each INSERT of the ENTITIES section on its layer. The table has them all, in order.
  void PlaceInserts() {
    auto source = sources_.inserts.begin();
    for (DrawingEntity& entity : drawing_.entities) {
      auto* insert = std::get_if<InsertEntity>(&entity);
      if (insert == nullptr) {
        continue;
      }
      const std::string& block = drawing_.blocks[insert->block].name;
      const auto found =
          std::find_if(source, sources_.inserts.end(),
                       [&block](const InsertSource& one) { return one.block == block; });
      if (found != sources_.inserts.end()) {
        insert->layer = LayerFor(keyOfPlace(found->object, found->group, scheme_), kNoKind);
        source = found + 1;
      }
    }
  }

  // Marks blocks that are shown on several layers, with what they insert: that takes the layer of
  // the INSERT.
  void FindShared() {
    isShared_.assign(drawing_.blocks.size(), 0);
    std::unordered_map<std::size_t, std::uint32_t> layers;
    std::vector<std::size_t> open;
    const auto share = [&](std::size_t block) {
      if (isShared_[block] == 0) {
        isShared_[block] = 1;
        open.push_back(block);
      }
    };
    for (const DrawingEntity& entity : drawing_.entities) {
      if (const auto* insert = std::get_if<InsertEntity>(&entity)) {
        if (layers.try_emplace(insert->block, insert->layer).first->second != insert->layer) {
          share(insert->block);
        }
      }
    }
    while (!open.empty()) {
      const std::size_t block = open.back();
      open.pop_back();
      for (const DrawingEntity& entity : drawing_.blocks[block].entities) {
        if (const auto* insert = std::get_if<InsertEntity>(&entity)) {
          share(insert->block);
        }
      }
    }
  }

  std::uint32_t LayerOf(const BlockSource& source) {
    switch (scheme_) {
      case LayerScheme::kMaterial:
        return LayerFor({source.part.material, 0}, kNoKind);
      case LayerScheme::kKind:
        return LayerFor({std::string(kindName(source.part.kind)), 0}, source.part.kind);
      default:
        return LayerFor(keyOfPlace(source.object, source.group, scheme_), kNoKind);
    }
  }

  // The layer of that key, which has the style of the kind, if any.
  std::uint32_t LayerFor(const LayerKey& key, std::optional<PartKind> kind) {
    if (scheme_ == LayerScheme::kNone || key == LayerKey{}) {
      return 0;
    }
    const auto next = static_cast<std::uint32_t>(drawing_.layers.size());
    const auto [place, isNew] = numbers_.try_emplace(key, next);
    if (isNew) {
      Layer layer;
      layer.name = names_.Add(key.name);
      if (kind) {
        layer.lineWeight = kindWeight(*kind);
        layer.lineType = *kind == PartKind::kHidden ? LineType::kDashed : LineType::kContinuous;
      }
      drawing_.layerNumbers.emplace(layer.name, next);
      drawing_.layers.push_back(std::move(layer));
    }
    return place->second;
  }

  void Style(std::vector<DrawingEntity>& entities, const BlockSource& source, std::uint32_t layer) {
    const PartKind kind = source.part.kind;
    for (DrawingEntity& entity : entities) {
      if (std::holds_alternative<InsertEntity>(entity)) {
        continue;
      }
      EntityProperties& properties = propertiesOf(entity);
      properties.layer = layer;
      properties.trueColor = source.part.trueColor;
      if (scheme_ == LayerScheme::kKind) {
        continue;
      }
      // No layer says it, so each line does.
      if (kind == PartKind::kHidden) {
        properties.lineType = LineType::kDashed;
      }
      if (kind == PartKind::kHidden || kind == PartKind::kCut) {
        properties.lineWeight = kindWeight(kind);
      }
    }
  }

  static constexpr std::optional<PartKind> kNoKind = std::nullopt;

  Drawing& drawing_;
  const SideTable& sources_;
  LayerScheme scheme_;
  SymbolNames names_;
  // Of the layers made here, by what they are made for.
  std::map<LayerKey, std::uint32_t> numbers_;
  // By block; empty where it does not matter.
  std::vector<std::uint8_t> isShared_;
};

}  // namespace

void assignLayers(Drawing& drawing, const SideTable& sources, LayerScheme scheme) {
  LayerAssignment(drawing, sources, scheme).Run();
}

}  // namespace dxf2d::finish
