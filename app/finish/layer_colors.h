// Colors of layers and of what stands on them.
#pragma once

#include "app/drawing/drawing.h"

namespace dxf2d::finish {

// Takes out the true colors, which releases before 2004 do not have.
void dropTrueColors(Drawing& drawing);

// Gives each layer but "0" the color of most of what shows on it, and makes that by layer. What
// stands on layer "0" of a block shows on the layer of its INSERT; it is by layer where it has the
// color of all those layers.
void agreeWithLayers(Drawing& drawing);

}  // namespace dxf2d::finish
