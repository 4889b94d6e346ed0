// Pieces of edges as cells report them, put together.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace dxf2d::projection {

// Sorts pieces by edge and position and joins those that touch. Cells share exact positions at
// their sides, so that "touch" means equality. `Piece` has edge, begin and end; the edges are
// numbers below `count`.
template <class Piece>
void sortAndMerge(std::vector<Piece>& pieces, std::size_t count) {
  std::vector<std::size_t> starts(count + 2, 0);
  for (const Piece& piece : pieces) {
    ++starts[piece.edge + 2];
  }
  for (std::size_t i = 2; i < starts.size(); ++i) {
    starts[i] += starts[i - 1];
  }
  std::vector<Piece> sorted(pieces.size());
  for (const Piece& piece : pieces) {
    sorted[starts[piece.edge + 1]++] = piece;
  }
  pieces.clear();
  for (std::size_t edge = 0; edge < count; ++edge) {
    const auto begin = sorted.begin() + static_cast<std::ptrdiff_t>(starts[edge]);
    const auto end = sorted.begin() + static_cast<std::ptrdiff_t>(starts[edge + 1]);
    std::sort(begin, end, [](const Piece& a, const Piece& b) { return a.begin < b.begin; });
    for (auto it = begin; it != end; ++it) {
      if (it != begin && pieces.back().end == it->begin) {
        pieces.back().end = it->end;
      } else {
        pieces.push_back(*it);
      }
    }
  }
}

}  // namespace dxf2d::projection
