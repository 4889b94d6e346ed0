// One model or scene, and its drawing.
#pragma once

#include <string>

#include "app/export/export_command.h"

struct ExportJob {
  std::string model;
  // "-" is standard output.
  std::string drawing;
};

// Reads the model and has the plug-in draw it, in a process of its own and within the limits, and
// puts the drawing in its place. Returns an ExitCode and tells the user as runExport does.
int runExportJob(const ExportJob& job, const ExportOptions& options);
