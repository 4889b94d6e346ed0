// Limits on scene files.
#pragma once

#include "app/model/model_limits.h"
#include "ktscene/kt_scene.h"

namespace dxf2d {

// Counts the scene's nodes and the vertices of its sets. Throws ModelError as LimitChecker does.
void checkSceneLimits(const KtScene& scene, LimitChecker& limits);

}  // namespace dxf2d
