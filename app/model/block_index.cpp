#include "app/model/block_index.h"

#include <algorithm>

#include "app/model/plan_placement.h"

namespace dxf2d {
namespace {

// Weights without a common measure, so that residual transforms that differ rarely have the same
// sum.
constexpr std::array<double, 9> kWeights{1.0,          0.7390851332, 0.5671432904,
                                         0.9159655941, 0.6434105462, 0.8346268416,
                                         0.5772156649, 0.6922006275, 0.7642236535};

double weightedSum(const std::array<double, 9>& residual) {
  double sum = 0.0;
  for (std::size_t i = 0; i < 9; ++i) {
    sum += kWeights[i] * residual[i];
  }
  return sum;
}

}  // namespace

std::size_t BlockIndex::FindOrAdd(const std::vector<unsigned>& meshes,
                                  const std::array<double, 9>& residual) {
  BySum& candidates = entries_[meshes];
  const double sum = weightedSum(residual);
  // Nine elements that agree move the sum by no more than nine tolerances; the tenth is for the
  // larger tolerance of the other residual.
  const double span = 10.0 * residualTolerance(residual);
  std::size_t found = residuals_.size();
  const auto end = candidates.upper_bound(sum + span);
  for (auto it = candidates.lower_bound(sum - span); it != end; ++it) {
    if (residualsAgree(residuals_[it->second], residual)) {
      found = std::min(found, it->second);
    }
  }
  if (found == residuals_.size()) {
    residuals_.push_back(residual);
    candidates.emplace(sum, found);
  }
  return found;
}

}  // namespace dxf2d
