// dxf2d export: a model or a scene as a drawing.
#pragma once

#include <string>

#include "app/model/plan_scene.h"

struct ExportOptions {
  // A scene file when it ends in .json, else a model.
  std::string model;
  // "-" is standard output. A file already there is replaced.
  std::string drawing;
  // For models alone; a scene file is walked as it stands.
  PlanOptions plan;
  // Of the texts in a scene file, one that SetThreadCodePage takes; a model's are ASCII.
  unsigned codePage = 1252;
  // Empty: the one that belongs to this program.
  std::string plugin;
};

// Writes the drawing. Returns an ExitCode; unless that is kExitDone, one sentence on stderr says
// why and no new file stands under the drawing's name. A model ends in a line on stdout, on stderr
// when the drawing goes to stdout, that says what was drawn. Throws nothing.
int runExport(const ExportOptions& options);
