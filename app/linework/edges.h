// Linework as a graph: points, and edges between them.
#pragma once

#include <cmath>
#include <cstdint>
#include <numeric>
#include <vector>

#include "app/drawing/drawing.h"

namespace dxf2d::linework {

using PointNumber = std::uint32_t;
using EdgeNumber = std::uint32_t;

// From one point to another one.
struct Edge {
  PointNumber from;
  PointNumber to;
};

struct Graph {
  std::vector<PlanPoint> points;
  std::vector<Edge> edges;
};

inline std::vector<EdgeNumber> allEdges(const Graph& graph) {
  std::vector<EdgeNumber> edges(graph.edges.size());
  std::iota(edges.begin(), edges.end(), EdgeNumber{0});
  return edges;
}

inline PlanPoint operator-(PlanPoint a, PlanPoint b) { return {a.x - b.x, a.y - b.y}; }
inline double dot(PlanPoint a, PlanPoint b) { return a.x * b.x + a.y * b.y; }
inline double cross(PlanPoint a, PlanPoint b) { return a.x * b.y - a.y * b.x; }
inline double length(PlanPoint a) { return std::sqrt(dot(a, a)); }

}  // namespace dxf2d::linework
