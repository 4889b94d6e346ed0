#include "mesh/plan_points.h"

#include <algorithm>

#include "mesh/near_points.h"
#include "mesh/point_collector.h"
#include "platform/large_memory.h"
#include "platform/parallel.h"

namespace dxf2d::mesh {

namespace {

Point inPlan(const Point& point) { return {point[0], point[1], 0.0}; }

Box boxOf(const std::vector<Point>& places) {
  Box box = {places[0], places[0]};
  for (const Point& place : places) {
    for (std::size_t axis = 0; axis < 2; ++axis) {
      box.least[axis] = std::min(box.least[axis], place[axis]);
      box.greatest[axis] = std::max(box.greatest[axis], place[axis]);
    }
  }
  return box;
}

// Lists the different places in plan of the points that are looked at, and the first point at each;
// `placeOf` receives the number of each point's place.
void findPlaces(const std::vector<Point>& points, const std::vector<Index>& looked,
                std::size_t threads, std::vector<Index, LargeAllocator<Index>>& placeOf,
                std::vector<Point>& places, std::vector<Index>& firsts) {
  LargeArray<Index> numbers(looked.size());
  collectPoints(
      looked.size(), threads,
      [&](std::size_t begin, std::size_t size, Point* out) {
        for (std::size_t i = begin; i < begin + size; ++i) {
          *out++ = inPlan(points[looked[i]]);
        }
      },
      places, numbers.data());
  reserveLarge(firsts, places.size());
  for (std::size_t i = 0; i < looked.size(); ++i) {
    if (numbers[i] == firsts.size()) {
      firsts.push_back(looked[i]);
    }
    placeOf[looked[i]] = numbers[i];
  }
}

}  // namespace

PlanPoints joinInPlan(std::vector<Point>& points, const std::vector<char>& isLookedAt,
                      double distance, std::size_t threads) {
  PlanPoints plan;
  plan.first.resize(points.size(), kNone);
  const std::vector<Index> looked =
      collectInParallel<Index>(points.size(), threads, [&](std::size_t i, auto& list) {
        if (isLookedAt[i] != 0) {
          list.push_back(static_cast<Index>(i));
        }
      });
  if (looked.empty()) {
    return plan;
  }
  // The different places in plan, and the first point at each.
  std::vector<Point> places;
  std::vector<Index> firsts;
  findPlaces(points, looked, threads, plan.first, places, firsts);
  const auto joined = joinNear(places, boxOf(places), distance, threads);
  const Blocks blocks(looked.size(), threads);
  std::vector<char> isMoved(blocks.Count(), 0);
  blocks.Run([&](std::size_t number, const Block& block) {
    for (std::size_t k = block.begin; k < block.end; ++k) {
      const Index i = looked[k];
      const Index place = plan.first[i];
      const Index kept = joined.empty() ? place : joined[place];
      if (kept != place) {
        points[i] = {places[kept][0], places[kept][1], points[i][2]};
        isMoved[number] = 1;
      }
      plan.first[i] = firsts[kept];
    }
  });
  plan.isMoved = std::ranges::find(isMoved, 1) != isMoved.end();
  return plan;
}

}  // namespace dxf2d::mesh
