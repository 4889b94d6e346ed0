// dxf2d export: models and scenes as drawings.
#pragma once

#include <string>
#include <vector>

#include "app/limited_work.h"
#include "app/model/plan_scene.h"
#include "app/output_file.h"

struct ExportOptions {
  // Each a scene file when it ends in .json, else a model. At least one.
  std::vector<std::string> models;
  // The drawing of a single model, "-" for standard output; or a directory, whose name must end in
  // a slash for a single model. See drawingNames.
  std::string output;
  Existing existing = Existing::kKeep;
  // For models alone, but for its limits; a scene file is walked as it stands.
  PlanOptions plan;
  // Of the texts in a scene file, one that SetThreadCodePage takes; a model's are ASCII.
  unsigned codePage = 1252;
  // Empty: the one that belongs to this program.
  std::string plugin;
  // For one model.
  WorkLimits limits;
};

// Writes the drawings. Returns an ExitCode; unless that is kExitDone, one sentence on stderr for
// each model that failed says why, and no new file stands under its drawing's name. A model ends in
// a line on stdout, on stderr when the drawing goes to stdout, that says what was drawn. Throws
// nothing.
int runExport(const ExportOptions& options);
