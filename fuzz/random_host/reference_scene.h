// The scene whose drawing must not depend on what was called before.
#pragma once

#include "ktscene/kt_scene.h"

// A little of everything that shows in a drawing: nested objects, instances, colors, every run of
// an index list, shapes, labels, a level-of-detail group and a tilted node.
KtScene referenceScene();
