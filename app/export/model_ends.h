// The ends of names that models may have.
#pragma once

#include <string>
#include <vector>

#include "app/export/export_request.h"

namespace dxf2d {

// ".obj", ".stl" and so on, in small letters: of all formats that importers know. Asks a worker
// process, since this program is not linked with importers. Throws Failure when that fails.
std::vector<std::string> modelEnds(const ExportOptions& options);

}  // namespace dxf2d
