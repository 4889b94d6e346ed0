#include "app/linework/end_welding.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace dxf2d::linework {

namespace {

constexpr PointNumber kNone = std::numeric_limits<PointNumber>::max();

// The points found so far, in square cells that are hashed into buckets.
class PointGrid {
 public:
  PointGrid(std::span<const PlanPoint> ends, double radius)
      : radius_(radius), cell_(kCellRadii * radius) {
    constexpr std::size_t kLeastBuckets = 16;
    buckets_.assign(std::bit_ceil(std::max(ends.size(), kLeastBuckets)), kNone);
    origin_ = ends.front();
    for (const PlanPoint end : ends) {
      origin_ = {std::min(origin_.x, end.x), std::min(origin_.y, end.y)};
    }
  }

  // The number of the point at `end`, which is a new one unless another is near enough.
  PointNumber NumberOf(PlanPoint end) {
    const double column = (end.x - origin_.x) / cell_;
    const double row = (end.y - origin_.y) / cell_;
    // Nearly always the cells around are out of reach.
    constexpr double kReach = 1.0 / kCellRadii;
    Nearest nearest{kNone, radius_ * radius_};
    const auto first = Index(column - kReach);
    const auto last = Index(column + kReach);
    for (std::int64_t x = first; x <= last; ++x) {
      for (std::int64_t y = Index(row - kReach); y <= Index(row + kReach); ++y) {
        Search(BucketOf(x, y), end, nearest);
      }
    }
    return nearest.point != kNone ? nearest.point : Add(end, BucketOf(Index(column), Index(row)));
  }

  std::vector<PlanPoint> TakePoints() { return std::move(points_); }

 private:
  static constexpr double kCellRadii = 16.0;

  struct Nearest {
    PointNumber point;
    double squaredDistance;
  };

  static std::int64_t Index(double cells) { return static_cast<std::int64_t>(std::floor(cells)); }

  std::size_t BucketOf(std::int64_t x, std::int64_t y) const {
    std::uint64_t hash = static_cast<std::uint64_t>(x) * 0x9E3779B97F4A7C15U;
    hash = (hash ^ (hash >> 29U) ^ static_cast<std::uint64_t>(y)) * 0xBF58476D1CE4E5B9U;
    return (hash ^ (hash >> 32U)) & (buckets_.size() - 1);
  }

  void Search(std::size_t bucket, PlanPoint end, Nearest& nearest) const {
    for (PointNumber i = buckets_[bucket]; i != kNone; i = next_[i]) {
      const PlanPoint apart = points_[i] - end;
      const double squared = dot(apart, apart);
      const bool isNearer = squared < nearest.squaredDistance ||
                            (squared == nearest.squaredDistance && i < nearest.point);
      if (isNearer) {
        nearest = {i, squared};
      }
    }
  }

  PointNumber Add(PlanPoint point, std::size_t bucket) {
    const auto number = static_cast<PointNumber>(points_.size());
    points_.push_back(point);
    next_.push_back(buckets_[bucket]);
    buckets_[bucket] = number;
    return number;
  }

  double radius_;
  double cell_;
  PlanPoint origin_;
  std::vector<PlanPoint> points_;
  // The next point of the same bucket.
  std::vector<PointNumber> next_;
  std::vector<PointNumber> buckets_;
};

}  // namespace

Graph weldEnds(std::span<const PlanPoint> ends, double radius) {
  Graph graph;
  if (ends.empty()) {
    return graph;
  }
  PointGrid grid(ends, radius);
  graph.edges.reserve(ends.size() / 2);
  PointNumber last = kNone;
  for (std::size_t i = 0; i + 1 < ends.size(); i += 2) {
    // The segments of a polyline come one after the other.
    const bool goesOn = last != kNone && ends[i].x == ends[i - 1].x && ends[i].y == ends[i - 1].y;
    const PointNumber from = goesOn ? last : grid.NumberOf(ends[i]);
    const PointNumber to = grid.NumberOf(ends[i + 1]);
    last = to;
    if (from != to) {
      graph.edges.push_back({from, to});
    }
  }
  graph.points = grid.TakePoints();
  return graph;
}

}  // namespace dxf2d::linework
