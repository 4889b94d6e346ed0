#include "geometry/edge_table.h"

#include <algorithm>

#include "geometry/index_codes.h"
#include "platform/large_memory.h"

namespace {

// Calls visit(smaller, larger, polygon) for every valid edge of every polygon.
template <class Visit>
void forEachPolygonEdge(std::span<const int> polygons, std::size_t pointCount, Visit visit) {
  const auto visitEdge = [&](int a, int b, std::uint32_t polygon) {
    if (a != b && namesPoint(a, pointCount) && namesPoint(b, pointCount)) {
      visit(static_cast<std::uint32_t>(std::min(a, b)), static_cast<std::uint32_t>(std::max(a, b)),
            polygon);
    }
  };
  std::uint32_t polygon = 0;
  // Of the polygon that is gone through; with its code for the last, nothing has come yet.
  int first = kPolygonCode;
  int last = kPolygonCode;
  for (const int entry : polygons) {
    if (entry == kPolygonCode) {
      visitEdge(last, first, polygon++);
      first = kPolygonCode;
    } else if (first == kPolygonCode) {
      first = entry;
    } else {
      visitEdge(last, entry, polygon);
    }
    last = entry;
  }
}

}  // namespace

void EdgeTable::Build(const std::vector<int>& polygons, std::size_t pointCount) {
  const auto lastCode = std::find(polygons.rbegin(), polygons.rend(), kPolygonCode);
  const std::span<const int> whole(polygons.data(),
                                   static_cast<std::size_t>(polygons.rend() - lastCode));
  starts_.clear();
  ReserveLarge(starts_,
               static_cast<std::size_t>(std::count(whole.begin(), whole.end(), kPolygonCode)));
  std::uint32_t begin = 0;
  for (std::uint32_t k = 0; k < whole.size(); ++k) {
    if (whole[k] == kPolygonCode) {
      starts_.push_back(begin);
      begin = k + 1;
    }
  }
  rows_.Build(pointCount, [&](auto visit) { forEachPolygonEdge(whole, pointCount, visit); });
}
