#include "app/inspect/random_calls.h"

#include <array>
#include <limits>
#include <memory>
#include <random>
#include <vector>

#include "ktscene/kt_geometry.h"
#include "ktscene/kt_graphic_node.h"

namespace dxf2d {

namespace {

class RandomShape final : public KtGeometry {
 public:
  RandomShape(KTV_GRAPHIC_TYPE type, std::vector<double> sizes)
      : KtGeometry(type), sizes_(std::move(sizes)) {}
  bool GetParameters(std::vector<double>& parameters) const override {
    parameters = sizes_;
    return !sizes_.empty();
  }

 private:
  std::vector<double> sizes_;
};

class RandomLabel final : public KtGraphicNode {
 public:
  RandomLabel(bool isLabel, std::u16string text) : KtGraphicNode(isLabel), text_(std::move(text)) {}
  bool GetLabelText(std::u16string& text) const override {
    text = text_;
    return GetIsLabel();
  }

 private:
  std::u16string text_;
};

class RandomHost {
 public:
  RandomHost(const KtCallbacks& callbacks, std::uint32_t seed) : to_(callbacks), numbers_(seed) {}

  void Export(const std::u16string& path) {
    if (to_.openFile != nullptr && !to_.openFile(path)) {
      return;
    }
    constexpr unsigned kMostCalls = 400;
    for (unsigned left = 1 + Below(kMostCalls); left > 0; --left) {
      Call();
    }
    // With nodes open.
    if (to_.closeFile != nullptr) {
      to_.closeFile();
    }
  }

 private:
  // The standard's distributions differ between libraries.
  unsigned Below(unsigned end) { return static_cast<unsigned>(numbers_()) % end; }
  bool OneOf(unsigned count) { return Below(count) == 0; }

  double Real() {
    constexpr std::array kOdd = {0.0,
                                 -0.0,
                                 1e15,
                                 -1e300,
                                 1e-310,
                                 std::numeric_limits<double>::infinity(),
                                 std::numeric_limits<double>::quiet_NaN()};
    return OneOf(20) ? kOdd[Below(kOdd.size())] : Below(2000) / 100.0 - 10.0;
  }
  std::vector<double> Reals(unsigned most) {
    std::vector<double> list(Below(most));
    for (double& value : list) {
      value = Real();
    }
    return list;
  }
  std::vector<int> Indices() {
    std::vector<int> list(Below(60));
    for (int& index : list) {
      index = OneOf(5) ? -1 - static_cast<int>(Below(9)) : static_cast<int>(Below(24));
    }
    return list;
  }
  std::u16string Text() {
    constexpr std::u16string_view kUnits = u"ab1 .,\"\\\n\u00DC\u4E2D\xD800";
    std::u16string text;
    for (unsigned left = Below(40); left > 0; --left) {
      text += kUnits[Below(kUnits.size())];
    }
    return text;
  }

  // A node of the host, which lives to the end.
  KtGraphicAttribute Attribute() {
    KtSceneNode& node = *nodes_.emplace_back(std::make_unique<KtSceneNode>());
    node.graphicName = OneOf(3) ? u"" : std::u16string(1, static_cast<char16_t>(u'a' + Below(6)));
    node.objectId = OneOf(3) ? u"" : Text();
    node.realObjectId = OneOf(3) ? u"" : node.objectId;
    node.hasGraphicItem = !OneOf(6);
    node.matrix.SetTranslation(Real(), Real(), Real());
    if (OneOf(3)) {
      node.matrix.Rotate(Real(), Real(), Real(), Real());
    }
    if (OneOf(6)) {
      node.color = {Real(), Real(), Real()};
    }
    return KtGraphicAttribute(node);
  }

  void OpenNode() {
    KtGraphicAttribute attribute = Attribute();
    if (to_.reuse != nullptr && to_.reuse(&attribute)) {
      CloseSlot();
      return;
    }
    if (to_.openNode != nullptr) {
      to_.openNode(&attribute);
    }
    ++depth_;
  }
  void CloseSlot() const {
    if (to_.closeNode != nullptr) {
      to_.closeNode();
    }
  }
  void CloseNode() {
    CloseSlot();
    --depth_;
  }
  void ShowFaces() {
    const std::vector<double> coords = Reals(60);
    const std::vector<int> indices = Indices();
    if (to_.faceSet != nullptr) {
      to_.faceSet(coords, indices, OneOf(2), OneOf(2));
    }
  }
  void ShowLines() {
    const std::vector<double> coords = Reals(60);
    const std::vector<int> indices = Indices();
    if (to_.lineSet != nullptr) {
      to_.lineSet(coords, indices);
    }
  }
  void ShowShape() {
    RandomShape shape(static_cast<KTV_GRAPHIC_TYPE>(Below(4)), Reals(4));
    if (to_.specialGeometry != nullptr) {
      to_.specialGeometry(&shape, false);
    }
  }
  void ShowLabel() {
    constexpr const char16_t* kSound = u"T:1 2.5 0 10 20 5 30 C 0 1 0 0 0 \"first\" \"second\"";
    RandomLabel node(!OneOf(3), OneOf(2) ? kSound : Text());
    const int colorIndex = static_cast<int>(Below(300)) - 20;
    if (to_.label != nullptr) {
      to_.label(&node, false, colorIndex);
    }
  }
  void ShowMaterial() {
    const std::array color{Real(), Real(), Real()};
    const bool isWhole = OneOf(2);
    const double* more = isWhole ? color.data() : nullptr;
    if (to_.material != nullptr) {
      to_.material(more, color.data(), more, more, more, more);
    }
  }
  void ShowBounds() {
    const std::array corner{Real(), Real(), Real()};
    if (to_.boundingBox != nullptr) {
      to_.boundingBox(corner.data(), corner.data(), 0.0);
    }
  }
  void ShowLod() {
    const std::vector<double> ranges = Reals(5);
    if (to_.openLod != nullptr) {
      to_.openLod(ranges, 0.0);
    }
    if (to_.closeLod != nullptr) {
      to_.closeLod();
    }
  }

  void Call() {
    constexpr unsigned kMostDepth = 60;
    const unsigned kind = Below(12);
    if (depth_ == 0 || (kind < 3 && depth_ < kMostDepth)) {
      OpenNode();
    } else if (kind < 6) {
      CloseNode();
    } else {
      constexpr std::array kShow = {&RandomHost::ShowFaces,    &RandomHost::ShowLines,
                                    &RandomHost::ShowShape,    &RandomHost::ShowLabel,
                                    &RandomHost::ShowMaterial, &RandomHost::ShowBounds,
                                    &RandomHost::ShowLod};
      (this->*kShow[Below(kShow.size())])();
    }
  }

  const KtCallbacks& to_;
  std::mt19937 numbers_;
  std::vector<std::unique_ptr<KtSceneNode>> nodes_;
  unsigned depth_ = 0;
};

}  // namespace

void callAtRandom(const KtCallbacks& callbacks, const std::u16string& path, std::uint32_t seed) {
  RandomHost(callbacks, seed).Export(path);
}

}  // namespace dxf2d
