// dxf2d export --list: what models hold.
#pragma once

#include <string>

#include "app/export/export_request.h"

namespace dxf2d {

// Prints the list of a model on stdout, as text or as JSON, whole or not at all. Returns an
// ExitCode; unless that is kExitDone, there is one message on stderr. Throws nothing.
int listModel(const std::string& path, const ExportOptions& options);

}  // namespace dxf2d
