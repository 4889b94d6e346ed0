// Polygons in space as triangles.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "mesh/polygon_mesh.h"

namespace dxf2d::projection {

using mesh::Index;
using mesh::Point;

// Cuts polygons into triangles; one object serves many polygons, and keeps its memory.
//
// A polygon is looked at along its normal (Newell's method), on the coordinate plane that it is
// most nearly parallel to. Triangles and convex polygons become fans; the others lose one ear after
// another: a convex corner whose triangle holds no other corner. Corners that are inside of the
// polygon are found in a grid, so that even polygons of 100,000 corners take well below a second.
// Corners on a straight line come off last, which leaves no triangle without area unless the
// polygon has none. A polygon that crosses itself has at some point no ear: then its next corner is
// cut off as it stands; so are those of a polygon for which the search takes too long. The result
// always has two triangles fewer than the polygon has corners.
class Triangulation {
 public:
  struct Triangle {
    std::array<Index, 3> corners;
    // Bit i is set if the side from corner i to the next is an edge of the polygon.
    std::uint8_t polygonEdges;
  };

  // Cuts the polygon that joins `corners` (three or more, numbers of finite points), the last to
  // the first.
  void Run(const std::vector<Point>& points, std::span<const Index> corners);
  // The triangles of the last polygon, wound as it is.
  std::span<const Triangle> Triangles() const { return triangles_; }

 private:
  struct Corner {
    double x;
    double y;
    Index point;
    Index before;
    Index after;
    bool isReflex;
  };

  void Flatten(const std::vector<Point>& points, std::span<const Index> corners);
  bool IsStrictlyConvex() const;
  void CutFan();
  void CutEars();
  void BuildGrid();
  bool IsEar(Index corner, bool allowFlat);
  bool HoldsCorner(Index corner);
  void CutOff(Index corner);
  void Emit(Index a, Index b, Index c);
  double DoubledArea(Index a, Index b, Index c) const;
  std::size_t Column(double x) const;
  std::size_t Row(double y) const;

  std::vector<Triangle> triangles_;
  std::vector<Corner> corners_;
  // Reflex corners by cells, in compressed rows.
  double lowX_ = 0;
  double lowY_ = 0;
  double perCellX_ = 0;
  double perCellY_ = 0;
  std::size_t side_ = 0;
  std::vector<Index> cellStarts_;
  std::vector<Index> cellCorners_;
  // Corners looked at so far.
  std::size_t work_ = 0;
};

}  // namespace dxf2d::projection
