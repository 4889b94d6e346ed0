// The options of dxf2d export that say which lines of a model are drawn.
#pragma once

#include <vector>

#include "app/cli/command.h"
#include "app/export/export_request.h"

namespace dxf2d {

// They store what they take in `options`, which must outlive them.
std::vector<Option> lineOptions(ExportOptions& options);

// Throws UsageError for options that mean nothing together.
void checkLineOptions(const ExportOptions& options);

}  // namespace dxf2d
