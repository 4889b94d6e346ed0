#include "app/model/mesh_check.h"

#include <cmath>
#include <numeric>
#include <vector>

#include "app/cli/translation.h"

namespace dxf2d {
namespace {

template <typename Vertex>
double sumOf(const Vertex& v) {
  return (static_cast<double>(v.x) + static_cast<double>(v.y)) + static_cast<double>(v.z);
}

// A sum of finite terms in double precision cannot overflow.
bool areFinite(const StlTriangles& triangles, std::size_t threads) {
  const Blocks blocks(triangles.Count(), threads);
  std::vector<double> sums(blocks.Count());
  blocks.Run([&](std::size_t number, const Block& block) {
    double sum = 0.0;
    for (std::size_t i = block.begin; i < block.end; ++i) {
      const std::array<StlTriangles::Vertex, 3> corners = triangles.TriangleAt(i);
      sum += (sumOf(corners[0]) + sumOf(corners[1])) + sumOf(corners[2]);
    }
    sums[number] = sum;
  });
  return std::isfinite(std::accumulate(sums.begin(), sums.end(), 0.0));
}

// The first vertex with a coordinate that is not finite, or the number of vertices.
std::size_t firstBrokenVertex(const SourceMesh& mesh, const Threading& threading) {
  if (mesh.Triangles() != nullptr &&
      areFinite(*mesh.Triangles(), threading.For(mesh.VertexCount()))) {
    return mesh.VertexCount();
  }
  return mesh.WithVertices([count = mesh.VertexCount()](const auto& at) {
    // One look at the sum first: it is not a number as soon as one term is not finite.
    double sum = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
      sum += sumOf(at(i));
    }
    if (std::isfinite(sum)) {
      return count;
    }
    std::size_t i = 0;
    while (i < count && std::isfinite(at(i).x) && std::isfinite(at(i).y) &&
           std::isfinite(at(i).z)) {
      ++i;
    }
    return i;
  });
}

// The first of the corners that names no vertex, or their number.
unsigned firstBrokenCorner(const unsigned* corners, unsigned count, std::size_t vertexCount) {
  unsigned i = 0;
  while (i < count && corners[i] < vertexCount) {
    ++i;
  }
  return i;
}

}  // namespace

bool isDrawn(const unsigned* corners, unsigned count) {
  for (unsigned i = 1; i < count; ++i) {
    if (corners[i] != corners[0]) {
      return true;
    }
  }
  return false;
}

MeshContent checkMesh(const SourceMesh& mesh, const Threading& threading, std::string& fault) {
  fault.clear();
  MeshContent content;
  if (mesh.FaceCount() == 0) {
    return content;
  }
  const std::size_t vertexCount = mesh.VertexCount();
  const std::size_t broken = firstBrokenVertex(mesh, threading);
  if (broken != vertexCount) {
    fault = tr("vertex %1 is not finite", {std::to_string(broken)});
    return content;
  }
  if (mesh.Triangles() != nullptr) {
    content.polygons = mesh.FaceCount();
    content.polygonCorners = vertexCount;
    return content;
  }
  std::size_t number = 0;
  mesh.VisitFaces([&](const unsigned* corners, unsigned count) {
    const std::size_t face = number++;
    const unsigned corner = firstBrokenCorner(corners, count, vertexCount);
    if (corner != count) {
      if (fault.empty()) {
        fault = tr(
            "face %1 names vertex %2 of %3",
            {std::to_string(face), std::to_string(corners[corner]), std::to_string(vertexCount)});
      }
    } else if (count == 1) {
      ++content.points;
    } else if (!isDrawn(corners, count)) {
      ++content.degenerate;
    } else if (count == 2) {
      ++content.lines;
    } else {
      ++content.polygons;
      content.polygonCorners += count;
    }
  });
  return content;
}

}  // namespace dxf2d
