// Collects the corners of triangles that share no points.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "mesh/equal_points.h"
#include "mesh/polygon_mesh.h"

namespace dxf2d::mesh {

// Gives points numbers, those that are equal the same one, and keeps the first of these. Corners
// that are collected on their way from a file into a mesh are never all in memory: there are six of
// them for each point of a closed surface.
class PointCollector {
 public:
  // Appends to `points`, which outlives this and changes by nothing else meanwhile, as many points
  // as `most`. Points that are there already are not looked at.
  PointCollector(std::vector<Point>& points, std::size_t most);

  // Adds the points of `batch`, a few hundred at most. `numbers` receives the number of each in the
  // list of points.
  void Add(std::span<const Point> batch, Index* numbers);

  static constexpr std::size_t kMostOfBatch = 384;

 private:
  std::vector<Point>& points_;
  EqualPoints equal_;
};

}  // namespace dxf2d::mesh
