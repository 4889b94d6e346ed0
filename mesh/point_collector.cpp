#include "mesh/point_collector.h"

#include <array>
#include <cassert>
#include <cstdint>

#include "platform/large_memory.h"

namespace dxf2d::mesh {

PointCollector::PointCollector(std::vector<Point>& points, std::size_t most)
    : points_(points), first_(points.size()), equal_(most / 6) {
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
    const Index found = equal_.FindOrInsert(hashes[i], batch[i], next, points_.data());
    if (found == kNone) {
      points_.push_back(batch[i]);
    }
    numbers[i] = found == kNone ? next : found;
  }
}

void mergeStretches(const Blocks& blocks, const Stretches<PointCollector>& stretches,
                    std::vector<Point>& points, Index* numbers) {
  const std::vector<std::size_t> starts = startsOf(stretches);
  // Of the first items, and then their numbers in `points`.
  LargeArray<Index> places = findFirsts(stretches, blocks.Count());
  const auto before = static_cast<Index>(points.size() - starts[1]);
  for (std::size_t i = 0; i < starts[1]; ++i) {
    places[i] = before + static_cast<Index>(i);
  }
  for (std::size_t stretch = 1; stretch < stretches.size(); ++stretch) {
    for (std::size_t i = starts[stretch]; i < starts[stretch + 1]; ++i) {
      if (places[i] == i) {
        places[i] = static_cast<Index>(points.size());
        points.push_back(stretches[stretch]->At(i - starts[stretch]));
      } else {
        places[i] = places[places[i]];
      }
    }
  }
  blocks.Run([&](std::size_t stretch, const Block& block) {
    if (stretch != 0) {
      std::for_each(numbers + block.begin, numbers + block.end,
                    [&](Index& number) { number = places[starts[stretch] + number]; });
    }
  });
}

}  // namespace dxf2d::mesh
