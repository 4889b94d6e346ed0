// Notes about what a finished drawing lacks.
#pragma once

#include <string>

#include "app/drawing/drawing.h"
#include "app/finish/summary.h"

namespace dxf2d::finish {

// Prints on stderr what of the drawing `name` was not read or not kept.
void noteLeftOut(const std::string& name, const Drawing& drawing, const Summary& summary);

}  // namespace dxf2d::finish
