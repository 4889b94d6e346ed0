#include "app/linework/linework.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

#include "app/drawing/plan_extents.h"
#include "app/linework/changed_edges.h"
#include "app/linework/collinear_grid.h"
#include "app/linework/crowd_thinning.h"
#include "app/linework/end_welding.h"
#include "app/linework/path_chaining.h"

namespace dxf2d::linework {

namespace {

// With ends welded in a wider radius than lines overlap in, no cut is nearer than the tolerance to
// an end of what it cuts.
constexpr double kWeldTolerances = 1.5;

// What rounding makes of points that lie on one line exactly.
double exactnessOf(const std::vector<PlanPoint>& points) {
  double largest = 0.0;
  for (const PlanPoint point : points) {
    largest = std::max({largest, std::abs(point.x), std::abs(point.y)});
  }
  constexpr double kRoundings = 4.0;
  return kRoundings * std::numeric_limits<double>::epsilon() * largest;
}

struct Round {
  Chains chains;
  // Whether segments were cut: then others may lie on one another than before.
  bool hasCuts;
};

Round joinOnce(const Graph& graph, CollinearGrid& grid, double tolerance, double exactness) {
  const auto forEachPair = [&](const auto& visit) { grid.ForEachPair(visit); };
  const DistinctEdges distinct = removeOverlaps(graph, forEachPair, tolerance);
  const std::vector<EndNumber> partners = pairEnds(graph.points, distinct.edges);
  return {chainEdges(graph.points, distinct, partners, exactness), distinct.hasCuts};
}

Round joinFirst(Graph& graph, double tolerance, double exactness) {
  std::vector<EdgeNumber> candidates = allEdges(graph);
  std::optional<CollinearGrid> grid(std::in_place, graph, candidates, tolerance);
  if (thinCrowds(graph, grid->CrowdedEdges(), tolerance)) {
    candidates = allEdges(graph);
    grid.emplace(graph, candidates, tolerance);
  }
  return joinOnce(graph, *grid, tolerance, exactness);
}

// The segments of polylines, and for each whether it is changed.
struct Segments {
  std::vector<Edge> edges;
  std::vector<std::uint8_t> changed;
};

Segments segmentsOf(const Chains& chains) {
  Segments segments;
  segments.edges.reserve(chains.points.size());
  segments.changed.reserve(chains.points.size());
  std::size_t begin = 0;
  for (std::size_t i = 0; i < chains.ends.size(); ++i) {
    const std::size_t end = chains.ends[i];
    for (std::size_t j = begin; j + 1 < end; ++j) {
      segments.edges.push_back({chains.points[j], chains.points[j + 1]});
      segments.changed.push_back(chains.changed[j]);
    }
    if (chains.closed[i] != 0) {
      segments.edges.push_back({chains.points[end - 1], chains.points[begin]});
      segments.changed.push_back(chains.changed[end - 1]);
    }
    begin = end;
  }
  return segments;
}

bool areSame(const Chains& a, const Chains& b) {
  return a.points == b.points && a.ends == b.ends && a.closed == b.closed;
}

Paths pathsOf(const Graph& graph, const Chains& chains) {
  Paths paths;
  paths.points.reserve(chains.points.size());
  for (const PointNumber point : chains.points) {
    paths.points.push_back(graph.points[point]);
  }
  paths.ends = chains.ends;
  paths.closed = chains.closed;
  return paths;
}

}  // namespace

Paths joinSegments(std::vector<PlanPoint> ends, double tolerance) {
  // Two or three rounds are enough for drawings; this many for drawings made to need more.
  constexpr int kMostRounds = 16;
  Graph graph = weldEnds(ends, kWeldTolerances * tolerance);
  ends = {};
  removeDuplicates(graph);
  if (graph.edges.empty()) {
    return {};
  }
  const double exactness = exactnessOf(graph.points);
  Round round = joinFirst(graph, tolerance, exactness);
  for (int i = 1; round.hasCuts && i < kMostRounds; ++i) {
    Segments segments = segmentsOf(round.chains);
    graph.edges = std::move(segments.edges);
    const std::vector<EdgeNumber> candidates = edgesNearChanges(graph, segments.changed, tolerance);
    CollinearGrid grid(graph, candidates, tolerance);
    Round next = joinOnce(graph, grid, tolerance, exactness);
    if (areSame(next.chains, round.chains)) {
      break;
    }
    round = std::move(next);
  }
  return pathsOf(graph, round.chains);
}

double joinTolerance(const std::vector<PlanPoint>& ends) {
  constexpr double kShare = 1e-6;
  constexpr double kLeastExtent = 1e-100;
  constexpr double kMostCoordinate = 1e100;
  PlanExtents extents;
  for (const PlanPoint end : ends) {
    extents.Add(end);
  }
  const PlanPoint low = extents.Low();
  const PlanPoint high = extents.High();
  const double extent = std::max(high.x - low.x, high.y - low.y);
  const double largest =
      std::max({std::abs(low.x), std::abs(low.y), std::abs(high.x), std::abs(high.y)});
  if (!(extent > kLeastExtent) || largest > kMostCoordinate) {
    return 0.0;
  }
  return kShare * extent;
}

}  // namespace dxf2d::linework
