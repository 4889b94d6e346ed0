#include "ktscene/set_check.h"

#include <algorithm>
#include <cmath>

#include "ktscene/kt_run_code.h"

namespace dxf2d {

namespace {

std::string entry(std::size_t position) { return "entry " + std::to_string(position); }

}  // namespace

std::vector<SetFault> faultsOfSet(const std::vector<double>& coords,
                                  const std::vector<int>& indices) {
  std::vector<SetFault> faults;
  if (coords.empty() || indices.empty()) {
    faults.push_back({false, "is empty", "leave the set out"});
    return faults;
  }
  if (coords.size() % 3 != 0) {
    faults.push_back(
        {false, "has coordinates that make no whole point", "give three for each point"});
  }
  const auto odd = std::ranges::find_if(coords, [](double value) { return !std::isfinite(value); });
  if (odd != coords.end()) {
    faults.push_back({true,
                      "has a point that is not finite (number " +
                          std::to_string((odd - coords.begin()) / 3) + ")",
                      "leave the point out, or correct it"});
  }
  const auto pointCount = static_cast<long long>(coords.size() / 3);
  const auto outside =
      std::ranges::find_if(indices, [&](int index) { return index >= pointCount; });
  if (outside != indices.end()) {
    const auto position = static_cast<std::size_t>(outside - indices.begin());
    faults.push_back({true,
                      "names point " + std::to_string(*outside) + " of " +
                          std::to_string(pointCount) + " (" + entry(position) + " of its indices)",
                      "number points from 0, and give all that are named"});
  }
  const auto unknown =
      std::ranges::find_if(indices, [](int index) { return index < KtRunCode::kPolygon; });
  if (unknown != indices.end()) {
    const auto position = static_cast<std::size_t>(unknown - indices.begin());
    faults.push_back({true,
                      "has the code " + std::to_string(*unknown) + ", which means nothing (" +
                          entry(position) + " of its indices)",
                      "end runs with the codes of KtRunCode, -7 to -1"});
  }
  if (indices.back() >= 0) {
    faults.push_back({true, "has a last run without a code, which is not drawn",
                      "end every run with a code, such as -7 for a polygon"});
  }
  return faults;
}

}  // namespace dxf2d
