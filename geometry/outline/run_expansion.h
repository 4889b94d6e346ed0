// Turns the runs of an index list into polygons and explicit edges.
#pragma once

#include <cstddef>
#include <vector>

#include "geometry/outline/edge.h"

namespace dxf2d {

struct ExpandedRuns {
  // Flat: the entries of each polygon, then KtRunCode::kPolygon. That code among the entries of a
  // run therefore ends its polygon there.
  std::vector<int> polygons;
  // In run order and as the runs give them: neither sorted nor free of duplicates.
  std::vector<Edge> edges;

  std::size_t CapacityBytes() const {
    return polygons.capacity() * sizeof(int) + edges.capacity() * sizeof(Edge);
  }
};

// What KtRunCode::kSegment means: in a face set a run of exactly two entries is a segment and any
// other is not drawn, in a line set every run is a line strip.
enum class SegmentRuns { kExactlyTwo, kStrips };

// Expands the runs of a welded `indices` list into `runs`, replacing its content. Explicit edges
// with an entry that names none of `pointCount` points are left out.
void expandRuns(const std::vector<int>& indices, std::size_t pointCount, SegmentRuns segmentRuns,
                ExpandedRuns& runs);

// What a list of triangles looks like, each with three point numbers and KtRunCode::kPolygon.
enum class TriangleRuns {
  // A list of something else.
  kOther,
  kAny,
  // Triangle i has the points 3 i, 3 i + 1 and 3 i + 2.
  kSeparate,
};
inline constexpr std::size_t kTriangleRun = 4;

TriangleRuns triangleRunsOf(const std::vector<int>& indices, std::size_t threads);

// Returns whether the list consists of polygons of at least three entries, up to its end, so that
// expanding it would only copy it.
bool isPolygonList(const std::vector<int>& indices);

}  // namespace dxf2d
