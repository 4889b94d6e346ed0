// Outlines given as points and index runs, drawn through their node's matrix.
#pragma once

#include <vector>

#include "ktscene/kt_point3.h"

struct BlockNode;
class DxfWriter;

// Runs closed by -6 are closed polylines, runs closed by -1 chains of lines; others are not drawn.
struct IndexedOutline {
  std::vector<KtPoint3> points;
  std::vector<int> indices;
};

// Writes the runs with the node's colour. A run has at least one entry, whatever it is; what
// follows the last code is no run. Throws std::out_of_range, "invalid vector<T> subscript", at an
// entry that names no point, with everything before it written.
void writeIndexedOutline(DxfWriter& writer, const BlockNode& node, const IndexedOutline& outline);
