#include "projection/caps.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <utility>

namespace dxf2d::projection {
namespace {

// Sides looked at in all slabs together.
constexpr std::size_t kMostWork = 200'000'000;

// A side of a loop, upwards.
struct Side {
  PlanPoint low;
  PlanPoint high;

  double XAt(double y) const {
    if (y >= high[1]) {
      return high[0];
    }
    return low[0] + (high[0] - low[0]) * ((y - low[1]) / (high[1] - low[1]));
  }
  friend auto operator<=>(const Side&, const Side&) = default;  // NOLINT(modernize-use-nullptr)
};

// The sides that are not level, in order of their lower ends; of each as many as there are in
// proportion.
std::vector<Side> makeSides(std::span<const GroupedSegment> segments) {
  std::vector<Side> all;
  for (const GroupedSegment& segment : segments) {
    if (segment.from[1] < segment.to[1]) {
      all.push_back({segment.from, segment.to});
    } else if (segment.to[1] < segment.from[1]) {
      all.push_back({segment.to, segment.from});
    }
  }
  const auto isLower = [](const Side& a, const Side& b) {
    return a.low[1] != b.low[1] ? a.low[1] < b.low[1] : a < b;
  };
  std::ranges::sort(all, isLower);
  std::vector<std::pair<Side, std::size_t>> counted;
  std::size_t least = std::numeric_limits<std::size_t>::max();
  for (std::size_t i = 0; i < all.size();) {
    std::size_t end = i + 1;
    while (end < all.size() && all[end] == all[i]) {
      ++end;
    }
    counted.emplace_back(all[i], end - i);
    least = std::min(least, end - i);
    i = end;
  }
  std::vector<Side> sides;
  for (const auto& [side, count] : counted) {
    sides.insert(sides.end(), count / least, side);
  }
  return sides;
}

// The level sides of loops, by their heights.
class LevelSides {
 public:
  explicit LevelSides(std::span<const GroupedSegment> segments) {
    for (const GroupedSegment& segment : segments) {
      const auto [left, right] = std::minmax(segment.from[0], segment.to[0]);
      if (segment.from[1] == segment.to[1] && left < right) {
        sides_.push_back({segment.from[1], left, right});
      }
    }
    std::ranges::sort(sides_);
  }

  // Whether the sides at the height leave no gap longer than `weld` between `left` and `right`.
  bool Cover(double y, double left, double right, double weld) const {
    const std::array first = {y, -std::numeric_limits<double>::infinity(), 0.0};
    double reached = left;
    for (auto side = std::ranges::lower_bound(sides_, first);
         side != sides_.end() && (*side)[0] == y && (*side)[1] <= reached + weld; ++side) {
      reached = std::max(reached, (*side)[2]);
    }
    return right <= reached + weld;
  }

 private:
  // Height, left end, right end.
  std::vector<std::array<double, 3>> sides_;
};

// Sweeps upwards. An area between two sides goes on through all slabs in which these two are
// neighbors.
class Sweep {
 public:
  Sweep(const std::vector<Side>& sides, const LevelSides& levelSides, double weld,
        std::vector<std::array<PlanPoint, 3>>& triangles)
      : sides_(sides),
        levelSides_(levelSides),
        weld_(weld),
        triangles_(triangles),
        areas_(sides.size()),
        isGoingOn_(sides.size()) {}

  bool Run() {
    std::vector<double> levels;
    for (const Side& side : sides_) {
      levels.push_back(side.low[1]);
      levels.push_back(side.high[1]);
    }
    std::ranges::sort(levels);
    levels.erase(std::unique(levels.begin(), levels.end()), levels.end());
    std::size_t work = 0;
    double bottom = levels.empty() ? 0 : levels.front();
    for (std::size_t next = 1; next < levels.size();) {
      double top = levels[next];
      StartLevel(bottom);
      Enter(bottom, top);
      while (const auto crossing = FirstCrossing(bottom, top)) {
        work += active_.size();
        if (work > kMostWork) {
          return false;
        }
        top = *crossing;
        SortAt(bottom + (top - bottom) / 2);
      }
      Pair(bottom);
      work += active_.size();
      if (active_.size() % 2 != 0 || work > kMostWork || !EndsAtSides(bottom)) {
        return false;
      }
      next += top == levels[next] ? 1 : 0;
      bottom = top;
    }
    if (levels.empty()) {
      return true;
    }
    StartLevel(bottom);
    active_.clear();
    Pair(bottom);
    return EndsAtSides(bottom);
  }

 private:
  static constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

  // What lies to the right of a side: up to which other side, from which height on.
  struct Area {
    std::uint32_t right = kNone;
    double from = 0;
  };

  // Makes the list of the sides that run through the slab, from left to right.
  void Enter(double bottom, double top) {
    std::erase_if(active_, [&](std::uint32_t side) { return sides_[side].high[1] <= bottom; });
    while (next_ < sides_.size() && sides_[next_].low[1] <= bottom) {
      active_.push_back(static_cast<std::uint32_t>(next_++));
    }
    SortAt(bottom + (top - bottom) / 2);
  }

  // Notes where the areas below the level end.
  void StartLevel(double level) {
    ends_.clear();
    AppendEnds(level);
  }

  void AppendEnds(double level) {
    for (const std::uint32_t side : active_) {
      ends_.push_back(sides_[side].XAt(level));
    }
  }

  // Whether a side lies everywhere along the level where there is an area above or below it, but
  // not both.
  bool EndsAtSides(double level) {
    AppendEnds(level);
    std::ranges::sort(ends_);
    for (std::size_t i = 0; i + 1 < ends_.size(); i += 2) {
      if (ends_[i + 1] - ends_[i] > weld_ &&
          !levelSides_.Cover(level, ends_[i], ends_[i + 1], weld_)) {
        return false;
      }
    }
    return true;
  }

  void SortAt(double y) {
    std::ranges::stable_sort(active_, {}, [&](std::uint32_t side) { return sides_[side].XAt(y); });
  }

  // A height inside of the slab at which two neighbors change sides, of all neighbors the lowest.
  // What is nearer than rounding does not count.
  std::optional<double> FirstCrossing(double bottom, double top) const {
    constexpr double kLeastShare = 1e-9;
    std::optional<double> first;
    for (std::size_t i = 0; i + 1 < active_.size(); ++i) {
      const Side& left = sides_[active_[i]];
      const Side& right = sides_[active_[i + 1]];
      const double atBottom = right.XAt(bottom) - left.XAt(bottom);
      const double atTop = right.XAt(top) - left.XAt(top);
      const double least = kLeastShare * std::max(std::abs(atBottom), std::abs(atTop));
      if (std::min(atBottom, atTop) >= -least || std::max(atBottom, atTop) <= least) {
        continue;
      }
      const double share = atBottom / (atBottom - atTop);
      const double y = bottom + share * (top - bottom);
      if (share > kLeastShare && share < 1 - kLeastShare && bottom < y && y < top) {
        first = std::min(first.value_or(y), y);
      }
    }
    return first;
  }

  // Ends the areas that do not go on above `level`, and begins those that are new.
  void Pair(double level) {
    std::vector<std::pair<std::uint32_t, std::uint32_t>> pairs;
    for (std::size_t i = 0; i + 1 < active_.size(); i += 2) {
      pairs.emplace_back(active_[i], active_[i + 1]);
    }
    for (const auto& [left, right] : pairs) {
      if (areas_[left].right != right) {
        if (areas_[left].right == kNone) {
          open_.push_back(left);
        }
        End(left, level);
        areas_[left] = {right, level};
      }
      isGoingOn_[left] = 1;
    }
    std::vector<std::uint32_t> still;
    for (const std::uint32_t left : open_) {
      if (isGoingOn_[left] != 0) {
        isGoingOn_[left] = 0;
        still.push_back(left);
      } else {
        End(left, level);
      }
    }
    open_ = std::move(still);
  }

  void End(std::uint32_t left, double level) {
    Area& area = areas_[left];
    if (area.right == kNone) {
      return;
    }
    const auto corner = [&](std::uint32_t side, double y) {
      return PlanPoint{sides_[side].XAt(y), y};
    };
    const PlanPoint a = corner(left, area.from);
    const PlanPoint b = corner(area.right, area.from);
    const PlanPoint c = corner(area.right, level);
    const PlanPoint d = corner(left, level);
    triangles_.push_back({a, b, c});
    triangles_.push_back({a, c, d});
    area.right = kNone;
  }

  const std::vector<Side>& sides_;
  const LevelSides& levelSides_;
  double weld_;
  std::vector<std::array<PlanPoint, 3>>& triangles_;
  std::vector<Area> areas_;
  std::size_t next_ = 0;
  std::vector<std::uint32_t> active_;
  // Where the areas below and above a level begin and end.
  std::vector<double> ends_;
  // The left sides of the areas that have begun.
  std::vector<std::uint32_t> open_;
  std::vector<char> isGoingOn_;
};

}  // namespace

bool appendCap(std::span<const GroupedSegment> segments, double weld,
               std::vector<std::array<PlanPoint, 3>>& triangles) {
  const std::vector<Side> sides = makeSides(segments);
  const std::size_t before = triangles.size();
  if (!Sweep(sides, LevelSides(segments), weld, triangles).Run()) {
    triangles.resize(before);
    return false;
  }
  return true;
}

}  // namespace dxf2d::projection
