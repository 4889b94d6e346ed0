// The manual page of a program or of one of its commands, from what its help is made of.
#pragma once

#include <string>

#include "app/cli/command.h"

namespace dxf2d {

// In the man(7) language. Of the program where `command` is null.
std::string manualPage(const Program& program, const Command* command);

}  // namespace dxf2d
