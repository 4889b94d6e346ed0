// How much of a scene file is taken on.
#pragma once

#include "app/model/model_limits.h"
#include "ktscene/kt_scene.h"

// Counts the scene's nodes and the vertices of its sets. Throws ModelError as ModelMeter does.
void meterScene(const KtScene& scene, ModelMeter& meter);
