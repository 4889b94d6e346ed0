// What can be wrong with a drawing that is read.
#pragma once

#include <string>

#include "app/failure.h"

// The drawing is unreadable or malformed. what() is "FILE:LINE: reason", without the line where
// none is to blame.
class DxfError : public Failure {
 public:
  explicit DxfError(const std::string& sentence) : Failure(kExitInput, sentence) {}
};

// The drawing is sound as far as it was read, and larger than the program takes on.
class LimitError : public Failure {
 public:
  explicit LimitError(const std::string& sentence) : Failure(kExitLimit, sentence) {}
};
