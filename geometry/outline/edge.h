// Edges between points, by number.
#pragma once

#include <compare>
#include <cstddef>

namespace dxf2d {

// An edge of a polygon has its smaller point number first; an explicit edge has the order of its
// run. Ordered by first, then second.
struct Edge {
  int first;
  int second;
  // NOLINTNEXTLINE(modernize-use-nullptr): the 0 is in a comparison that the compiler generates.
  friend auto operator<=>(const Edge&, const Edge&) = default;
};

// Returns whether `index` names one of `pointCount` points. Any other entry (a terminator, a number
// too large) takes part in no edge.
inline bool namesPoint(int index, std::size_t pointCount) {
  return index >= 0 && static_cast<std::size_t>(index) < pointCount;
}

}  // namespace dxf2d
