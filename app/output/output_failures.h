// Why an output cannot be created or written, as messages about the user's name for it.
#pragma once

#include <cerrno>
#include <string>

#include "app/cli/failure.h"

namespace dxf2d {

// An output cannot be created or written. The code is kExitOutputNotMade, kExitOutputExists or
// kExitWriteFailed.
class OutputError : public Failure {
 public:
  using Failure::Failure;
};

// The remedy for most failed writes.
std::string checkDisk();

// The system's message for an errno.
std::string reasonOf(int error);

// The part of a path before its last component: "." where there is none.
std::string directoryOf(const std::string& path);

[[noreturn]] void failCreating(const std::string& name, const std::string& reason,
                               const std::string& remedy);

// `name` as the user gave it, in the directory of `target`, which the links at `name` lead to.
[[noreturn]] void failCreatingBeside(const std::string& name, const std::string& target, int error);

[[noreturn]] void failExisting(const std::string& name);

[[noreturn]] void failWriting(const std::string& name, int error);

// Repeats a system call until it is not interrupted. Returns what the call returns.
template <typename Call>
auto retryInterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) {
    result = call();
  }
  return result;
}

}  // namespace dxf2d
