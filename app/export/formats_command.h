// dxf2d formats: which models can be read, and by what.
#pragma once

#include "app/cli/command.h"

namespace dxf2d {

Command formatsCommand();

}  // namespace dxf2d
