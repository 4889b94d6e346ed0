// What the values of a scene file must be, and where they go.
#include <array>
#include <cmath>
#include <utility>

#include "ktscene/scene_builder.h"

namespace dxf2d {

namespace {

constexpr double kLargestNumber = 1e15;

std::array<double, 3> triple(const std::vector<double>& numbers) {
  return {numbers[0], numbers[1], numbers[2]};
}

}  // namespace

void SceneBuilder::AddNumber(double value) {
  if (!(std::abs(value) <= kLargestNumber)) {
    Refuse("must be at most 1e15 in magnitude");
  }
  CheckElement(value);
  numbers_.push_back(value);
}

void SceneBuilder::CheckElement(double value) const {
  const std::size_t position = numbers_.size();
  switch (levels_.back().key) {
    case SceneKey::kMatrix:
      if (position % 4 == 3 && position < 15 && value != 0.0) {
        Refuse("must be 0");
      }
      if (position == 15 && value != 1.0) {
        Refuse("must be 1");
      }
      break;
    case SceneKey::kColor:
      if (!(value >= 0.0 && value <= 1.0)) {
        Refuse("must be from 0 to 1");
      }
      break;
    case SceneKey::kBox:
    case SceneKey::kCylinder:
      if (!(value > 0.0)) {
        Refuse("must be above 0");
      }
      break;
    default:
      break;
  }
}

void SceneBuilder::SetText(SceneKey key, std::u16string text) {
  switch (key) {
    case SceneKey::kFormat:
      if (text != u"ktscene") {
        Refuse("must be \"ktscene\"");
      }
      break;
    case SceneKey::kGraphicName:
      Node().graphicName = std::move(text);
      break;
    case SceneKey::kObjectId:
      Node().objectId = std::move(text);
      break;
    case SceneKey::kRealObjectId:
      Node().realObjectId = std::move(text);
      break;
    default:
      Node().label->text = std::move(text);
      break;
  }
}

void SceneBuilder::SetFlag(SceneKey key, bool value) {
  if (key == SceneKey::kItem) {
    Node().hasGraphicItem = value;
  } else if (key == SceneKey::kReverseOrientation) {
    set_.reverseOrientation = value;
  } else {
    set_.closedSurface = value;
  }
}

void SceneBuilder::SetInteger(SceneKey key, int value) {
  if (key == SceneKey::kColorIndex) {
    Node().label->colorIndex = value;
  } else if (value != 1) {
    Refuse("must be 1, the only version");
  }
}

void SceneBuilder::SetNumbers(SceneKey key) {
  switch (key) {
    case SceneKey::kMatrix:
      Node().matrix.Init(numbers_.data());
      break;
    case SceneKey::kColor:
      Node().color = triple(numbers_);
      break;
    case SceneKey::kBox:
      Node().geometry.emplace_back(KtBox{numbers_[0], numbers_[1], numbers_[2]});
      break;
    case SceneKey::kCylinder:
      Node().geometry.emplace_back(KtCylinder{numbers_[0], numbers_[1]});
      break;
    case SceneKey::kMin:
      Node().bounds->min = triple(numbers_);
      break;
    case SceneKey::kMax:
      Node().bounds->max = triple(numbers_);
      break;
    case SceneKey::kRanges:
      Node().lod->ranges = std::move(numbers_);
      break;
    default:
      set_.coords = std::move(numbers_);
      break;
  }
}

}  // namespace dxf2d
