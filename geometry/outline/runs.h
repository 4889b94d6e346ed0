// Goes through the runs of an index list.
#pragma once

#include <cstddef>
#include <span>

namespace dxf2d {

// How many entries at the start of a run count as point numbers whatever they are, negative ones
// included: the scan for the run's terminator begins after them.
struct RunScan {
  std::size_t skippedInFirst = 0;
  std::size_t skippedInLater = 0;
};

// Calls visit(begin, end) for each run: its points are indices[begin .. end), its terminator
// (ktscene/kt_run_code.h) is indices[end]. Stops, and returns false, when `visit` returns false.
// Entries after the last terminator belong to no run.
template <class Visit>
bool forEachRun(std::span<const int> indices, RunScan scan, Visit visit) {
  std::size_t begin = 0;
  for (std::size_t cursor = scan.skippedInFirst; cursor < indices.size();) {
    if (indices[cursor] >= 0) {
      ++cursor;
      continue;
    }
    if (!visit(begin, cursor)) {
      return false;
    }
    begin = cursor + 1;
    cursor = begin + scan.skippedInLater;
  }
  return true;
}

}  // namespace dxf2d
