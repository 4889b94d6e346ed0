#include "app/model/block_index.h"

#include <algorithm>

#include "app/model/plan_placement.h"

namespace {

// Weights without a common measure, so that rests that differ rarely have the same sum.
constexpr std::array<double, 9> kWeights{1.0,          0.7390851332, 0.5671432904,
                                         0.9159655941, 0.6434105462, 0.8346268416,
                                         0.5772156649, 0.6922006275, 0.7642236535};

double weightedSum(const std::array<double, 9>& rest) {
  double sum = 0.0;
  for (std::size_t i = 0; i < 9; ++i) sum += kWeights[i] * rest[i];
  return sum;
}

}  // namespace

std::size_t BlockIndex::FindOrAdd(const std::vector<unsigned>& meshes,
                                  const std::array<double, 9>& rest) {
  BySum& candidates = entries_[meshes];
  const double sum = weightedSum(rest);
  // Nine elements that agree move the sum by no more than nine tolerances; the tenth is for the
  // larger tolerance of the other rest.
  const double reach = 10.0 * restTolerance(rest);
  std::size_t found = rests_.size();
  const auto end = candidates.upper_bound(sum + reach);
  for (auto it = candidates.lower_bound(sum - reach); it != end; ++it) {
    if (restsAgree(rests_[it->second], rest)) found = std::min(found, it->second);
  }
  if (found == rests_.size()) {
    rests_.push_back(rest);
    candidates.emplace(sum, found);
  }
  return found;
}
