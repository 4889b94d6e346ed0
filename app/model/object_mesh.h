// The meshes of one object as one mesh of the mesh room, and what becomes of it as sets of a scene.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "app/model/mesh_check.h"
#include "ktscene/kt_scene.h"
#include "mesh/drawn_edges.h"
#include "mesh/polygon_mesh.h"

namespace dxf2d {

// 0 for a coordinate that a drawing's six digits show as 0, which below 0 would be "-0.000000".
inline double zeroOrShown(double c) { return std::abs(c) <= 5e-7 ? 0.0 : c; }

// True for an object whose meshes can be one PolygonMesh and one set of the scene: points have
// numbers of 31 bits, and corners and edges of 32, which grow a little where T-junctions close.
inline bool isWithinIndexRange(std::size_t vertices, std::size_t polygons, std::size_t corners) {
  constexpr std::size_t kMostVertices = 0x7fffffff;
  constexpr std::size_t kMostPolygons = 0x40000000;
  constexpr std::size_t kMostCorners = 0x80000000;
  return vertices <= kMostVertices && polygons <= kMostPolygons && corners <= kMostCorners;
}

// Appends a mesh as part `part`: every vertex p at p * residual (by rows, see Affine). `content` is
// what checkMesh found in it, without a fault. Returns false when a vertex leaves the range of
// double precision.
bool appendMesh(const SourceMesh& source, const MeshContent& content,
                const std::array<double, 9>& residual, mesh::Index part, mesh::PolygonMesh& mesh);

// Appends triangles in the same way, but equal points of them once. Returns false, with nothing
// appended, when repair would look at points one by one (mesh::isUsablePoint). `threads` share the
// work.
bool appendTriangles(const StlTriangles& triangles, const std::array<double, 9>& residual,
                     mesh::Index part, std::size_t threads, mesh::PolygonMesh& mesh);

// The edges as a line set. The polygons are not sent with them: the plug-in would look through all
// of them for edges that are known here, and find others where one part continues another.
std::shared_ptr<const KtLineSet> lineSetOf(const mesh::PolygonMesh& mesh,
                                           std::span<const mesh::DrawnEdge> edges);

}  // namespace dxf2d
