// Labels that no plug-in can draw, since their numbers have decimal commas.
#pragma once

#include "ktscene/kt_scene.h"

namespace dxf2d {

// Throws KtTraverserError, which names the label, for the first label of a node that a walk enters
// whose text would fit the syntax with points for its commas.
void refuseLabelsWithCommas(const KtScene& scene);

}  // namespace dxf2d
