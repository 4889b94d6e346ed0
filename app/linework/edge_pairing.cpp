#include "app/linework/edge_pairing.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace dxf2d::linework {

namespace {

// All pairs at a point are compared: linear in all as long as no point has too many.
constexpr std::size_t kMostPaired = 64;

PointNumber pointAt(std::span<const Edge> edges, EndNumber end) {
  const Edge edge = edges[end / 2];
  return end % 2 == 0 ? edge.from : edge.to;
}

// The ends at each point: those of point i from starts[i] to before starts[i + 1].
struct EndsByPoint {
  std::vector<std::uint32_t> starts;
  std::vector<EndNumber> ends;
};

EndsByPoint groupEnds(std::size_t pointCount, std::span<const Edge> edges) {
  EndsByPoint groups{std::vector<std::uint32_t>(pointCount + 2, 0),
                     std::vector<EndNumber>(2 * edges.size())};
  const auto endCount = static_cast<EndNumber>(2 * edges.size());
  for (EndNumber end = 0; end < endCount; ++end) {
    ++groups.starts[pointAt(edges, end) + 2];
  }
  for (std::size_t i = 2; i < groups.starts.size(); ++i) {
    groups.starts[i] += groups.starts[i - 1];
  }
  for (EndNumber end = 0; end < endCount; ++end) {
    groups.ends[groups.starts[pointAt(edges, end) + 1]++] = end;
  }
  return groups;
}

class CrossingPairs {
 public:
  CrossingPairs(std::span<const PlanPoint> points, std::span<const Edge> edges,
                std::vector<EndNumber>& partners)
      : points_(points), edges_(edges), partners_(partners) {}

  void Pair(std::span<const EndNumber> ends) {
    directions_.clear();
    for (const EndNumber end : ends) {
      directions_.push_back(DirectionOf(end));
    }
    pairs_.clear();
    for (std::size_t i = 0; i < ends.size(); ++i) {
      for (std::size_t j = i + 1; j < ends.size(); ++j) {
        pairs_.push_back(PairOf(directions_[i], directions_[j]));
      }
    }
    std::ranges::sort(pairs_, {}, [](const EndPair& pair) {
      return std::tuple(pair.bend, pair.low, pair.high, pair.first, pair.second);
    });
    for (const EndPair& pair : pairs_) {
      if (partners_[pair.first] == kNoEnd && partners_[pair.second] == kNoEnd) {
        partners_[pair.first] = pair.second;
        partners_[pair.second] = pair.first;
      }
    }
  }

 private:
  // A millionth of a right angle more or less is rounding: bends and angles are compared in steps,
  // so that a drawing and what it is read back as agree.
  static constexpr double kSteps = 1e6;

  struct Direction {
    EndNumber end;
    PlanPoint unit;
    // Where among all directions it stands, in steps; opposite to the next of the same bend.
    std::int64_t angle;
  };
  struct EndPair {
    // Cosine between the two ways out, in steps: the straighter, the smaller.
    std::int64_t bend;
    std::int64_t low;
    std::int64_t high;
    EndNumber first;
    EndNumber second;
  };

  Direction DirectionOf(EndNumber end) const {
    const PlanPoint away = points_[pointAt(edges_, end ^ 1U)] - points_[pointAt(edges_, end)];
    const double size = length(away);
    return {end, {away.x / size, away.y / size}, std::llround(std::atan2(away.y, away.x) * kSteps)};
  }

  static EndPair PairOf(const Direction& a, const Direction& b) {
    const auto [low, high] = std::minmax(a.angle, b.angle);
    return {std::llround(dot(a.unit, b.unit) * kSteps), low, high, a.end, b.end};
  }

  std::span<const PlanPoint> points_;
  std::span<const Edge> edges_;
  std::vector<EndNumber>& partners_;
  std::vector<Direction> directions_;
  std::vector<EndPair> pairs_;
};

}  // namespace

std::vector<EndNumber> pairEnds(std::span<const PlanPoint> points, std::span<const Edge> edges) {
  std::vector<EndNumber> partners(2 * edges.size(), kNoEnd);
  const EndsByPoint groups = groupEnds(points.size(), edges);
  CrossingPairs crossings(points, edges, partners);
  for (std::size_t i = 0; i < points.size(); ++i) {
    const std::span ends(groups.ends.data() + groups.starts[i],
                         groups.starts[i + 1] - groups.starts[i]);
    if (ends.size() == 2) {
      partners[ends[0]] = ends[1];
      partners[ends[1]] = ends[0];
    } else if (ends.size() > 2 && ends.size() <= kMostPaired) {
      crossings.Pair(ends);
    }
  }
  return partners;
}

}  // namespace dxf2d::linework
