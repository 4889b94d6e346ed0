// Whether anything of a geometry shows in plan.
#pragma once

#include "ktscene/kt_scene.h"

// True when the outline of the set, seen along z, has an edge; what has none makes no block in a
// drawing. Edges that three or more polygons share are not drawn, nor is what stands on end.
bool showsInPlan(const KtFaceSet& faces);
bool showsInPlan(const KtLineSet& lines);
