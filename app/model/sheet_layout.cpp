#include "app/model/sheet_layout.h"

#include <algorithm>
#include <cassert>
#include <cstddef>

#include "app/cli/option_values.h"

namespace dxf2d {
namespace {

// Columns count to the right and rows up the sheet, from the front view.
struct SheetCell {
  std::string_view view;
  int column;
  int row;
};

// In first-angle projection; in third-angle projection, the views around the front change sides.
constexpr std::array<SheetCell, 7> kCells{{{"front", 0, 0},
                                           {"top", 0, -1},
                                           {"bottom", 0, 1},
                                           {"right", -1, 0},
                                           {"left", 1, 0},
                                           {"back", 2, 0},
                                           {"iso", 1, -1}}};

const SheetCell* findCell(std::string_view view) {
  const auto found = std::ranges::find(kCells, view, &SheetCell::view);
  return found == kCells.end() ? nullptr : &*found;
}

SheetCell cellOf(std::string_view view, ProjectionAngle projection) {
  const SheetCell* const found = findCell(view);
  assert(found != nullptr);
  SheetCell cell = *found;
  if (projection == ProjectionAngle::kThird) {
    cell.row = -cell.row;
    const bool isBesideFront = cell.row == 0 && (cell.column == 1 || cell.column == -1);
    cell.column = isBesideFront ? -cell.column : cell.column;
  }
  return cell;
}

struct Span {
  double low = 0.0;
  double high = 0.0;

  double Size() const { return high - low; }
};

// A view along one axis: its column or row, and its span before it is moved.
struct Placed {
  int lane = 0;
  Span span;
};

// The spans of the lanes -1 .. 2 on the sheet, the lane 0 where its views are.
class Lanes {
 public:
  Lanes(std::span<const Placed> views, double gap) {
    for (const Placed& view : views) {
      Add(view);
    }
    // Without the lane 0, the first one after it begins at 0.
    double end = At(0) ? At(0)->high : -gap;
    for (int lane = 1; lane <= kLast; ++lane) {
      if (At(lane)) {
        const double size = At(lane)->Size();
        At(lane) = Span{end + gap, end + gap + size};
        end += gap + size;
      }
    }
    if (At(-1)) {
      const double start = At(0) ? At(0)->low : 0.0;
      At(-1) = Span{start - gap - At(-1)->Size(), start - gap};
    }
  }

  // The views of lane 0 line up as they are; in the others, each view is in the middle.
  double ShiftOf(const Placed& view) const {
    if (view.lane == 0) {
      return 0.0;
    }
    const Span& lane = *spans_[static_cast<std::size_t>(view.lane - kFirst)];
    return (lane.low + lane.high) / 2 - (view.span.low + view.span.high) / 2;
  }

 private:
  static constexpr int kFirst = -1;
  static constexpr int kLast = 2;

  std::optional<Span>& At(int lane) { return spans_[static_cast<std::size_t>(lane - kFirst)]; }

  void Add(const Placed& view) {
    std::optional<Span>& lane = At(view.lane);
    if (lane && view.lane == 0) {
      lane = Span{std::min(lane->low, view.span.low), std::max(lane->high, view.span.high)};
    } else if (!lane || view.span.Size() > lane->Size()) {
      lane = view.span;
    }
  }

  std::array<std::optional<Span>, kLast - kFirst + 1> spans_;
};

}  // namespace

std::optional<std::vector<std::string>> parseSheetViews(std::string_view text) {
  std::vector<std::string> views;
  while (true) {
    const std::size_t comma = text.find(',');
    std::string view = normalized(text.substr(0, comma));
    if (findCell(view) == nullptr || std::ranges::find(views, view) != views.end()) {
      return std::nullopt;
    }
    views.push_back(std::move(view));
    if (comma == std::string_view::npos) {
      return views;
    }
    text.remove_prefix(comma + 1);
  }
}

std::vector<std::optional<std::array<double, 2>>> placeViews(std::span<const std::string> views,
                                                             std::span<const PlanExtent> extents,
                                                             ProjectionAngle projection,
                                                             double gap) {
  std::vector<Placed> across;
  std::vector<Placed> up;
  for (std::size_t i = 0; i < views.size(); ++i) {
    if (!extents[i].IsEmpty()) {
      const SheetCell cell = cellOf(views[i], projection);
      across.push_back({cell.column, {extents[i].minX, extents[i].maxX}});
      up.push_back({cell.row, {extents[i].minY, extents[i].maxY}});
    }
  }
  const Lanes columns(across, gap);
  const Lanes rows(up, gap);
  std::vector<std::optional<std::array<double, 2>>> shifts(views.size());
  std::size_t next = 0;
  for (std::size_t i = 0; i < views.size(); ++i) {
    if (!extents[i].IsEmpty()) {
      shifts[i] = {columns.ShiftOf(across[next]), rows.ShiftOf(up[next])};
      ++next;
    }
  }
  return shifts;
}

}  // namespace dxf2d
