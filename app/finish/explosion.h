// A drawing without blocks.
#pragma once

#include "app/drawing/drawing.h"

namespace dxf2d::finish {

// Puts everything that the drawing shows where it shows it, in its order, and takes the blocks out.
// Coordinates are rounded to six decimals, as they are in the drawings of the plug-in. What stands
// on layer "0" of a block comes on the layer of its INSERT.
void explodeBlocks(Drawing& drawing);

}  // namespace dxf2d::finish
