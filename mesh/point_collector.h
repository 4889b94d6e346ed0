// Collects the corners of triangles that share no points.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "mesh/equal_points.h"
#include "mesh/polygon_mesh.h"
#include "mesh/stretches.h"
#include "platform/parallel.h"

namespace dxf2d::mesh {

// Gives points numbers, those that are equal the same one, and keeps the first of these. Corners
// that are collected on their way from a file into a mesh are never all in memory: there are six of
// them for each point of a closed surface.
class PointCollector {
 public:
  // Appends to `points`, which outlives this and changes by nothing else meanwhile, as many points
  // as `most`. Points that are there already are not looked at.
  PointCollector(std::vector<Point>& points, std::size_t most);

  // Adds the points of `batch`, a few hundred at most. `numbers` receives the number of each in the
  // list of points.
  void Add(std::span<const Point> batch, Index* numbers);

  static constexpr std::size_t kMostOfBatch = 384;

  // For mesh/stretches.h.
  std::size_t Count() const { return points_.size() - first_; }
  const Point& At(std::size_t i) const { return points_[first_ + i]; }
  std::uint32_t HashOf(std::size_t i) const { return EqualPoints::Hash(At(i)); }
  void Prefetch(std::uint32_t hash) const { equal_.Prefetch(hash); }
  Index Find(std::uint32_t hash, const PointCollector& other, std::size_t i) const {
    const Index found = equal_.Find(hash, other.At(i), points_.data());
    return found == kNone ? kNone : found - static_cast<Index>(first_);
  }

 private:
  std::vector<Point>& points_;
  std::size_t first_;
  EqualPoints equal_;
};

// Appends to `points`, which holds what the first stretch collected, what the others did beyond it,
// and turns the numbers that each block of `numbers` has in its own stretch into those in `points`.
void mergeStretches(const Blocks& blocks, const Stretches<PointCollector>& stretches,
                    std::vector<Point>& points, Index* numbers);

// Appends the points of a list to `points` as a PointCollector does, and writes the number of each
// to `numbers`. The list is made as it is read: makePoints(begin, size, out) writes the points from
// `begin` on, `size` of `count`, to `out`. Each of several `threads` makes a stretch of it.
template <class MakePoints>
void collectPoints(std::size_t count, std::size_t threads, MakePoints makePoints,
                   std::vector<Point>& points, Index* numbers) {
  const Blocks blocks = Blocks::OneForEach(count, threads);
  // Of the stretches behind the first one.
  std::vector<std::vector<Point>> lists(blocks.Count());
  Stretches<PointCollector> stretches(blocks.Count());
  blocks.Run([&](std::size_t number, const Block& block) {
    auto own = std::make_unique<PointCollector>(number == 0 ? points : lists[number],
                                                number == 0 ? count : block.end - block.begin);
    std::array<Point, PointCollector::kMostOfBatch> batch;
    for (std::size_t begin = block.begin; begin < block.end; begin += batch.size()) {
      const std::size_t size = std::min(batch.size(), block.end - begin);
      makePoints(begin, size, batch.data());
      own->Add(std::span(batch).first(size), numbers + begin);
    }
    stretches[number] = std::move(own);
  });
  if (threads > 1) {
    mergeStretches(blocks, stretches, points, numbers);
  }
}

}  // namespace dxf2d::mesh
