#include "app/linework/simplification.h"

#include <algorithm>
#include <cstdint>

#include "app/linework/edges.h"

namespace dxf2d::linework {

namespace {

double squaredDistance(PlanPoint point, PlanPoint begin, PlanPoint end) {
  const PlanPoint vector = end - begin;
  const double squaredLength = dot(vector, vector);
  PlanPoint apart = point - begin;
  if (squaredLength > 0.0) {
    const double along = std::clamp(dot(apart, vector) / squaredLength, 0.0, 1.0);
    apart = point - PlanPoint{begin.x + along * vector.x, begin.y + along * vector.y};
  }
  return dot(apart, apart);
}

struct Farthest {
  std::size_t place;
  double squaredDistance;
};

Farthest farthestBetween(std::span<const PlanPoint> points, std::size_t begin, std::size_t end) {
  Farthest farthest{begin, -1.0};
  for (std::size_t i = begin + 1; i < end; ++i) {
    const double squared = squaredDistance(points[i], points[begin], points[end]);
    if (squared > farthest.squaredDistance) {
      farthest = {i, squared};
    }
  }
  return farthest;
}

// Marks the points to keep between two that are kept.
void keepBetween(std::span<const PlanPoint> points, std::size_t first, std::size_t last,
                 double tolerance, std::vector<std::uint8_t>& kept) {
  std::vector<std::pair<std::size_t, std::size_t>> open{{first, last}};
  while (!open.empty()) {
    const auto [begin, end] = open.back();
    open.pop_back();
    const Farthest farthest = farthestBetween(points, begin, end);
    if (farthest.squaredDistance > tolerance * tolerance) {
      kept[farthest.place] = 1;
      open.emplace_back(begin, farthest.place);
      open.emplace_back(farthest.place, end);
    }
  }
}

}  // namespace

std::vector<PlanPoint> simplify(std::span<const PlanPoint> points, bool closed, double tolerance) {
  constexpr std::size_t kTriangle = 3;
  const std::size_t least = closed ? kTriangle : 2;
  std::vector<PlanPoint> ring(points.begin(), points.end());
  if (points.size() <= least) {
    return ring;
  }
  std::vector<std::uint8_t> kept(points.size() + 1, 0);
  kept.front() = 1;
  if (closed) {
    ring.push_back(ring.front());
    const std::size_t far = farthestBetween(ring, 0, points.size()).place;
    kept[far] = 1;
    keepBetween(ring, 0, far, tolerance, kept);
    keepBetween(ring, far, points.size(), tolerance, kept);
  } else {
    kept[points.size() - 1] = 1;
    keepBetween(ring, 0, points.size() - 1, tolerance, kept);
  }
  std::vector<PlanPoint> simplified;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (kept[i] != 0) {
      simplified.push_back(points[i]);
    }
  }
  // A ring that is all within the tolerance of a line is still a ring.
  return simplified.size() < least ? std::vector(points.begin(), points.end()) : simplified;
}

}  // namespace dxf2d::linework
