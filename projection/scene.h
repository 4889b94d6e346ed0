// What is seen: the triangles of all placed meshes, in one list.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "mesh/drawn_edges.h"
#include "mesh/polygon_mesh.h"
#include "platform/parallel.h"

namespace dxf2d::projection {

using mesh::Index;
using mesh::Point;

// Where a mesh stands in the plan: turned about z, counter-clockwise, by the angle with this cosine
// and sine, then moved.
struct Placement {
  double x = 0;
  double y = 0;
  double z = 0;
  double cosine = 1;
  double sine = 0;
};

// A mesh and where it stands. Part p of the mesh is part firstPart + p of the scene, so that each
// placement of a shared mesh can have part numbers of its own.
struct PlacedMesh {
  const mesh::PolygonMesh* mesh = nullptr;
  Placement placement;
  Index firstPart = 0;
  // By how much points of the mesh may deviate from the planes of its faces, as a share of its
  // diagonal: by as much as repair moves them.
  double deviationShare = 0;
  // Edges of the mesh that show only how a curved surface was cut into facets (mesh/facet_noise.h).
  std::span<const mesh::DrawnEdge> noise = {};
};

// Triangles and lines in the coordinate system of the drawing, with the viewer at z = +infinity.
//
// Invariants: all coordinates are finite; `parts` and `polygonEdges` have an entry for each
// triangle; triangles and lines name points.
struct Scene {
  // A line that the model gives as such.
  struct Line {
    Index from;
    Index to;
    Index part;
  };

  std::vector<Point> points;
  std::vector<std::array<Index, 3>> triangles;
  std::vector<Index> parts;
  // Bit i is set if the side from corner i to the next is an edge of the polygon that the triangle
  // was made of; the other sides are diagonals, or lie along a cut. Then kSamePolygon.
  std::vector<std::uint8_t> polygonEdges;
  std::vector<Line> lines;
  // Sides of triangles that show only how a curved surface was cut into facets, the lesser point
  // first; in order.
  std::vector<std::pair<Index, Index>> noise;
  // By part: by how much its points may deviate from the planes of its faces, in drawing units; 0
  // for parts behind the end.
  std::vector<double> deviations;

  double DeviationOf(Index part) const { return part < deviations.size() ? deviations[part] : 0; }
};

inline constexpr std::uint8_t kAllPolygonEdges = 7;
// Set for a triangle that was made of the same polygon as the one before it.
inline constexpr std::uint8_t kSamePolygon = 8;

// Makes one list of all meshes. Polygons become triangles (projection/triangulation.h). Polygons
// and lines with a corner that is not finite once placed, or whose coordinates exceed 1e100, are
// left out; so are polygons of fewer than three corners. Threads share the work.
Scene assembleScene(std::span<const PlacedMesh> meshes, const Threading& threading = {});

// The smallest box around all triangles and lines.
struct Bounds {
  Point low = {0, 0, 0};
  Point high = {0, 0, 0};

  double Diagonal() const;
};
// Threads share the work.
Bounds boundsOf(const Scene& scene, const Threading& threading = {});

// Distances, in drawing units, within which things are taken as one.
struct Tolerances {
  // In plan: a point this near to an edge lies on it. Covers rounding only.
  double plan = 0;
  // Across a face: what lies this near to a face touches it and is not hidden by it. Coordinates
  // that went through single precision are off by up to 1e-7 of the model's size, so that faces
  // that should be coplanar are not. More across faces of parts with deviations.
  double touch = 0;
  // Ends of segments this near to each other are joined.
  double weld = 0;
  // Triangles no wider in plan than this are seen edge-on.
  double edgeOn = 0;
};
// In proportion to the diagonal of the scene's bounds; 1e-100 at least.
Tolerances tolerancesFor(const Bounds& bounds);

// The same for outlines (projection/union_outline.h), with `edgeOn` as large as `touch`: upright
// faces whose coordinates went through single precision lean that much. As slivers with sides
// nearly on one another they would leave a boundary with gaps.
Tolerances outlineTolerancesFor(const Bounds& bounds);

}  // namespace dxf2d::projection
