// Pieces of edges as cells report them, put together.
#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "mesh/compressed_rows.h"
#include "platform/large_memory.h"
#include "platform/parallel.h"

namespace dxf2d::projection {

// Sorts pieces by edge and position and joins those that touch. Cells share exact positions at
// their sides, so that "touch" means equality. `Piece` has edge, begin and end; the edges are
// numbers below `count`. `threads` share the work.
template <class Piece>
std::vector<Piece> sortedAndMerged(std::vector<Piece> pieces, std::size_t count,
                                   std::size_t threads) {
  mesh::RowStarts starts;
  LargeArray<Piece> sorted;
  mesh::fillRows(
      count, pieces.size(), threads,
      [&](const Block& block, auto visit) {
        for (std::size_t i = block.begin; i < block.end; ++i) {
          visit(pieces[i].edge, pieces[i]);
        }
      },
      starts, sorted);
  pieces = std::vector<Piece>();
  // Each block moves what is left to its front.
  const Blocks blocks(count, threads);
  std::vector<Piece*> ends(blocks.Count());
  blocks.Run([&](std::size_t number, const Block& edges) {
    Piece* const first = sorted.data() + starts[edges.begin];
    Piece* last = first;
    for (std::size_t edge = edges.begin; edge < edges.end; ++edge) {
      Piece* const begin = sorted.data() + starts[edge];
      Piece* const end = sorted.data() + starts[edge + 1];
      std::sort(begin, end, [](const Piece& a, const Piece& b) { return a.begin < b.begin; });
      for (const Piece* piece = begin; piece != end; ++piece) {
        if (piece != begin && last[-1].end == piece->begin) {
          last[-1].end = piece->end;
        } else {
          *last++ = *piece;
        }
      }
    }
    ends[number] = last;
  });
  std::size_t size = 0;
  for (std::size_t i = 0; i < blocks.Count(); ++i) {
    size += static_cast<std::size_t>(ends[i] - (sorted.data() + starts[blocks[i].begin]));
  }
  std::vector<Piece> merged;
  reserveLarge(merged, size);
  for (std::size_t i = 0; i < blocks.Count(); ++i) {
    merged.insert(merged.end(), sorted.data() + starts[blocks[i].begin], ends[i]);
  }
  return merged;
}

}  // namespace dxf2d::projection
