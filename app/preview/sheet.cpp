#include "app/preview/sheet.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "app/cli/failure.h"
#include "app/cli/option_values.h"
#include "app/cli/translation.h"
#include "app/drawing/drawing_units.h"

namespace dxf2d {

namespace {

constexpr PaperSize kA4{210.0, 297.0};

// Sizes of ISO 216 and of ANSI Y14.1.
std::optional<PaperSize> parsePaper(const std::string& name) {
  return oneOf<PaperSize>({{"a0", {841.0, 1189.0}},
                           {"a1", {594.0, 841.0}},
                           {"a2", {420.0, 594.0}},
                           {"a3", {297.0, 420.0}},
                           {"a4", kA4},
                           {"a5", {148.0, 210.0}},
                           {"letter", {215.9, 279.4}},
                           {"legal", {215.9, 355.6}},
                           {"tabloid", {279.4, 431.8}},
                           {"fit", {0.0, 0.0}}})(name);
}

// A number above 0, or a ratio of two.
std::optional<double> parseRatio(const std::string& text) {
  const std::size_t colon = text.find(':');
  const std::optional<double> over = parseNumber(text.substr(0, colon));
  const std::optional<double> under =
      colon == std::string::npos ? 1.0 : parseNumber(text.substr(colon + 1));
  if (!over || !under || !(*over > 0.0) || !(*under > 0.0)) {
    return std::nullopt;
  }
  const double ratio = *over / *under;
  return std::isfinite(ratio) && ratio > 0.0 ? std::optional(ratio) : std::nullopt;
}

// The sheet, which is one with a scale from now on.
Sheet& made(std::optional<Sheet>& sheet) {
  if (!sheet) {
    sheet.emplace();
  }
  sheet->hasScale = true;
  return *sheet;
}

// Millimeters for one unit; 0 where that is not known.
double millimetersOf(int units) {
  return parseUnits(unitsName(units)) ? unitsRatio(units, *parseUnits("mm")) : 0.0;
}

struct Size {
  double width;
  double height;
};

// Throws where the sheet leaves no room for a drawing.
Size roomOn(const Size& page, const Sheet& sheet, double titleHeight) {
  const Size room{page.width - 2.0 * sheet.margin, page.height - 2.0 * sheet.margin - titleHeight};
  if (!(room.width > 0.0) || !(room.height > 0.0)) {
    throw UsageError(
        {"", tr("the margins leave no room on the paper"), tr("make --margin smaller")});
  }
  return room;
}

double titleHeightOf(const Sheet& sheet) { return sheet.title ? kTitleHeight : 0.0; }

// Throws where nobody knows how long a unit is.
double scaleOf(const Sheet& sheet, const SheetLayout& layout, const std::string& name) {
  if (layout.unit == 0.0) {
    throw UsageError(
        {name, tr("does not say its units, which a scale needs"),
         tr("give them with --source-units, or choose a --paper without --plot-scale")});
  }
  return layout.unit * sheet.plotScale.value_or(1.0);
}

void fitPageTo(PlanPoint half, const Sheet& sheet, SheetLayout& layout) {
  layout.width = 2.0 * (half.x * layout.scale + sheet.margin);
  layout.height = 2.0 * (half.y * layout.scale + sheet.margin) + titleHeightOf(sheet);
}

void layOutOnPaper(PlanPoint half, const Sheet& sheet, const std::string& name,
                   SheetLayout& layout) {
  const PaperSize paper = sheet.paper.value_or(kA4);
  const auto [shorter, longer] = std::minmax(paper.width, paper.height);
  const bool isUpright = half.y > half.x;
  layout.width = isUpright ? shorter : longer;
  layout.height = isUpright ? longer : shorter;
  const Size room = roomOn({layout.width, layout.height}, sheet, titleHeightOf(sheet));
  const double fill = std::min(room.width / 2.0 / std::max(half.x, kLeastHalf),
                               room.height / 2.0 / std::max(half.y, kLeastHalf));
  if (!sheet.plotScale) {
    layout.scale = std::max(half.x, half.y) > kLeastHalf ? fill : 1.0;
  } else {
    layout.scale = scaleOf(sheet, layout, name);
    if (layout.scale > fill * (1.0 + 1e-9)) {
      throw UsageError({name, tr("does not fit on the paper at this scale"),
                        tr("choose a larger --paper, or a smaller --plot-scale")});
    }
  }
  if (!sheet.hasScale) {
    fitPageTo(half, sheet, layout);
  }
}

}  // namespace

std::vector<Option> sheetOptions(std::optional<Sheet>& sheet) {
  const auto takePaper = [&sheet](const std::string& text) {
    const std::optional<PaperSize> paper = parsePaper(text);
    if (paper) {
      made(sheet).paper = paper->width > 0.0 ? paper : std::nullopt;
      made(sheet);
    }
    return paper.has_value();
  };
  const auto takeScale = [&sheet](const std::string& text) {
    made(sheet).plotScale = parseRatio(text);
    return made(sheet).plotScale.has_value();
  };
  const auto takeMargin = [&sheet](const std::string& text) {
    constexpr double kMost = 1000.0;
    const std::optional<double> margin = parseNumber(text);
    made(sheet).margin = margin.value_or(0.0);
    return margin && *margin >= 0.0 && *margin <= kMost;
  };
  const auto takeTitle = [&sheet](const std::string& text) {
    made(sheet).title = text;
    return true;
  };
  const auto takeDpi = [&sheet](const std::string& text) {
    const std::optional<std::uint32_t> dpi = parseCount(text);
    const bool isInRange = dpi && *dpi >= kMinDpi && *dpi <= kMaxDpi;
    if (isInRange && !sheet) {
      sheet.emplace().hasScale = false;
    }
    if (isInRange) {
      sheet->dpi = static_cast<int>(*dpi);
    }
    return isInRange;
  };
  return {
      {"--paper", "a0|a1|a2|a3|a4|a5|letter|legal|tabloid|fit [fit]",
       "Draw pictures true to size, on paper, or on a page that fits the drawing",
       "a0 to a5, letter, legal, tabloid or fit", takePaper},
      {"--plot-scale", "1:N",
       "Scale of pictures on paper (default: 1:1 on a fitting page, else what fills the paper)",
       "a ratio such as 1:50, or a number above 0", takeScale},
      {"--margin", "MM [10]", "Margin of pictures on paper, in millimeters",
       "a number from 0 to 1000", takeMargin},
      {"--title", "TEXT", "A line with this title, the scale and a scale bar below the picture",
       "a text", takeTitle},
      {"--dpi", "N [300]",
       "Pixels per inch of PNG pictures; without another of these options on a page of up to A4",
       "a whole number from 10 to 2400", takeDpi}};
}

SheetLayout layOutSheet(const PlanExtents& extents, const Sheet& sheet, int units,
                        const std::string& name) {
  const PlanPoint half = extents.Half();
  SheetLayout layout;
  layout.center = extents.Middle();
  layout.unit = millimetersOf(units != 0 ? units : sheet.units);
  if (sheet.paper || !sheet.hasScale) {
    layOutOnPaper(half, sheet, name, layout);
  } else {
    layout.scale = scaleOf(sheet, layout, name);
    fitPageTo(half, sheet, layout);
  }
  layout.middle = {layout.width / 2.0, (layout.height - titleHeightOf(sheet)) / 2.0};
  return layout;
}

}  // namespace dxf2d
