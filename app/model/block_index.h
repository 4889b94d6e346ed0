// Finds the objects of a model that one block can draw.
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <vector>

namespace dxf2d {

// Numbers the different (meshes, residual) pairs of a model from 0, where residual transforms count
// as the same when residualsAgree says so. Finding is logarithmic also for many residual transforms
// of one mesh.
class BlockIndex {
 public:
  // The number of the first entry that has these meshes and agrees with `residual`; a new number,
  // and `residual` kept under it, when there is none.
  std::size_t FindOrAdd(const std::vector<unsigned>& meshes, const std::array<double, 9>& residual);

  std::size_t Size() const { return residuals_.size(); }
  const std::array<double, 9>& Residual(std::size_t number) const { return residuals_[number]; }

 private:
  // Entries of one mesh list, by the weighted sum of their residual's elements.
  using BySum = std::multimap<double, std::size_t>;

  std::map<std::vector<unsigned>, BySum> entries_;
  std::vector<std::array<double, 9>> residuals_;
};

}  // namespace dxf2d
