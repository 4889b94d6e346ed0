// Finds the objects of a model that one block can draw.
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <vector>

// Numbers the different (meshes, rest) pairs of a model from 0, where rests count as the same when
// restsAgree says so. Finding is logarithmic also for many rests of one mesh.
class BlockIndex {
 public:
  // The number of the first entry that has these meshes and agrees with `rest`; a new number, and
  // `rest` kept under it, when there is none.
  std::size_t FindOrAdd(const std::vector<unsigned>& meshes, const std::array<double, 9>& rest);

  std::size_t Size() const { return rests_.size(); }
  const std::array<double, 9>& Rest(std::size_t number) const { return rests_[number]; }

 private:
  // Entries of one mesh list, by the weighted sum of their rest's elements.
  using BySum = std::multimap<double, std::size_t>;

  std::map<std::vector<unsigned>, BySum> entries_;
  std::vector<std::array<double, 9>> rests_;
};
