#include "geometry/outline/weld.h"

#include <algorithm>

#include "platform/large_memory.h"
#include "platform/parallel.h"

namespace dxf2d {

namespace {

int renumbered(int index, const PointNumbers& numbers) {
  if (index < 0) {
    return index;
  }
  const auto old = static_cast<std::size_t>(index);
  return old < numbers.size() ? numbers[old] : kNoPoint;
}

}  // namespace

std::size_t WeldScratch::CapacityBytes() const {
  std::size_t bytes = numbers.capacity() * sizeof(int);
  for (const BlockPoints& block : blocks) {
    bytes += block.CapacityBytes();
  }
  return bytes;
}

void weldPoints(std::vector<KtPoint3>& points, std::vector<int>& indices, WeldScratch& scratch) {
  numberPoints(points, scratch.numbers, scratch.blocks.front().table);
  std::transform(indices.begin(), indices.end(), indices.begin(),
                 [&](int index) { return renumbered(index, scratch.numbers); });
}

void weldCoords(const std::vector<double>& coords, const KtMatrix& transform,
                const std::vector<int>& indices, std::size_t threads, std::vector<KtPoint3>& points,
                std::vector<int>& welded, WeldScratch& scratch) {
  numberPoints(coords, transform, expectedPoints(coords.size() / 3, indices.size()), threads,
               points, scratch.numbers, scratch.blocks);
  // It may be the list of indices itself.
  reserveLarge(welded, indices.size());
  welded.resize(indices.size());
  Blocks(indices.size(), threads).Run([&](std::size_t, Block block) {
    for (std::size_t i = block.begin; i < block.end; ++i) {
      welded[i] = renumbered(indices[i], scratch.numbers);
    }
  });
}

void weldTriangles(const std::vector<double>& coords, const KtMatrix& transform,
                   const std::vector<int>& indices, TriangleRuns runs, std::size_t threads,
                   std::vector<KtPoint3>& points, PointNumbers& corners, WeldScratch& scratch) {
  numberPoints(coords, transform, expectedPoints(coords.size() / 3, indices.size()), threads,
               points, scratch.numbers, scratch.blocks);
  const std::size_t triangles = indices.size() / kTriangleRun;
  if (runs == TriangleRuns::kSeparate && 3 * triangles <= scratch.numbers.size()) {
    corners.swap(scratch.numbers);
    corners.resize(3 * triangles);
    return;
  }
  corners.resize(3 * triangles);
  Blocks(triangles, threads).Run([&](std::size_t, Block block) {
    for (std::size_t i = block.begin; i < block.end; ++i) {
      for (std::size_t corner = 0; corner < 3; ++corner) {
        corners[3 * i + corner] = renumbered(indices[kTriangleRun * i + corner], scratch.numbers);
      }
    }
  });
}

}  // namespace dxf2d
