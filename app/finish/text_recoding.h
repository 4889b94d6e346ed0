// Texts and names in the form that every reader takes.
#pragma once

#include "app/drawing/drawing.h"

namespace dxf2d::finish {

// Makes ASCII of the texts of `drawing`, which are in `codePage`, and legal names of those of its
// layers and blocks. What is so already stays.
void recodeTexts(Drawing& drawing, unsigned codePage);

}  // namespace dxf2d::finish
