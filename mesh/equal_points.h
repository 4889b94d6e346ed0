// Finds the points that equal another.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "mesh/polygon_mesh.h"
#include "mesh/slot_table.h"

namespace dxf2d::mesh {

// Points by their coordinates, to the last bit, except that -0 equals 0.
class EqualPoints {
 public:
  // `expected`: how many points will be kept, roughly.
  explicit EqualPoints(std::size_t expected) : table_(expected) {}

  static std::uint32_t Hash(const Point& point) {
    constexpr std::array<std::uint64_t, 3> kFactors = {0x9e3779b97f4a7c15U, 0xc2b2ae3d27d4eb4fU,
                                                       0x165667b19e3779f9U};
    std::uint64_t sum = 0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      // The sum makes -0 the 0 that it equals; the turn brings the bits that vary to the low end.
      sum += std::rotr(std::bit_cast<std::uint64_t>(point[axis] + 0.0), 32) * kFactors[axis];
    }
    return mixed(sum);
  }
  void Prefetch(std::uint32_t hash) const { table_.Prefetch(hash); }

  // Returns which of the kept points (numbers into `points`) equals `point`, or kNone. `hash`: its
  // Hash.
  Index Find(std::uint32_t hash, const Point& point, const Point* points) const {
    return table_.Find(hash, [&](Index number) { return points[number] == point; });
  }
  void Keep(std::uint32_t hash, Index number) { table_.Keep(hash, number); }
  // Find; where there is none, keeps `number`.
  Index FindOrInsert(std::uint32_t hash, const Point& point, Index number, const Point* points) {
    return table_.FindOrInsert(hash, number, [&](Index kept) { return points[kept] == point; });
  }

 private:
  SlotTable table_;
};

}  // namespace dxf2d::mesh
