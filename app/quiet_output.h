// Keeps foreign code quiet.
#pragma once

#include "app/descriptor.h"

// While it lives, what this process says on standard output and error is not heard, by whatever way
// it is said: streams, C files, the last words of the C and C++ libraries when a fault ends it.
// While there is one thread. Where the system has no descriptors left, it is heard.
class QuietOutput {
 public:
  QuietOutput();
  ~QuietOutput();
  QuietOutput(const QuietOutput&) = delete;
  QuietOutput& operator=(const QuietOutput&) = delete;

 private:
  // Where they led before; not open where they were not turned away.
  Descriptor output_;
  Descriptor error_;
};
