// What a mesh of a model holds, and whether it is sound.
#pragma once

#include <cstddef>
#include <string>

#include "app/model/source_mesh.h"
#include "platform/parallel.h"

namespace dxf2d {

// What there is to draw of a mesh, and what there is not.
struct MeshContent {
  // Faces of three and more corners, and the sum of their corners.
  std::size_t polygons = 0;
  std::size_t polygonCorners = 0;
  // Faces of two corners.
  std::size_t lines = 0;
  // Faces of one corner, which a plan does not show.
  std::size_t points = 0;
  // Faces whose corners are all the same vertex, or that have none.
  std::size_t degenerate = 0;

  bool IsEmpty() const { return polygons == 0 && lines == 0; }
};

// True for a face that is drawn: at least two of its corners differ.
bool isDrawn(const unsigned* corners, unsigned count);

// Looks through a mesh. Empties `fault` when it is sound; otherwise that names the first offender,
// a vertex that is not finite or a corner that names no vertex, and the counts mean nothing.
// Threads share the work.
MeshContent checkMesh(const SourceMesh& mesh, const Threading& threading, std::string& fault);

}  // namespace dxf2d
