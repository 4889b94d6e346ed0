// What must hold of a unit under fuzzing.
#pragma once

#include <cstdio>
#include <cstdlib>

// Ends the run as a finding when `holds` is false; `fact` says what should have held.
inline void require(bool holds, const char* fact) {
  if (!holds) {
    std::fprintf(stderr, "does not hold: %s\n", fact);
    std::abort();
  }
}
