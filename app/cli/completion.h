// Scripts by which shells complete the command line of a program.
#pragma once

#include <string>

#include "app/cli/command.h"

namespace dxf2d {

std::string bashCompletion(const Program& program);
std::string zshCompletion(const Program& program);
std::string fishCompletion(const Program& program);

}  // namespace dxf2d
