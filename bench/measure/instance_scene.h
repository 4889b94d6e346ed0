// A million times the same thing.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "ktscene/kt_scene.h"

// One object with a triangle, and `instanceCount` more of the same graphic name at other places,
// each with an object id of its own.
struct InstanceScene {
  KtSceneNode original;
  std::vector<KtSceneNode> instances;
};

// `ids` one for each instance.
InstanceScene instanceScene(const std::vector<std::u16string>& ids);

// `count` distinct ids of one length, ascending.
std::vector<std::u16string> objectIds(std::size_t count);

// The callbacks of an export of the scene, from slot 19 to slot 20. Throws std::runtime_error when
// an instance is not drawn as one.
void exportInstances(InstanceScene& scene, const std::string& path);
