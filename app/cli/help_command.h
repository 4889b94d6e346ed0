// The commands that tell about the others: help and completion.
#pragma once

#include "app/cli/command.h"

namespace dxf2d {

// Adds them to `program`, which they describe when they run: it must outlive them.
void addHelpCommands(Program& program);

}  // namespace dxf2d
