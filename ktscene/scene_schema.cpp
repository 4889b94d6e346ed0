#include "ktscene/scene_schema.h"

#include <array>
#include <bit>
#include <cassert>

namespace dxf2d {

namespace {

using Key = SceneKey;
using Object = SceneObject;
using Value = SceneValue;

// In the order of SceneKey.
constexpr std::array kKeyRules = {
    SceneKeyRule{"format", Value::kText},
    SceneKeyRule{"version", Value::kInteger},
    SceneKeyRule{"nodes", Value::kObjects, Object::kNode},
    SceneKeyRule{"graphicName", Value::kText},
    SceneKeyRule{"objectId", Value::kText},
    SceneKeyRule{"realObjectId", Value::kText},
    SceneKeyRule{"item", Value::kFlag},
    SceneKeyRule{"matrix", Value::kNumbers, {}, 16},
    SceneKeyRule{"color", Value::kNumbers, {}, 3},
    SceneKeyRule{"geometry", Value::kObjects, Object::kGeometryItem},
    SceneKeyRule{"label", Value::kObject, Object::kLabel},
    SceneKeyRule{"bounds", Value::kObject, Object::kBounds},
    SceneKeyRule{"lod", Value::kObject, Object::kLod},
    SceneKeyRule{"children", Value::kObjects, Object::kNode},
    SceneKeyRule{"faceSet", Value::kObject, Object::kFaceSet},
    SceneKeyRule{"lineSet", Value::kObject, Object::kLineSet},
    SceneKeyRule{"box", Value::kNumbers, {}, 3},
    SceneKeyRule{"cylinder", Value::kNumbers, {}, 2},
    SceneKeyRule{"coords", Value::kNumbers},
    SceneKeyRule{"indices", Value::kIntegers},
    SceneKeyRule{"reverseOrientation", Value::kFlag},
    SceneKeyRule{"closedSurface", Value::kFlag},
    SceneKeyRule{"text", Value::kText},
    SceneKeyRule{"colorIndex", Value::kInteger},
    SceneKeyRule{"min", Value::kNumbers, {}, 3},
    SceneKeyRule{"max", Value::kNumbers, {}, 3},
    SceneKeyRule{"ranges", Value::kNumbers},
    SceneKeyRule{"levels", Value::kObjects, Object::kNode},
};
static_assert(kKeyRules.size() == static_cast<std::size_t>(Key::kLevels) + 1);

template <typename... Keys>
constexpr SceneKeys keys(Keys... some) {
  return (bit(some) | ...);
}

// In the order of SceneObject.
constexpr std::array kObjectRules = {
    SceneObjectRule{"a scene", keys(Key::kFormat, Key::kVersion, Key::kNodes), bit(Key::kNodes)},
    SceneObjectRule{"a node", keys(Key::kGraphicName, Key::kObjectId, Key::kRealObjectId,
                                   Key::kItem, Key::kMatrix, Key::kColor, Key::kGeometry,
                                   Key::kLabel, Key::kBounds, Key::kLod, Key::kChildren)},
    SceneObjectRule{"a geometry item",
                    keys(Key::kFaceSet, Key::kLineSet, Key::kBox, Key::kCylinder)},
    SceneObjectRule{
        "a face set",
        keys(Key::kCoords, Key::kIndices, Key::kReverseOrientation, Key::kClosedSurface),
        keys(Key::kCoords, Key::kIndices)},
    SceneObjectRule{"a line set", keys(Key::kCoords, Key::kIndices),
                    keys(Key::kCoords, Key::kIndices)},
    SceneObjectRule{"a label", keys(Key::kText, Key::kColorIndex), bit(Key::kText)},
    SceneObjectRule{"bounds", keys(Key::kMin, Key::kMax), keys(Key::kMin, Key::kMax)},
    SceneObjectRule{"a level-of-detail group", keys(Key::kRanges, Key::kLevels), bit(Key::kLevels)},
};
static_assert(kObjectRules.size() == static_cast<std::size_t>(Object::kLod) + 1);

}  // namespace

const SceneKeyRule& ruleOf(SceneKey key) { return kKeyRules[static_cast<std::size_t>(key)]; }

const SceneObjectRule& ruleOf(SceneObject object) {
  return kObjectRules[static_cast<std::size_t>(object)];
}

SceneKey firstOf(SceneKeys keys) {
  assert(keys != 0);
  return static_cast<SceneKey>(std::countr_zero(keys));
}

std::optional<SceneKey> findKey(SceneObject object, std::string_view name) {
  for (SceneKeys left = ruleOf(object).allowed; left != 0; left &= left - 1) {
    if (ruleOf(firstOf(left)).name == name) {
      return firstOf(left);
    }
  }
  return std::nullopt;
}

}  // namespace dxf2d
