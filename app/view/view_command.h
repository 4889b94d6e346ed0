// dxf2d view: pages that show a drawing, a model or a scene in a browser.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "app/cli/command.h"
#include "app/export/export_request.h"

namespace dxf2d {

inline constexpr const char* kViewTask = "view";

// Those of dxf2d export that a page can hold. Drawings take the few that isForDrawings names.
std::vector<Option> viewOptions(ExportOptions& options);
bool isForDrawings(const std::string& option);

// Whether a file is a drawing and neither a model nor a scene: by its name, or "-".
bool isDrawingFile(const std::string& path);

// The command with its options.
Command viewCommand();

// Has a worker process read the drawing, the model or the scene options.models names and make its
// page, and writes it. Returns an ExitCode; unless that is kExitDone, there is one message on
// stderr and no new file. Throws nothing.
int runView(const ExportOptions& options);

}  // namespace dxf2d
