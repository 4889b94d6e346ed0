// How dxf2d says what went wrong.
#pragma once

#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>

#include "app/exit_code.h"
#include "app/printable.h"

// The end of a command that its user can do something about. what() is one sentence that names the
// offender and the way out; the code is the one to exit with.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, const std::string& sentence) : std::runtime_error(sentence), code_(code) {}
  ExitCode Code() const { return code_; }

 private:
  ExitCode code_;
};

// The command line asks for what cannot be.
class UsageError : public Failure {
 public:
  explicit UsageError(const std::string& sentence) : Failure(kExitUsage, sentence) {}
};

// Prints the sentence on stderr; returns the code.
inline int fail(int code, const std::string& sentence) {
  std::fprintf(stderr, "dxf2d: %s\n", printable(sentence).c_str());
  return code;
}

// Runs `step`, which returns an ExitCode; of what it throws it makes a sentence and a code.
template <typename Step>
int reporting(Step step) {
  try {
    return step();
  } catch (const Failure& failure) {
    return fail(failure.Code(), failure.what());
  } catch (const std::exception& error) {
    return fail(kExitInternal, std::string(error.what()) + "; please report this");
  }
}
