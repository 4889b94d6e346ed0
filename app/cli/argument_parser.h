// Splits a command line into a command, its inputs and its options.
#pragma once

#include <string>
#include <vector>

#include "app/cli/command.h"

namespace dxf2d {

// An option with the values it was given, in order; a flag has one empty value.
struct GivenOption {
  const Option* option = nullptr;
  std::vector<std::string> values;
};

// Refers to the Program that it was parsed for.
struct ParsedArguments {
  // Null when the user asked for help or the version: `text` is then what to print.
  const Command* command = nullptr;
  std::string text{};
  std::vector<std::string> inputs{};
  // In the order of Command::options.
  std::vector<GivenOption> given{};
};

// Throws UsageError for unknown commands, options and surplus inputs, and for an option without its
// value. Values are not looked at, nor is anything required.
ParsedArguments parseArguments(const Program& program, int argc, const char* const* argv);

}  // namespace dxf2d
