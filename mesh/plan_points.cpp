#include "mesh/plan_points.h"

#include <algorithm>
#include <cstdint>

#include "mesh/equal_points.h"
#include "mesh/near_points.h"
#include "platform/prefetch.h"

namespace dxf2d::mesh {

namespace {

Point inPlan(const Point& point) { return {point[0], point[1], 0.0}; }

Box boxInPlan(const std::vector<Point>& points, const std::vector<Index>& looked) {
  Box box = {inPlan(points[looked[0]]), inPlan(points[looked[0]])};
  for (const Index i : looked) {
    for (std::size_t axis = 0; axis < 2; ++axis) {
      box.least[axis] = std::min(box.least[axis], points[i][axis]);
      box.greatest[axis] = std::max(box.greatest[axis], points[i][axis]);
    }
  }
  return box;
}

// Lists the different places in plan of the points that are looked at, and the first point at each;
// `placeOf` receives the number of each point's place.
void findPlaces(const std::vector<Point>& points, const std::vector<Index>& looked,
                std::vector<Index, LargeAllocator<Index>>& placeOf, std::vector<Point>& places,
                std::vector<Index>& firsts) {
  struct Candidate {
    Point place;
    std::uint32_t hash;
  };
  EqualPoints kept(looked.size() / 2);
  forEachPrefetched(
      kept, looked.size(),
      [&](std::size_t i) {
        const Point place = inPlan(points[looked[i]]);
        return Candidate{place, EqualPoints::Hash(place)};
      },
      [&](std::size_t i, const Candidate& candidate) {
        Index found = kept.Find(candidate.hash, candidate.place, places.data());
        if (found == kNone) {
          found = static_cast<Index>(places.size());
          kept.Keep(candidate.hash, found);
          appendLarge(places, candidate.place);
          appendLarge(firsts, looked[i]);
        }
        placeOf[looked[i]] = found;
        return true;
      });
}

}  // namespace

PlanPoints joinInPlan(std::vector<Point>& points, const std::vector<char>& isLookedAt,
                      double distance) {
  PlanPoints plan;
  plan.first.resize(points.size(), kNone);
  std::vector<Index> looked;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (isLookedAt[i] != 0) {
      looked.push_back(static_cast<Index>(i));
    }
  }
  if (looked.empty()) {
    return plan;
  }
  // The different places in plan, and the first point at each.
  std::vector<Point> places;
  std::vector<Index> firsts;
  findPlaces(points, looked, plan.first, places, firsts);
  const auto joined = joinNear(places, boxInPlan(points, looked), distance);
  for (const Index i : looked) {
    const Index place = plan.first[i];
    const Index kept = joined.empty() ? place : joined[place];
    if (kept != place) {
      points[i] = {places[kept][0], places[kept][1], points[i][2]};
      plan.isMoved = true;
    }
    plan.first[i] = firsts[kept];
  }
  return plan;
}

}  // namespace dxf2d::mesh
