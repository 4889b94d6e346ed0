// The data structures of joining against plain searches through everything: the same results.
#include <gtest/gtest.h>

#include <random>
#include <set>

#include "app/linework/collinear_grid.h"
#include "app/linework/crowd_thinning.h"
#include "app/linework/end_welding.h"
#include "app/linework/overlap_removal.h"
#include "app/linework/path_chaining.h"
#include "tests/app/linework/segments.h"

namespace dxf2d::linework {
namespace {

constexpr double kWeldTolerances = 1.5;

// Linework of all kinds of neighborhoods, about 1000 units wide, which makes the tolerance 0.001.
class RandomLinework {
 public:
  explicit RandomLinework(unsigned seed) : random_(seed) {}

  std::vector<PlanPoint> Ends() {
    ends_.clear();
    const int parts = 1 + Below(6);
    for (int i = 0; i < parts; ++i) {
      AddPart();
    }
    append(ends_, {{-20.0, -20.0}, {-20.0, 980.0}});
    return ends_;
  }

 private:
  int Below(unsigned limit) { return static_cast<int>(random_() % limit); }
  double Real(double limit) { return limit * static_cast<double>(random_()) / 4294967296.0; }

  void AddPart() {
    const PlanPoint origin{Real(900.0), Real(900.0)};
    const double angle = Below(3) == 0 ? 0.0 : Real(7.0);
    axis_ = {std::cos(angle), std::sin(angle)};
    origin_ = origin;
    // Below and about the tolerance, as rounding leaves it.
    static constexpr double kJitters[] = {0.0, 1e-6, 3e-4, 2e-3};
    jitter_ = kJitters[Below(4)];
    switch (Below(5)) {
      case 0:
        return AddRing();
      case 1:
        return AddSegmentsOnOneLine(2.0);
      case 2:
        // More than a few of one length.
        return AddSegmentsOnOneLine(0.1);
      case 3:
        return AddHatch();
      default:
        return AddGrid();
    }
  }

  void Add(double x1, double y1, double x2, double y2) {
    for (const PlanPoint point : {PlanPoint{x1, y1}, PlanPoint{x2, y2}}) {
      const double x = point.x + Real(jitter_);
      const double y = point.y + Real(jitter_);
      ends_.push_back(
          {origin_.x + axis_.x * x - axis_.y * y, origin_.y + axis_.y * x + axis_.x * y});
    }
    if (Below(2) == 0) {
      std::swap(ends_.back(), ends_[ends_.size() - 2]);
    }
  }

  void AddRing() {
    const int corners = 3 + Below(30);
    for (int i = 0; i < corners; ++i) {
      const double a = 6.283185307179586 * i / corners;
      const double b = 6.283185307179586 * (i + 1) / corners;
      Add(20.0 * std::cos(a), 20.0 * std::sin(a), 20.0 * std::cos(b), 20.0 * std::sin(b));
    }
  }

  void AddSegmentsOnOneLine(double spread) {
    const int count = 2 + Below(120);
    for (int i = 0; i < count; ++i) {
      const double begin = Real(40.0);
      const double size = 0.01 * std::pow(10.0, 2.0 + Real(spread));
      Add(begin, 0.0, begin + size, 0.0);
    }
  }

  void AddHatch() {
    const double distance = 0.0005 * (1 + Below(40));
    for (int i = 0; i < 40; ++i) {
      Add(Real(2.0), distance * i, 30.0 + Real(2.0), distance * i);
    }
  }

  void AddGrid() {
    for (int i = 0; i < 40; ++i) {
      Add(Below(5), Below(5), Below(5), Below(5));
    }
  }

  std::mt19937 random_;
  PlanPoint origin_;
  PlanPoint axis_;
  double jitter_ = 0.0;
  std::vector<PlanPoint> ends_;
};

Graph plainWeld(const std::vector<PlanPoint>& ends, double radius) {
  Graph graph;
  const auto numberOf = [&](PlanPoint end) {
    std::size_t nearest = graph.points.size();
    double least = radius * radius;
    for (std::size_t i = 0; i < graph.points.size(); ++i) {
      const PlanPoint apart = graph.points[i] - end;
      if (dot(apart, apart) < least) {
        nearest = i;
        least = dot(apart, apart);
      }
    }
    if (nearest == graph.points.size()) {
      graph.points.push_back(end);
    }
    return static_cast<PointNumber>(nearest);
  };
  for (std::size_t i = 0; i < ends.size(); i += 2) {
    const PointNumber from = numberOf(ends[i]);
    const PointNumber to = numberOf(ends[i + 1]);
    if (from != to) {
      graph.edges.push_back({from, to});
    }
  }
  return graph;
}

void plainRemoveDuplicates(Graph& graph) {
  std::set<std::pair<PointNumber, PointNumber>> found;
  std::erase_if(graph.edges,
                [&](Edge edge) { return !found.insert(std::minmax(edge.from, edge.to)).second; });
}

// All pairs of edges that have a direction.
PairSource plainPairs(const Graph& graph, double tolerance) {
  return [&graph, tolerance](const std::function<void(EdgeNumber, EdgeNumber)>& visit) {
    const auto lengthOf = [&](EdgeNumber edge) {
      return length(graph.points[graph.edges[edge].to] - graph.points[graph.edges[edge].from]);
    };
    for (EdgeNumber a = 0; a < graph.edges.size(); ++a) {
      for (EdgeNumber b = 0; b < graph.edges.size(); ++b) {
        const double shorter = lengthOf(a);
        const double longer = lengthOf(b);
        if (shorter >= kLeastTolerances * tolerance &&
            (longer > shorter || (longer == shorter && b > a))) {
          visit(a, b);
        }
      }
    }
  };
}

void expectSameEdges(const std::vector<Edge>& edges, const std::vector<Edge>& expected) {
  ASSERT_EQ(edges.size(), expected.size());
  for (std::size_t i = 0; i < edges.size(); ++i) {
    ASSERT_EQ(edges[i].from, expected[i].from) << i;
    ASSERT_EQ(edges[i].to, expected[i].to) << i;
  }
}

TEST(ReferenceLinework, WeldsTheSamePoints) {
  RandomLinework linework(1);
  for (int i = 0; i < 300; ++i) {
    SCOPED_TRACE(i);
    const std::vector<PlanPoint> ends = linework.Ends();
    const double radius = kWeldTolerances * joinTolerance(ends);
    const Graph welded = weldEnds(ends, radius);
    const Graph expected = plainWeld(ends, radius);
    expectSameEdges(welded.edges, expected.edges);
    ASSERT_EQ(welded.points.size(), expected.points.size());
    for (std::size_t j = 0; j < welded.points.size(); ++j) {
      ASSERT_EQ(welded.points[j].x, expected.points[j].x);
      ASSERT_EQ(welded.points[j].y, expected.points[j].y);
    }
  }
}

TEST(ReferenceLinework, RemovesTheSameDuplicates) {
  RandomLinework linework(2);
  for (int i = 0; i < 300; ++i) {
    SCOPED_TRACE(i);
    const std::vector<PlanPoint> ends = linework.Ends();
    Graph graph = weldEnds(ends, kWeldTolerances * joinTolerance(ends));
    Graph expected = graph;
    removeDuplicates(graph);
    plainRemoveDuplicates(expected);
    expectSameEdges(graph.edges, expected.edges);
  }
}

TEST(ReferenceLinework, ThinsTheSameCrowds) {
  RandomLinework linework(3);
  std::size_t thinned = 0;
  for (int i = 0; i < 300; ++i) {
    SCOPED_TRACE(i);
    const std::vector<PlanPoint> ends = linework.Ends();
    const double tolerance = joinTolerance(ends);
    Graph graph = weldEnds(ends, kWeldTolerances * tolerance);
    removeDuplicates(graph);
    Graph expected = graph;
    const std::vector<EdgeNumber> edges = allEdges(graph);
    const std::vector<EdgeNumber> crowded = CollinearGrid(graph, edges, tolerance).CrowdedEdges();
    thinned += thinCrowds(graph, crowded, tolerance) ? 1U : 0U;
    thinCrowds(expected, allEdges(expected), tolerance);
    expectSameEdges(graph.edges, expected.edges);
  }
  EXPECT_GT(thinned, 20);
}

TEST(ReferenceLinework, CutsTheSameOverlaps) {
  RandomLinework linework(4);
  std::size_t withCuts = 0;
  for (int i = 0; i < 300; ++i) {
    SCOPED_TRACE(i);
    const std::vector<PlanPoint> ends = linework.Ends();
    const double tolerance = joinTolerance(ends);
    Graph graph = weldEnds(ends, kWeldTolerances * tolerance);
    removeDuplicates(graph);
    const std::vector<EdgeNumber> edges = allEdges(graph);
    CollinearGrid grid(graph, edges, tolerance);
    const auto pairs = [&](const auto& visit) { grid.ForEachPair(visit); };
    const DistinctEdges distinct = removeOverlaps(graph, pairs, tolerance);
    const DistinctEdges expected = removeOverlaps(graph, plainPairs(graph, tolerance), tolerance);
    expectSameEdges(distinct.edges, expected.edges);
    EXPECT_EQ(distinct.sources, expected.sources);
    EXPECT_EQ(distinct.isPiece, expected.isPiece);
    withCuts += distinct.hasCuts ? 1U : 0U;
  }
  EXPECT_GT(withCuts, 100);
}

}  // namespace
}  // namespace dxf2d::linework
