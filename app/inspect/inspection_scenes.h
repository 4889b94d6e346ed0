// Scenes that hold every kind of content that a walk can send, one kind each, and one with all.
#pragma once

#include <span>

#include "app/cli/translation.h"
#include "ktscene/kt_scene.h"

namespace dxf2d {

struct InspectionScene {
  // In English.
  const char* name;
  KtScene (*make)();
};

inline constexpr const char* kDeepNesting = marked("deep nesting");
inline constexpr const char* kEverything = marked("everything at once");

std::span<const InspectionScene> inspectionScenes();

}  // namespace dxf2d
