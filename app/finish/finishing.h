// The finishing pass: prepares a drawing, as the plug-in wrote it or finished, for further work.
#pragma once

#include <optional>

#include "app/drawing/drawing.h"
#include "app/finish/layer_assignment.h"
#include "app/finish/side_table.h"
#include "app/finish/summary.h"

namespace dxf2d::finish {

struct Options {
  // kR2000 or kR2004.
  Release release = Release::kR2000;
  LayerScheme layers = LayerScheme::kNone;
  // Whether lines on one another become one and lines in a row a polyline, within each block.
  bool join = true;
  // Whether everything stands where it is placed instead of in blocks.
  bool explode = false;
  // Drawing units, after `scale`; points that lie within it of the joined line are left out. With 0
  // only those that lie on it.
  double simplifyTolerance = 0.0;
  // $INSUNITS of the finished drawing; the given drawing's if none.
  std::optional<int> units;
  // Finished units for one unit of the given drawing, above 0.
  double scale = 1.0;
  // Finished units; the given drawing's if none.
  std::optional<double> dashLength;
  // In which the drawing's texts beyond ASCII are.
  unsigned codePage = 1252;
};

struct FinishedDrawing {
  Drawing drawing;
  Summary summary;
};

// Finishes `drawing`, which has passed checkNesting, for release::writeDrawing. A finished drawing
// finished again with the same options and no scale is the same. Throws std::invalid_argument for
// an unknown code page.
FinishedDrawing finishDrawing(Drawing drawing, const SideTable& sources, const Options& options);

}  // namespace dxf2d::finish
