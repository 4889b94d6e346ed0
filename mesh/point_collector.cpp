#include "mesh/point_collector.h"

#include <array>
#include <cassert>
#include <cstdint>

#include "platform/large_memory.h"

namespace dxf2d::mesh {

PointCollector::PointCollector(std::vector<Point>& points, std::size_t most)
    : points_(points), equal_(most / 6) {
  // What is not filled takes no memory.
  reserveLarge(points, points.size() + most);
}

void PointCollector::Add(std::span<const Point> batch, Index* numbers) {
  assert(batch.size() <= kMostOfBatch);
  std::array<std::uint32_t, kMostOfBatch> hashes;
  for (std::size_t i = 0; i < batch.size(); ++i) {
    hashes[i] = EqualPoints::Hash(batch[i]);
    equal_.Prefetch(hashes[i]);
  }
  for (std::size_t i = 0; i < batch.size(); ++i) {
    const auto next = static_cast<Index>(points_.size());
    const Index found = equal_.FindOrKeep(hashes[i], batch[i], next, points_.data());
    if (found == kNone) {
      points_.push_back(batch[i]);
    }
    numbers[i] = found == kNone ? next : found;
  }
}

}  // namespace dxf2d::mesh
