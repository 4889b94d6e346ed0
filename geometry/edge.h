// Edges between points, by number.
#pragma once

#include <compare>
#include <cstddef>
#include <vector>

// An edge of a polygon has its smaller point number first; an explicit edge is as its run gave it.
// Ordered by first, then second.
struct Edge {
  int first;
  int second;
  // NOLINTNEXTLINE(modernize-use-nullptr): the 0 of a comparison that the compiler writes.
  friend auto operator<=>(const Edge&, const Edge&) = default;
};

// True when `index` names one of `pointCount` points. Everything else that a host can send (a
// negative code, a number too large) takes part in no edge.
inline bool namesPoint(int index, std::size_t pointCount) {
  return index >= 0 && static_cast<std::size_t>(index) < pointCount;
}
