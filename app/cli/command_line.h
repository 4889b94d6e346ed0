// Runs what a command line asks for.
#pragma once

#include "app/cli/command.h"

namespace dxf2d {

// Parses the arguments, stores inputs and options, and runs the command. Prints help and version on
// stdout, and one message on stderr when the command line is wrong. Returns the exit code.
int runCommandLine(const Program& program, int argc, const char* const* argv);

}  // namespace dxf2d
