// Scenes to look at, made by rule.
#pragma once

#include <array>
#include <cstdint>
#include <random>
#include <vector>

#include "mesh/polygon_mesh.h"
#include "projection/scene.h"

namespace dxf2d::projection {

// Appends a box between two corners, as quads, to part `part` of `mesh`.
void addBox(mesh::PolygonMesh& mesh, const Point& low, const Point& high, Index part = 0);
// Appends a polygon with points of its own.
void addPolygon(mesh::PolygonMesh& mesh, const std::vector<Point>& polygon, Index part = 0);
// Appends a sphere of quads, `around` by `down`, as its points come from a generator: one point a
// quad's corner, many at each pole.
void addUnweldedSphere(mesh::PolygonMesh& mesh, const Point& center, double radius, int around,
                       int down, Index part = 0);

Scene sceneOf(const mesh::PolygonMesh& mesh);

// The kinds of scene that hidden lines are measured on.
enum class SampleKind : std::uint8_t {
  kPiledBoxes,  // on top of each other, turned about z only, none piercing another
  kBoxes,       // turned anyhow, most piercing others
  kSpheres,     // of 2,500 triangles, overlapping
  kTerrain,     // waves seen aslant
};
// About `triangles` of them, the area in proportion to the count.
Scene sampleScene(SampleKind kind, std::size_t triangles, std::uint32_t seed);

// A few triangles with corners on a small grid, among them coincident, degenerate and piercing
// ones; `parts` parts.
Scene randomSoup(std::mt19937& random, int triangles, int parts);

}  // namespace dxf2d::projection
