// Where the views of a model stand on one sheet.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/model/plan_extent.h"

namespace dxf2d {

// How the views around the front are arranged (ISO 5456-2).
enum class ProjectionAngle {
  // The view from above stands below the front, the one from the right on its left.
  kFirst,
  // The view from above stands above the front, the one from the right on its right.
  kThird,
};

struct SheetOptions {
  // Names of views as parseSheetViews returns them; none: the drawing is not a sheet.
  std::vector<std::string> views;
  ProjectionAngle projection = ProjectionAngle::kFirst;

  bool IsWanted() const { return !views.empty(); }
};

// The views in a list such as "front,top,right,iso": names of parseView (app/model/view.h), each
// once, with commas between them, in lower case. Empty for any other text.
std::optional<std::vector<std::string>> parseSheetViews(std::string_view text);

// By how much each view is moved, given its extent as it is drawn by itself; nothing for a view
// with an empty extent. Moved so:
//   - front, top and bottom stand above each other and are not moved in x;
//   - front, left, right and back stand beside each other and are not moved in y, so that points
//     line up in both directions;
//   - the back stands rightmost, and iso in the row of the top and the column beside the front;
//   - `gap` is left between columns and between rows.
std::vector<std::optional<std::array<double, 2>>> placeViews(std::span<const std::string> views,
                                                             std::span<const PlanExtent> extents,
                                                             ProjectionAngle projection,
                                                             double gap);

}  // namespace dxf2d
