#include "geometry/outline/edge_table.h"

#include <algorithm>
#include <numeric>

#include "ktscene/kt_run_code.h"
#include "platform/large_memory.h"

namespace dxf2d {

namespace {

// Calls visit(smaller, larger, polygon) if the two make a valid edge.
template <class Visit>
void visitEdge(int a, int b, std::uint32_t polygon, std::size_t pointCount, Visit visit) {
  if (a != b && namesPoint(a, pointCount) && namesPoint(b, pointCount)) {
    visit(static_cast<std::uint32_t>(std::min(a, b)), static_cast<std::uint32_t>(std::max(a, b)),
          polygon);
  }
}

// Does so for every edge of every triangle.
template <class Visit>
void forEachTriangleEdge(std::span<const int> corners, std::size_t pointCount, Visit visit) {
  for (std::size_t i = 0; i + 2 < corners.size(); i += 3) {
    const auto triangle = static_cast<std::uint32_t>(i / 3);
    visitEdge(corners[i], corners[i + 1], triangle, pointCount, visit);
    visitEdge(corners[i + 1], corners[i + 2], triangle, pointCount, visit);
    visitEdge(corners[i + 2], corners[i], triangle, pointCount, visit);
  }
}

// Does so for every edge of every polygon.
template <class Visit>
void forEachPolygonEdge(std::span<const int> polygons, std::size_t pointCount, Visit visit) {
  std::uint32_t polygon = 0;
  // First and last entry of the current polygon so far; the code where there is none yet.
  int first = KtRunCode::kPolygon;
  int last = KtRunCode::kPolygon;
  for (const int entry : polygons) {
    if (entry == KtRunCode::kPolygon) {
      visitEdge(last, first, polygon++, pointCount, visit);
      first = KtRunCode::kPolygon;
    } else if (first == KtRunCode::kPolygon) {
      first = entry;
    } else {
      visitEdge(last, entry, polygon, pointCount, visit);
    }
    last = entry;
  }
}

// Replaces `starts` by the position at which each polygon begins.
void findStarts(std::span<const int> polygons, std::size_t threads,
                std::vector<std::uint32_t>& starts) {
  const Blocks blocks(polygons.size(), threads);
  // Codes in the blocks before.
  std::vector<std::size_t> before(blocks.Count() + 1);
  blocks.Run([&](std::size_t number, Block block) {
    before[number + 1] = static_cast<std::size_t>(std::count(
        polygons.data() + block.begin, polygons.data() + block.end, KtRunCode::kPolygon));
  });
  std::partial_sum(before.begin(), before.end(), before.begin());
  reserveLarge(starts, before.back());
  starts.resize(before.back());
  if (starts.empty()) {
    return;
  }
  starts.front() = 0;
  // What follows the n-th code is polygon n + 1.
  blocks.Run([&](std::size_t number, Block block) {
    std::size_t next = before[number] + 1;
    for (std::size_t k = block.begin; k < block.end; ++k) {
      if (polygons[k] == KtRunCode::kPolygon && next < starts.size()) {
        starts[next++] = static_cast<std::uint32_t>(k + 1);
      }
    }
  });
}

}  // namespace

void EdgeTable::Build(const std::vector<int>& polygons, std::size_t pointCount,
                      std::size_t threads) {
  const auto lastCode = std::find(polygons.rbegin(), polygons.rend(), KtRunCode::kPolygon);
  const std::span<const int> whole(polygons.data(),
                                   static_cast<std::size_t>(polygons.rend() - lastCode));
  findStarts(whole, threads, starts_);
  adjacency_.Build(pointCount, threads,
                   [&](auto visit) { forEachPolygonEdge(whole, pointCount, visit); });
}

void EdgeTable::BuildTriangles(std::span<const int> corners, std::size_t pointCount,
                               std::size_t threads) {
  starts_.clear();
  adjacency_.Build(pointCount, threads,
                   [&](auto visit) { forEachTriangleEdge(corners, pointCount, visit); });
}

}  // namespace dxf2d
