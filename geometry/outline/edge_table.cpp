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

// Triangles that are next to each other in the list, and between which numbers their points are.
// Points have the order in which they come first, so mostly these are a small part of all.
struct TriangleBatch {
  static constexpr std::size_t kCorners = std::size_t{3} * 1024;

  int least;
  int greatest;

  bool MayHaveRowsOf(Block rows) const {
    return static_cast<std::size_t>(least) < rows.end &&
           static_cast<std::size_t>(greatest) >= rows.begin;
  }
};

std::vector<TriangleBatch> batchesOf(std::span<const int> corners, std::size_t threads) {
  std::vector<TriangleBatch> batches((corners.size() + TriangleBatch::kCorners - 1) /
                                     TriangleBatch::kCorners);
  Blocks(batches.size(), threads).Run([&](std::size_t, Block block) {
    for (std::size_t i = block.begin; i < block.end; ++i) {
      const std::size_t begin = i * TriangleBatch::kCorners;
      const std::size_t size = std::min(TriangleBatch::kCorners, corners.size() - begin);
      TriangleBatch batch{corners[begin], corners[begin]};
      for (const int corner : corners.subspan(begin, size)) {
        batch.least = std::min(batch.least, corner);
        batch.greatest = std::max(batch.greatest, corner);
      }
      batches[i] = batch;
    }
  });
  return batches;
}

// Does so for every edge of the triangles from position `begin` to `end` of the corners.
template <class Visit>
void forEachTriangleEdge(std::span<const int> corners, std::size_t begin, std::size_t end,
                         std::size_t pointCount, Visit visit) {
  for (std::size_t i = begin; i + 2 < end; i += 3) {
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
                   [&](Block, auto visit) { forEachPolygonEdge(whole, pointCount, visit); });
}

void EdgeTable::BuildTriangles(std::span<const int> corners, std::size_t pointCount,
                               std::size_t threads) {
  starts_.clear();
  if (threads == 1) {
    adjacency_.Build(pointCount, 1, [&](Block, auto visit) {
      forEachTriangleEdge(corners, 0, corners.size(), pointCount, visit);
    });
    return;
  }
  const std::vector<TriangleBatch> batches = batchesOf(corners, threads);
  adjacency_.Build(pointCount, threads, [&](Block rows, auto visit) {
    for (std::size_t i = 0; i < batches.size(); ++i) {
      if (batches[i].MayHaveRowsOf(rows)) {
        const std::size_t begin = i * TriangleBatch::kCorners;
        forEachTriangleEdge(corners, begin,
                            std::min(begin + TriangleBatch::kCorners, corners.size()), pointCount,
                            visit);
      }
    }
  });
}

}  // namespace dxf2d
