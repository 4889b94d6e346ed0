// The line below a drawing on a sheet: title, scale and a scale bar.
#pragma once

#include <cairo.h>

#include <string>

#include "app/preview/sheet.h"
#include "app/preview/text_shaper.h"

namespace dxf2d {

// Draws the line on a page of `unitsPerMillimeter` page units a millimeter. `title` is UTF-8.
void drawTitleLine(cairo_t* cairo, const SheetLayout& layout, const Sheet& sheet,
                   const TextShaper& texts, double unitsPerMillimeter);

// A round number, 1, 2 or 5 times a power of ten, that is at most `most`, above 0.
double roundLength(double most);

// "1:50", "2:1" or "1:33.3" for millimeters on paper for millimeters drawn.
std::string scaleText(double ratio);

}  // namespace dxf2d
