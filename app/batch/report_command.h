// dxf2d report: what batches came to.
#pragma once

#include "app/cli/command.h"

namespace dxf2d {

// Reads the reports that dxf2d export --report wrote, and prints their totals.
Command reportCommand();

}  // namespace dxf2d
