// Pictures true to size: sheets of paper.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/cli/command.h"
#include "app/drawing/plan_extents.h"
#include "app/preview/page_fit.h"

namespace dxf2d {

// In millimeters, upright.
struct PaperSize {
  double width = 0.0;
  double height = 0.0;
};

inline constexpr int kMinDpi = 10;
inline constexpr int kMaxDpi = 2400;

struct Sheet {
  // Whether the drawing has a scale. Without one the page fits it and is no larger than A4: where
  // nothing but a resolution is asked for.
  bool hasScale = true;
  // Turned as the drawing needs it; none: as large as the drawing with its margin.
  std::optional<PaperSize> paper{};
  // Length on paper for a length of what is drawn, above 0. None: 1 without paper, else what fills
  // the paper.
  std::optional<double> plotScale{};
  // All round, in millimeters.
  double margin = 10.0;
  // Of a line below the drawing, with the scale and a scale bar; none: no such line.
  std::optional<std::string> title{};
  // Pixels for 25.4 mm of PNG pictures.
  int dpi = 300;
  // As $INSUNITS numbers them, of drawings that do not say theirs; 0: unknown.
  int units = 0;
};

// --paper, --plot-scale, --margin, --title and --dpi, which make a sheet of `sheet`.
std::vector<Option> sheetOptions(std::optional<Sheet>& sheet);

// How a drawing lies on its sheet, in millimeters.
struct SheetLayout : PageLayout {
  // Millimeters of what is drawn for one drawing unit; 0 where nobody knows.
  double unit = 0.0;
};

// Height of the line with the title, in millimeters.
inline constexpr double kTitleHeight = 10.0;

// Lays out a drawing in `units` with these finite extents. Throws UsageError about `name` where it
// has no units and needs them, and where it does not fit.
SheetLayout layOutSheet(const PlanExtents& extents, const Sheet& sheet, int units,
                        const std::string& name);

}  // namespace dxf2d
