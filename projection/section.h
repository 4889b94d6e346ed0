// What a horizontal plane leaves of a scene.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "projection/candidate_edges.h"
#include "projection/scene.h"
#include "projection/segment_chains.h"

namespace dxf2d::projection {

struct Section {
  // The scene below the plane. Sides along the cut are not edges of polygons, so that
  // findCandidateEdges finds no border there. What closed loops of a body enclose is filled with
  // triangles in the plane (even-odd rule; gaps are bridged for that), which hide what is inside of
  // a cut body; they belong to the first of its parts.
  Scene below;
  // The cut of each triangle, as an edge of `below`; then the bridges over gaps of what is filled.
  std::vector<CandidateEdge> cuts;
  // The cuts joined into polylines; their groups are the bodies. In a model without gaps all are
  // closed; `openEnds` counts the ends of those that are not.
  JoinedSegments lines;
  // Bodies that are cut but could not be filled: their cut has gaps that cannot be bridged
  // (bridgesOverGaps), or too many sides. None without caps.
  std::size_t unfilledBodies = 0;
};

// Whether what is cut hides its inside.
enum class Caps : std::uint8_t { kFilled, kOpen };

// Cuts the scene at z = height and removes what is above. A point at the height itself counts as
// above, so that every triangle is cut along one segment or not at all: a polygon that lies in the
// plane is removed, and what it closes is cut along its border. Windings do not matter. Cut ends
// within `weld` of each other are joined, each body by itself: part p belongs to body
// bodyOfPart[p], or, without that list, is a body of its own. What is drawn of the result takes the
// tolerances of the whole scene, as `weld` does: those of what is left may be finer than the
// joints.
Section cutScene(Scene scene, double height, double weld, std::span<const Index> bodyOfPart = {},
                 Caps caps = Caps::kFilled);

}  // namespace dxf2d::projection
