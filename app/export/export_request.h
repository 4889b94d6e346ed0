// What dxf2d export is asked to draw.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/cli/command.h"
#include "app/export/finishing_request.h"
#include "app/export/output_format.h"
#include "app/host/plugin_module.h"
#include "app/importer/importer.h"
#include "app/model/linework_options.h"
#include "app/model/plan_scene.h"
#include "app/model/sheet_layout.h"
#include "app/output/output_file.h"
#include "app/process/input_task.h"

namespace dxf2d {

// Which models of many are left out.
enum class Skipped : std::uint8_t {
  kNone,
  // Those that have a drawing.
  kExisting,
  // Those whose drawing is not older.
  kNotNewer,
};

// How many models are drawn in one run.
struct BatchOptions {
  // Files that list models, "-" for standard input.
  std::vector<std::string> lists;
  bool isRecursive = false;
  Skipped skipped = Skipped::kNone;
  // At a time; none: as many as there are processors.
  std::optional<unsigned> jobs;
  bool keepsGoing = false;
  bool failsFast = false;
  // The file that tells what became of each model; empty for none.
  std::string report;
  Verbosity verbosity;
};

struct ExportOptions {
  // Each a folder, a scene file when it ends in .json, or else a model.
  std::vector<std::string> models;
  BatchOptions batch;
  // The drawing of a single model, "-" for standard output; or a directory, whose name must end in
  // a slash for a single model. See exportJobs.
  std::string output;
  Existing existing = Existing::kKeep;
  // List what the models hold instead of drawing them.
  bool isListing = false;
  // Print JSON: the list, or the record of each model.
  bool isJson = false;
  // Only its limits apply to scene files, which are drawn exactly as they are.
  PlanOptions plan;
  // The planes of --cut and --cut-at, each with a drawing of its own; none: models are drawn whole.
  std::vector<CutPlane> cuts;
  // Several views in each drawing, in place of plan.view.
  SheetOptions sheet;
  // Whether --view was given; plan.view says what it is.
  bool hasView = false;
  // What a drawing would otherwise only lack, and its summary tell, is an error.
  bool isStrict = false;
  FinishingRequest finishing;
  // Nothing: what the end of the output's name says.
  std::optional<OutputFormat> format;
  // Of pictures. Their format is that of the output, and of the preview its name.
  PictureStyle picture;
  // A picture beside the drawing; empty for none.
  std::string preview;
  // Of the texts in a scene file, one that parseCodePage returns; a model's are ASCII.
  unsigned codePage = 1252;
  // Empty: the one that belongs to this program.
  std::string plugin;
  PluginFacts pluginFacts;
  // Descriptions of importers beside those that are installed.
  std::vector<std::string> importers;
  // --tolerance and --spaces, where they are given.
  ImportSettings importSettings;
  // Whether a model may refer to files outside its directory.
  bool allowsOutside = false;
  // For one model.
  ResourceLimits limits;
  // For one model; none: the processors, shared by the models that are drawn at a time.
  std::optional<unsigned> threads;
  // All of the above but the models, for worker processes.
  OptionWords words;
  // What applies to scene files, where defaults for models are set; else null.
  std::shared_ptr<const ExportOptions> forScenes;
};

// One model or scene, and its drawing.
struct ExportJob {
  std::string model;
  // "-" is standard output.
  std::string drawing;
  // Where the model is cut, if it is.
  std::optional<CutPlane> cut;
};

// The options of the command line, which store into `options`; they and `options` start with the
// defaults.
std::vector<Option> exportOptions(ExportOptions& options);

// Whether a file is a scene file and not a model.
bool isSceneFile(const std::string& path);

}  // namespace dxf2d
