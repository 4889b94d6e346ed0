// Why a model cannot be drawn.
#pragma once

#include <stdexcept>
#include <string>

#include "app/exit_code.h"

// what() is one sentence that names the file and the reason; the code is the one to exit with.
class ModelError : public std::runtime_error {
 public:
  ModelError(ExitCode code, const std::string& sentence)
      : std::runtime_error(sentence), code_(code) {}
  ExitCode Code() const { return code_; }

 private:
  ExitCode code_;
};
