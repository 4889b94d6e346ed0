// The place in a scene file that a reader has reached.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ktscene/scene_schema.h"

struct KtSceneNode;

namespace dxf2d {

// An object or a list that is not closed yet.
struct SceneLevel {
  KtSceneNode* node;   // the node that holds what is read here; null outside the nodes
  std::size_t done;    // of a list: the number of elements read
  SceneKeys seen;      // of an object: the keys read, the latest included
  SceneObject object;  // of an object: what it is
  SceneKey key;        // of an object: the latest key; of a list: the key it stands under
  bool isList;
  bool hasKey;  // of an object: whether the latest key's value is being read
};

// The JSON pointer (RFC 6901) of the value being read or awaited, or of the innermost object when
// it awaits a key; `unknownKey`, when not null, is added to it. A very long one is cut in its
// middle.
std::string jsonPointer(const std::vector<SceneLevel>& levels,
                        const std::string_view* unknownKey = nullptr);

}  // namespace dxf2d
