// How dxf2d says what went wrong.
#pragma once

#include <cstdio>
#include <stdexcept>
#include <string>

#include "app/exit_code.h"
#include "app/printable.h"

// The command line asks for what cannot be; what() is one sentence with the way out.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Prints the sentence on stderr; returns the code.
inline int fail(int code, const std::string& sentence) {
  std::fprintf(stderr, "dxf2d: %s\n", printable(sentence).c_str());
  return code;
}
