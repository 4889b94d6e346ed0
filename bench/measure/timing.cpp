#include "bench/measure/timing.h"

#include <algorithm>
#include <cstddef>

double medianOf(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2.0;
}

Comparison compare(const std::vector<double>& subject, const std::vector<double>& yardstick) {
  std::vector<double> ratios;
  for (std::size_t i = 0; i < subject.size(); ++i) {
    ratios.push_back(subject[i] / yardstick[i]);
  }
  return {medianOf(subject), medianOf(yardstick), medianOf(ratios)};
}
