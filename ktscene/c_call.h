// Functions of the C API: what they throw inside becomes a status and a sentence.
#pragma once

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>

namespace dxf2d {

// Sets what KtCErrorText returns on this thread to the sentence of the exception that is being
// handled, and returns its status.
int keepError() noexcept;

// A walk that the caller ended.
class Canceled : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A plug-in that has failed, named in the sentence.
class PluginFailure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A file that has not been written, named in the sentence.
class WriteFailure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Calls `function`, and returns the status of what it throws, KTC_OK if nothing.
template <typename Function>
int cCall(const Function& function) noexcept {
  try {
    function();
    return 0;
  } catch (...) {
    return keepError();
  }
}

// Returns the result of `function`, or null for what it throws.
template <typename Function>
auto cMake(const Function& function) noexcept -> decltype(function()) {
  try {
    return function();
  } catch (...) {
    keepError();
    return nullptr;
  }
}

// Refuses a null argument.
inline void require(const void* argument, const char* function, const char* name) {
  if (argument == nullptr) {
    throw std::invalid_argument(std::string(function) + ": the " + name +
                                " is null; pass one that is not");
  }
}

// A copy of the caller's structure, the members that its version lacks 0. Refuses null, and a
// structure without a size.
template <typename Struct>
Struct copyStruct(const Struct* given, const char* function, const char* name) {
  require(given, function, name);
  if (given->size < sizeof given->size) {
    throw std::invalid_argument(std::string(function) + ": the size of the " + name +
                                " is not set; set it to that of the structure");
  }
  Struct copy{};
  std::memcpy(&copy, given, std::min(given->size, sizeof copy));
  return copy;
}

}  // namespace dxf2d
