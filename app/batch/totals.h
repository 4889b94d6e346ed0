// What a batch came to in all.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "app/batch/record.h"

namespace dxf2d::batch {

struct Totals {
  std::size_t inputs = 0;
  std::size_t drawn = 0;
  std::size_t skipped = 0;
  // Failed inputs of each exit code.
  std::map<int, std::size_t> failed;
  std::uint64_t polylines = 0;
  std::uint64_t vertices = 0;
  // In all, and of the input that took longest.
  double seconds = 0.0;
  double longest = 0.0;
  std::string longestInput;
  // Bytes, of the input that took most.
  std::uint64_t peakMemory = 0;
  std::string peakInput;
};

// Of several records of an input, the last one counts; one that was skipped since it was done
// before does not.
Totals totalsOf(const std::vector<Record>& records);

// As lines for a reader.
std::string textOf(const Totals& totals);

// As a JSON object on one line, in ASCII.
std::string jsonOf(const Totals& totals);

}  // namespace dxf2d::batch
