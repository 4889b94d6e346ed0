// What is allowed where in a scene file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace dxf2d {

enum class SceneKey : std::uint8_t {
  kFormat,
  kVersion,
  kNodes,
  kGraphicName,
  kObjectId,
  kRealObjectId,
  kItem,
  kMatrix,
  kColor,
  kGeometry,
  kLabel,
  kBounds,
  kLod,
  kChildren,
  kFaceSet,
  kLineSet,
  kBox,
  kCylinder,
  kCoords,
  kIndices,
  kReverseOrientation,
  kClosedSurface,
  kText,
  kColorIndex,
  kMin,
  kMax,
  kRanges,
  kLevels,
};

enum class SceneObject : std::uint8_t {
  kScene,
  kNode,
  kGeometryItem,
  kFaceSet,
  kLineSet,
  kLabel,
  kBounds,
  kLod,
};

// A set of keys, one bit each.
using SceneKeys = std::uint32_t;
constexpr SceneKeys bit(SceneKey key) { return SceneKeys{1} << static_cast<unsigned>(key); }

enum class SceneValue : std::uint8_t {
  kText,
  kFlag,
  kInteger,
  kNumbers,
  kIntegers,
  kObject,
  kObjects
};

struct SceneKeyRule {
  std::string_view name;
  SceneValue value;
  SceneObject object = SceneObject::kScene;  // of kObject and the elements of kObjects
  std::size_t count = 0;                     // of kNumbers; 0: any
};

struct SceneObjectRule {
  std::string_view name;  // for messages, with its article
  SceneKeys allowed;
  SceneKeys required = 0;
};

const SceneKeyRule& ruleOf(SceneKey key);
const SceneObjectRule& ruleOf(SceneObject object);

// The key of that name among those that `object` may hold.
std::optional<SceneKey> findKey(SceneObject object, std::string_view name);
// The first of `keys`, which must not be empty.
SceneKey firstOf(SceneKeys keys);

}  // namespace dxf2d
