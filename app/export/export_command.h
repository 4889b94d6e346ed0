// dxf2d export: models and scenes as drawings.
#pragma once

#include "app/cli/command.h"
#include "app/export/export_request.h"

namespace dxf2d {

// The command with its options.
Command exportCommand();

// Writes the drawings, or lists the models. Returns an ExitCode; unless that is kExitDone, there is
// one message on stderr for each model that failed, and no new file under its drawing's name.
// Prints a summary of each drawn model on stdout, or on stderr when the drawing goes to stdout.
// Throws nothing.
int runExport(const ExportOptions& options);

}  // namespace dxf2d
