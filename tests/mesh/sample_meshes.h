// Meshes to repair and draw, z up.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "mesh/polygon_mesh.h"

namespace dxf2d::mesh {

// A turn that makes a view along z of what is seen from somewhere else: p becomes rows * p.
struct View {
  std::string name;
  std::array<Point, 3> rows;
};

// The six sides, the isometric view, and one from no particular side.
const std::vector<View>& allViews();
PolygonMesh seenFrom(PolygonMesh mesh, const View& view);

// Two points in space.
using Line = std::array<Point, 2>;

// Appends points and one polygon of them.
void addPolygon(PolygonMesh& mesh, const std::vector<Point>& corners, Index part = 0);

// Six quads with shared points, counter-clockwise from outside.
PolygonMesh makeBox(const Point& least, const Point& greatest);
// From the origin to (2, 3, 4), so that no two views of it are alike.
PolygonMesh makeBox();
std::vector<Line> boxEdges(const Point& least, const Point& greatest);

// The box with points of its own for every polygon, each up to `noise` away from its place.
PolygonMesh withoutSharedPoints(const PolygonMesh& mesh, double noise);
void reversePolygon(PolygonMesh& mesh, std::size_t p);

// Closed, around z, from z = 0 to 4.
PolygonMesh makeCylinder(int segments);
// Around the origin, `rings` from pole to pole.
PolygonMesh makeSphere(int segments, int rings);
// A strip of quads that is turned over once; the seam is before segment `first`.
PolygonMesh makeMoebiusStrip(int segments, int first);
// Four slopes over 10 by 6, with a ridge of 4 at a height of 3, open below.
PolygonMesh makeHippedRoof();
// A solid of `count` steps, each 1 deep and 0.5 high, 3 wide.
PolygonMesh makeStairs(int count);

}  // namespace dxf2d::mesh
