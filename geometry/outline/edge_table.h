// The edges of a set of polygons, each with its incident faces.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "geometry/outline/csr_adjacency.h"
#include "geometry/outline/edge.h"
#include "platform/large_memory.h"
#include "platform/parallel.h"

namespace dxf2d {

class EdgeTable {
 public:
  // `polygons` is flat, each polygon ended by KtRunCode::kPolygon; entries after the last code are
  // ignored. A polygon's edges join neighbors in its list, and the last to the first; those between
  // a point and itself, or with an entry that names none of `pointCount` points, are left out. The
  // result does not depend on `threads`.
  void Build(const std::vector<int>& polygons, std::size_t pointCount, std::size_t threads);

  // The same for triangles: polygon i has the corners 3 i, 3 i + 1 and 3 i + 2 of `corners`.
  void BuildTriangles(std::span<const int> corners, std::size_t pointCount, std::size_t threads);

  // By polygon: the position in the polygon list at which it begins. Empty for triangles.
  const std::vector<std::uint32_t>& PolygonStarts() const { return starts_; }

  // Replaces `edges` by those for which isWanted(edge, incidentFaces) holds, in edge order; the low
  // halves of `incidentFaces` (tagOf) are the numbers of the polygons that have the edge,
  // ascending. A polygon that has an edge twice counts once. `threads` threads call isWanted at a
  // time.
  template <class IsWanted>
  void ChooseEdges(std::size_t threads, IsWanted isWanted, std::vector<Edge>& edges) {
    const Blocks blocks(adjacency_.RowCount(), threads);
    std::vector<std::vector<Edge>> chosen(blocks.Count());
    chosen.front().swap(edges);
    chosen.front().clear();
    blocks.Run([&](std::size_t number, Block rows) {
      std::vector<Edge>& list = chosen[number];
      adjacency_.ForEachPair(rows, [&](std::uint32_t first, std::uint32_t second,
                                       std::span<const std::uint64_t> faces) {
        const Edge edge{static_cast<int>(first), static_cast<int>(second)};
        if (isWanted(edge, faces)) {
          appendLarge(list, edge);
        }
      });
    });
    edges.swap(chosen.front());
    for (std::size_t i = 1; i < chosen.size(); ++i) {
      edges.insert(edges.end(), chosen[i].begin(), chosen[i].end());
    }
  }

  std::size_t CapacityBytes() const {
    return starts_.capacity() * sizeof(std::uint32_t) + adjacency_.CapacityBytes();
  }

 private:
  std::vector<std::uint32_t> starts_;
  CsrAdjacency adjacency_;
};

}  // namespace dxf2d
