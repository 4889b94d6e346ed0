// Scenes that hold every kind of content that a walk can send, one kind each, and one with all.
#pragma once

#include <span>

#include "ktscene/kt_scene.h"

namespace dxf2d {

struct InspectionScene {
  const char* name;
  KtScene (*make)();
};

std::span<const InspectionScene> inspectionScenes();

}  // namespace dxf2d
