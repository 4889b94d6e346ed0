// What can be wrong with a drawing that is read.
#pragma once

#include <stdexcept>
#include <string>

// The drawing is unreadable or malformed. what() is "FILE:LINE: reason", without the line where
// none is to blame.
class DxfError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The drawing is sound as far as it was read, and larger than the program takes on.
class LimitError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};
