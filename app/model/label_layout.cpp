#include "app/model/label_layout.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "app/drawing/text_decoding.h"

namespace dxf2d {
namespace {

constexpr double kCharacterWidth = 0.8;
// Of the height: between two labels, and between a label and a line.
constexpr double kGap = 0.25;
constexpr double kLineGap = 0.1;
// What is tried for a label where no line runs through it, in this order: its share of the height
// that labels have, and whether it stands beside its object.
struct ClearTry {
  double share;
  bool isBeside;
};
constexpr std::array<ClearTry, 6> kClearTries = {
    {{1.0, false}, {0.75, false}, {1.0, true}, {0.5, false}, {0.75, true}, {0.5, true}}};
// What is tried after that, and whether it has to stand off smaller objects.
struct Try {
  double share;
  bool isOffObjects;
};
constexpr std::array<Try, 5> kTries = {
    {{1.0, true}, {0.75, true}, {1.0, false}, {0.75, false}, {0.5, false}}};
// Places across an object's extent, each way; odd, so that the middle is one.
constexpr int kPlaces = 9;
// How much higher than wide an object is whose label may run up the sheet.
constexpr double kUprightRatio = 1.5;

double sizeOf(const PlanExtent& box) { return (box.maxX - box.minX) + (box.maxY - box.minY); }

bool overlap(const PlanExtent& a, const PlanExtent& b) {
  return a.minX < b.maxX && b.minX < a.maxX && a.minY < b.maxY && b.minY < a.maxY;
}

// Boxes by the cells of a grid that they touch.
class BoxGrid {
 public:
  explicit BoxGrid(double cell) : cell_(cell) {}

  // Whether no box overlaps this one, but for those with isIgnored(other).
  template <class IsIgnored>
  bool IsFree(const PlanExtent& box, IsIgnored isIgnored) const {
    return !AnyCell(box, [&](std::uint64_t key) {
      const auto found = cells_.find(key);
      return found != cells_.end() &&
             std::ranges::any_of(found->second, [&](const PlanExtent& other) {
               return overlap(other, box) && !isIgnored(other);
             });
    });
  }
  void Add(const PlanExtent& box) {
    AnyCell(box, [&](std::uint64_t key) {
      cells_[key].push_back(box);
      return false;
    });
  }

 private:
  // True as soon as visit(key) is for a cell that the box touches.
  template <class Visit>
  bool AnyCell(const PlanExtent& box, Visit visit) const {
    const std::int64_t lastX = CellOf(box.maxX);
    const std::int64_t lastY = CellOf(box.maxY);
    for (std::int64_t x = CellOf(box.minX); x <= lastX; ++x) {
      for (std::int64_t y = CellOf(box.minY); y <= lastY; ++y) {
        if (visit(static_cast<std::uint64_t>(x) * 0x9e3779b97f4a7c15U ^
                  static_cast<std::uint64_t>(y))) {
          return true;
        }
      }
    }
    return false;
  }
  std::int64_t CellOf(double coordinate) const {
    // Coordinates so far out share a cell, which costs time and no more.
    constexpr double kFarthest = 1e15;
    return static_cast<std::int64_t>(
        std::clamp(std::floor(coordinate / cell_), -kFarthest, kFarthest));
  }

  double cell_;
  std::unordered_map<std::uint64_t, std::vector<PlanExtent>> cells_;
};

// The offsets -n .. n of places, nearest to the middle first: 0, 1, -1, 2, -2.
int offsetOf(int i) { return i % 2 == 1 ? (i + 1) / 2 : -i / 2; }

// What a label has to stand off.
struct Obstacles {
  const LineRaster& lines;
  BoxGrid labels;
  // Of objects, as far as they are small.
  BoxGrid objects;
};

// One label at one height.
class Placer {
 public:
  Placer(const LabelRequest& request, double height, Obstacles& obstacles)
      : extent_(request.extent),
        height_(height),
        sizeX_(extent_.maxX - extent_.minX),
        sizeY_(extent_.maxY - extent_.minY),
        isUpright_(request.width * height > sizeX_ && sizeY_ > kUprightRatio * sizeX_),
        textX_(isUpright_ ? height : request.width * height),
        textY_(isUpright_ ? request.width * height : height),
        obstacles_(obstacles) {}

  // Finds the place within the object's extent where the text touches the fewest cells with lines,
  // `mostCells` at most, nearest to the middle of those; `isOffObjects`: and no smaller object.
  bool PlaceWithin(bool isOffObjects, std::size_t mostCells, LabelPlace& place) {
    const double roomX = std::max(0.0, sizeX_ - textX_);
    const double roomY = std::max(0.0, sizeY_ - textY_);
    std::optional<std::array<double, 2>> best;
    for (int i = 0; i < kPlaces * kPlaces; ++i) {
      if ((roomX == 0.0 && i % kPlaces != 0) || (roomY == 0.0 && i / kPlaces != 0)) {
        continue;
      }
      const std::array<double, 2> middle = extent_.Center();
      const std::array<double, 2> center{middle[0] + roomX * offsetOf(i % kPlaces) / (kPlaces - 1),
                                         middle[1] + roomY * offsetOf(i / kPlaces) / (kPlaces - 1)};
      const std::size_t cells = obstacles_.lines.CountIn(BoxAt(center, kLineGap));
      if (cells <= mostCells && IsOffLabels(center) && (!isOffObjects || IsOffSmaller(center))) {
        best = center;
        if (cells == 0) {
          break;
        }
        mostCells = cells - 1;
      }
    }
    return best && Take(*best, place);
  }

  // Finds a place next to the object within the drawing, off all lines and objects. Only at the
  // left and the right a text runs up the sheet.
  bool PlaceBeside(LabelPlace& place) {
    if (isUpright_) {
      if (PlaceAtSides(0, place)) {
        return true;
      }
      isUpright_ = false;
      std::swap(textX_, textY_);
    }
    return PlaceAtSides(0, place) || PlaceAtSides(1, place);
  }

 private:
  // Finds a place at the sides across the given axis: in the middle, or else flush with an end.
  bool PlaceAtSides(std::size_t axis, LabelPlace& place) {
    const std::array<double, 2> middle = extent_.Center();
    const std::array<double, 2> size = {sizeX_, sizeY_};
    const std::array<double, 2> text = {textX_, textY_};
    const double offset = (size[axis] + text[axis]) / 2 + kGap * height_;
    const double slide = (size[1 - axis] - text[1 - axis]) / 2;
    for (const double along : {0.0, slide, -slide}) {
      for (const double across : {offset, -offset}) {
        std::array<double, 2> center = middle;
        center[axis] += across;
        center[1 - axis] += along;
        const PlanExtent box = BoxAt(center, kLineGap);
        if (obstacles_.lines.Holds(box) && obstacles_.lines.CountIn(box) == 0 &&
            IsOffLabels(center) && IsOffStrangers(center)) {
          return Take(center, place);
        }
      }
    }
    return false;
  }

  PlanExtent BoxAt(const std::array<double, 2>& center, double gap) const {
    const double halfX = (textX_ + gap * height_) / 2;
    const double halfY = (textY_ + gap * height_) / 2;
    return {center[0] - halfX, center[1] - halfY, center[0] + halfX, center[1] + halfY};
  }

  bool IsOffLabels(const std::array<double, 2>& center) const {
    return obstacles_.labels.IsFree(BoxAt(center, kGap), [](const PlanExtent&) { return false; });
  }

  // Whether the text is off objects that are smaller than its own.
  bool IsOffSmaller(const std::array<double, 2>& center) const {
    const double size = sizeOf(extent_);
    return obstacles_.objects.IsFree(
        BoxAt(center, kGap), [size](const PlanExtent& other) { return sizeOf(other) >= size; });
  }

  // Whether the text is off objects that its own is not in, as a window is in its wall.
  bool IsOffStrangers(const std::array<double, 2>& center) const {
    return obstacles_.objects.IsFree(
        BoxAt(center, kGap), [this](const PlanExtent& other) { return overlap(other, extent_); });
  }

  bool Take(const std::array<double, 2>& center, LabelPlace& place) {
    obstacles_.labels.Add(BoxAt(center, kGap));
    place = {true, center, height_, isUpright_};
    return true;
  }

  const PlanExtent& extent_;
  double height_;
  double sizeX_;
  double sizeY_;
  bool isUpright_;
  // Of the text as it lies in plan.
  double textX_;
  double textY_;
  Obstacles& obstacles_;
};

void placeOne(const LabelRequest& request, double height, Obstacles& obstacles, LabelPlace& place) {
  const auto isClear = [&](const ClearTry& attempt) {
    Placer placer(request, attempt.share * height, obstacles);
    return attempt.isBeside ? placer.PlaceBeside(place) : placer.PlaceWithin(true, 0, place);
  };
  const auto isPlaced = [&](const Try& attempt) {
    return Placer(request, attempt.share * height, obstacles)
        .PlaceWithin(attempt.isOffObjects, std::numeric_limits<std::size_t>::max(), place);
  };
  static_cast<void>(std::ranges::any_of(kClearTries, isClear) ||
                    std::ranges::any_of(kTries, isPlaced));
}

}  // namespace

double labelWidth(std::u16string_view text) {
  // Of textOfName, and so ASCII; any code page will do.
  constexpr unsigned kCodePage = 1252;
  const std::string shown = decodeText(std::string(text.begin(), text.end()), kCodePage);
  // A character of UTF-8 has one byte that is not a continuation.
  const auto count = std::ranges::count_if(shown, [](char c) { return (c & 0xc0) != 0x80; });
  return kCharacterWidth * static_cast<double>(count);
}

std::vector<LabelPlace> placeLabels(const std::vector<LabelRequest>& requests, double height,
                                    const LineRaster& lines) {
  std::vector<std::size_t> order(requests.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order, std::ranges::greater{},
                           [&](std::size_t i) { return sizeOf(requests[i].extent); });
  // A few cells to a label.
  constexpr double kCellHeights = 4.0;
  Obstacles obstacles{lines, BoxGrid(kCellHeights * height), BoxGrid(kCellHeights * height)};
  for (const LabelRequest& request : requests) {
    // Larger ones leave no room to avoid them.
    constexpr double kMostHeights = 100.0;
    if (sizeOf(request.extent) <= kMostHeights * height) {
      obstacles.objects.Add(request.extent);
    }
  }
  std::vector<LabelPlace> places(requests.size());
  for (const std::size_t i : order) {
    placeOne(requests[i], height, obstacles, places[i]);
  }
  return places;
}

}  // namespace dxf2d
