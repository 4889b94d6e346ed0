// The mesh of one object, as every stage of this room reads and rewrites it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace dxf2d::mesh {

// Number of a point, a polygon, a part or a position in a list.
using Index = std::uint32_t;

// x, y, z in the coordinate system of the block that will hold the drawing, any unit. The view is
// along z, with the viewer at +z.
using Point = std::array<double, 3>;

// A line that the model gives as such.
struct Segment {
  Index a;
  Index b;
  Index part;

  friend bool operator==(const Segment&, const Segment&) = default;
};

// The polygons and lines of one object: flat lists that are cheap to move. A part is what becomes
// one leaf of the scene, with a color of its own: a mesh of the object, or its faces of one
// material.
//
// Invariants, which every stage requires and keeps: starts.size() == parts.size() + 1, starts
// ascend from 0 to corners.size(), and every entry of `corners` and `segments` names a point.
struct PolygonMesh {
  std::vector<Point> points;
  // Polygon p joins corners[starts[p]] .. corners[starts[p + 1] - 1], the last to the first;
  // counter-clockwise as seen from its front.
  std::vector<Index> corners;
  std::vector<Index> starts = {0};
  // By polygon: its part. Polygons of one part need not stand together.
  std::vector<Index> parts;
  std::vector<Segment> segments;

  std::size_t PolygonCount() const { return parts.size(); }
  std::span<const Index> Polygon(std::size_t p) const {
    return {corners.data() + starts[p], corners.data() + starts[p + 1]};
  }
  // Appends a polygon.
  void Add(std::span<const Index> polygon, Index part) {
    corners.insert(corners.end(), polygon.begin(), polygon.end());
    starts.push_back(static_cast<Index>(corners.size()));
    parts.push_back(part);
  }

  friend bool operator==(const PolygonMesh&, const PolygonMesh&) = default;
};

// Which parts look alike.
struct Looks {
  // By part; empty when all do.
  std::vector<Index> ofPart = {};

  bool AreAlike(Index part, Index other) const {
    return ofPart.empty() || ofPart[part] == ofPart[other];
  }
};

}  // namespace dxf2d::mesh
