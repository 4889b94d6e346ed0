// Outlines given as points and runs, drawn through their node's matrix.
#pragma once

#include <vector>

#include "ktscene/kt_point3.h"

namespace dxf2d {

struct BlockNode;
class DxfWriter;

// kLineStrip runs are closed polylines, kSegment runs chains of lines; others are not drawn.
struct IndexedOutline {
  std::vector<KtPoint3> points;
  std::vector<int> indices;
};

// Writes the runs with the node's color. A run has at least one entry, whatever it is; entries
// after the last code are ignored. Throws std::out_of_range, "invalid vector<T> subscript", at an
// entry that names no point, with everything before it written.
void writeIndexedOutline(DxfWriter& writer, const BlockNode& node, const IndexedOutline& outline);

}  // namespace dxf2d
