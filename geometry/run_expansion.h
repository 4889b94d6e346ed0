// Turns the runs of an index list into polygons and explicit edges.
#pragma once

#include <cstddef>
#include <vector>

#include "geometry/edge.h"

struct ExpandedRuns {
  // Flat: the entries of each polygon, then -7. A -7 among the entries that a run gave therefore
  // ends its polygon there.
  std::vector<int> polygons;
  // In run order, and as the runs give them: neither ordered nor free of doubles.
  std::vector<Edge> edges;

  std::size_t CapacityBytes() const {
    return polygons.capacity() * sizeof(int) + edges.capacity() * sizeof(Edge);
  }
};

// What a run closed by -1 is: in a face set a segment when it has exactly two entries and nothing
// otherwise, in a line set a line strip.
enum class SegmentRuns { kExactlyTwo, kStrips };

// Expands the runs of a welded `indices` list, replacing what `runs` held. `pointCount` points
// exist; explicit edges to anything else are left out.
void expandRuns(const std::vector<int>& indices, std::size_t pointCount, SegmentRuns segmentRuns,
                ExpandedRuns& runs);

// Whether the list is made of polygons that count, to its end: expanding it would copy it.
bool isPolygonList(const std::vector<int>& indices);
