#include "projection/gap_bridges.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <tuple>

namespace dxf2d::projection {
namespace {

constexpr std::size_t kMostEnds = 256;
// Of the diagonal of the lines' box.
constexpr double kLongestShare = 0.25;

double distance(const PlanPoint& a, const PlanPoint& b) {
  return std::hypot(b[0] - a[0], b[1] - a[1]);
}

// An end of a polyline that is not closed.
struct OpenEnd {
  PlanPoint point;
  Index line;
  bool isOfStraightLine;
};

struct OpenEnds {
  std::vector<OpenEnd> ends;
  double diagonal = 0;
};

// A bridge from one end of a straight line to the other would lie on it: a loop without an area.
bool areOfOneStraightLine(const OpenEnd& a, const OpenEnd& b) {
  return a.line == b.line && a.isOfStraightLine;
}

OpenEnds openEndsOf(const Polylines& lines, std::span<const Index> numbers) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  PlanPoint low = {kInfinity, kInfinity};
  PlanPoint high = {-kInfinity, -kInfinity};
  OpenEnds open;
  for (const Index i : numbers) {
    for (const PlanPoint& point : lines.At(i)) {
      for (std::size_t axis = 0; axis < 2; ++axis) {
        low[axis] = std::min(low[axis], point[axis]);
        high[axis] = std::max(high[axis], point[axis]);
      }
    }
    if (!lines.IsClosed(i)) {
      const bool isStraight = lines.At(i).size() == 2;
      open.ends.push_back({lines.At(i).front(), i, isStraight});
      open.ends.push_back({lines.At(i).back(), i, isStraight});
    }
  }
  open.diagonal = open.ends.empty() ? 0 : distance(low, high);
  return open;
}

}  // namespace

std::vector<GroupedSegment> bridgesOverGaps(const Polylines& lines,
                                            std::span<const Index> numbers) {
  const OpenEnds open = openEndsOf(lines, numbers);
  const std::vector<OpenEnd>& ends = open.ends;
  if (ends.size() > kMostEnds) {
    return {};
  }
  std::vector<std::tuple<double, std::size_t, std::size_t>> pairs;
  for (std::size_t i = 0; i < ends.size(); ++i) {
    for (std::size_t j = i + 1; j < ends.size(); ++j) {
      const double gap = distance(ends[i].point, ends[j].point);
      if (gap <= kLongestShare * open.diagonal && !areOfOneStraightLine(ends[i], ends[j])) {
        pairs.emplace_back(gap, i, j);
      }
    }
  }
  std::ranges::sort(pairs);
  std::vector<char> isTaken(ends.size());
  std::vector<GroupedSegment> bridges;
  for (const auto& [gap, i, j] : pairs) {
    if (isTaken[i] == 0 && isTaken[j] == 0) {
      isTaken[i] = isTaken[j] = 1;
      bridges.push_back({ends[i].point, ends[j].point, lines.groups[numbers.front()]});
    }
  }
  return 2 * bridges.size() == ends.size() ? bridges : std::vector<GroupedSegment>();
}

}  // namespace dxf2d::projection
