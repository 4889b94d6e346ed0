// Leaves out polygons of a mesh in one pass.
#pragma once

#include <cstddef>
#include <span>

#include "mesh/polygon_mesh.h"

namespace dxf2d::mesh {

// Keeps the polygons for which isKept(p, corners) holds, in their order. It is called once for
// each, in order, and what it sees are the corners of polygon p; the lists of the mesh are being
// rewritten meanwhile. Returns how many were left out.
template <class IsKept>
std::size_t keepPolygons(PolygonMesh& mesh, IsKept isKept) {
  const std::size_t count = mesh.PolygonCount();
  std::size_t kept = 0;
  Index corner = 0;
  Index begin = 0;
  for (std::size_t p = 0; p < count; ++p) {
    const Index end = mesh.starts[p + 1];
    if (isKept(p, std::span<const Index>(mesh.corners).subspan(begin, end - begin))) {
      if (corner == begin) {
        corner = end;
      } else {
        for (Index i = begin; i < end; ++i) {
          mesh.corners[corner++] = mesh.corners[i];
        }
      }
      mesh.parts[kept++] = mesh.parts[p];
      mesh.starts[kept] = corner;
    }
    begin = end;
  }
  mesh.corners.resize(corner);
  mesh.starts.resize(kept + 1);
  mesh.parts.resize(kept);
  return count - kept;
}

}  // namespace dxf2d::mesh
