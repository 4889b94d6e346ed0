#include "app/export/export_command.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <system_error>
#include <utility>

#include "app/batch/batch_input.h"
#include "app/cli/failure.h"
#include "app/cli/file_path.h"
#include "app/cli/option_values.h"
#include "app/cli/run_all.h"
#include "app/cli/translation.h"
#include "app/export/drawing_names.h"
#include "app/export/export_batch.h"
#include "app/export/line_options.h"
#include "app/export/model_ends.h"
#include "app/export/model_list.h"
#include "app/export/plugin_facts.h"
#include "app/importer/unpacked_model.h"
#include "app/output/destination.h"
#include "app/process/file_identity.h"

namespace dxf2d {

namespace {

// The drawing's path with all links followed. Empty when there is none; the message follows when
// the drawing is created.
std::filesystem::path placeOf(const std::string& drawing) {
  try {
    std::error_code ignored;
    return std::filesystem::weakly_canonical(filePath(followLinks(drawing)), ignored);
  } catch (const OutputError&) {
    return {};
  }
}

// Links may lead a drawing to a model that is still to be read, or to another drawing.
void checkLinks(const std::vector<ExportJob>& jobs) {
  namespace fs = std::filesystem;
  std::map<fs::path, std::string> drawingAt;
  std::map<std::pair<std::uint64_t, std::uint64_t>, std::string> modelAt;
  for (const ExportJob& job : jobs) {
    if (const auto model = identityOf(job.model)) {
      modelAt.emplace(std::pair(model->device, model->number), job.model);
    }
  }
  for (const ExportJob& job : jobs) {
    const fs::path place = placeOf(job.drawing);
    if (place.empty()) {
      continue;
    }
    const std::optional<FileIdentity> replaced = identityOf(job.drawing);
    const auto model =
        replaced ? modelAt.find({replaced->device, replaced->number}) : modelAt.end();
    if (model != modelAt.end()) {
      throw UsageError({job.drawing, tr("would replace the model '%1'", {model->second}),
                        tr("draw into another directory")});
    }
    const auto [other, isNew] = drawingAt.emplace(place, job.drawing);
    if (!isNew) {
      throw UsageError({job.drawing, tr("is the same file as '%1'", {other->second}),
                        tr("draw into another directory")});
    }
  }
}

std::string withoutDot(const std::string& end) { return end.empty() ? end : end.substr(1); }

// Throws UsageError for options that contradict one another or the output.
void checkBatchOptions(const ExportOptions& options, bool isForSeveral) {
  const BatchOptions& batch = options.batch;
  if (batch.keepsGoing && batch.failsFast) {
    throw UsageError(
        {"", tr("--keep-going and --fail-fast exclude one another"), tr("give one of them")});
  }
  if (!isForSeveral) {
    return;
  }
  if (options.output == "-") {
    throw UsageError({"", tr("several drawings cannot go to standard output"),
                      tr("name a directory for them with --output")});
  }
  std::error_code ignored;
  const std::filesystem::path output = filePath(options.output);
  if (!options.output.ends_with('/') &&
      parseOutputFormat(withoutDot(output.extension().string())) &&
      !std::filesystem::is_directory(output, ignored)) {
    throw UsageError({options.output,
                      tr("is the name of one file, and several models have a drawing each"),
                      tr("name a directory for them, such as '%1/'",
                         {output.parent_path().append(output.stem().string()).string()})});
  }
}

// Files in folders that are models by their names; not what is more often a drawing.
bool isModelIn(const std::vector<std::string>& ends, const std::string& path) {
  const std::string end = normalized(filePath(path).extension().string());
  return (end != ".dxf" && std::ranges::find(ends, end) != ends.end()) ||
         UnpackedModel::IsPackedModel(path, ends);
}

batch::Inputs inputsOf(const ExportOptions& options) {
  std::optional<std::vector<std::string>> ends;
  const auto isModel = [&](const std::string& path) {
    if (!ends) {
      ends = readerEnds(options);
      const std::vector<std::string> more = importerEnds(options);
      ends->insert(ends->end(), more.begin(), more.end());
    }
    return isModelIn(*ends, path);
  };
  batch::Inputs inputs = batch::collectInputs(
      {options.models, options.batch.lists, options.batch.isRecursive, options.output}, isModel);
  if (inputs.inputs.empty() && inputs.problems.empty()) {
    throw UsageError({options.models.empty() ? options.batch.lists.front() : options.models.front(),
                      tr("names no models"),
                      tr("name others, or look into folders of folders with -r")});
  }
  return inputs;
}

// With the directories above it, unless it is there.
void makeDirectory(const std::string& directory) {
  std::error_code error;
  std::filesystem::create_directories(filePath(directory), error);
  requireDirectory(directory);
}

int runJobs(const std::vector<ExportJob>& jobs, const ExportOptions& options,
            const std::vector<Message>& problems = {}) {
  if (jobs.size() > 1 && !options.preview.empty()) {
    throw UsageError({options.preview, tr("would be the picture of several drawings"),
                      tr("draw pictures of them with dxf2d preview, or one drawing at a time")});
  }
  if (jobs.size() > 1) {
    checkLinks(jobs);
  }
  return runExportJobs(jobs, options, problems);
}

// Whether of the options for sheets at most --title was given.
bool isTitleOnly(const Sheet& sheet) {
  const Sheet usual;
  return !sheet.paper && !sheet.plotScale && sheet.margin == usual.margin && sheet.dpi == usual.dpi;
}

int exportModels(ExportOptions options) {
  checkLineOptions(options);
  if (const int code = askPlugin(options, options.pluginFacts); code != kExitDone) {
    return code;
  }
  const bool isForSeveral = isForDirectory(options);
  checkForeignFormat(options, isForSeveral);
  const bool isForeign = !options.pluginFacts.WritesDxf();
  if (isForeign) {
    // What the plug-in writes stays as it is.
    options.format = OutputFormat::kDxf;
  } else if (!options.format) {
    options.format = isForSeveral ? OutputFormat::kDxf : formatOfName(options.output);
  }
  if (options.picture.sheet && *options.format == OutputFormat::kDxf && options.preview.empty()) {
    throw UsageError({options.output, tr("is a drawing, which has no paper"),
                      tr("leave out --paper, --plot-scale, --margin, --title and --dpi, or write a "
                         "picture with --format or --preview")});
  }
  if (options.picture.sheet && *options.format == OutputFormat::kHtml &&
      !isTitleOnly(*options.picture.sheet)) {
    throw UsageError({options.output, tr("is a page, which has no paper until it is printed"),
                      tr("leave out --paper, --plot-scale, --margin and --dpi")});
  }
  checkBatchOptions(options, isForSeveral);
  if (!isForSeveral) {
    return runJobs(jobsIntoFile(options.models.front(), options.output, options.cuts), options);
  }
  const batch::Inputs inputs = inputsOf(options);
  ExportJobs jobs =
      jobsIntoDirectory(inputs.inputs, options.output, options.cuts,
                        isForeign ? options.pluginFacts.end : endOfFormat(*options.format));
  makeDirectory(options.output);
  for (const std::string& clash : jobs.clashes) {
    note(clash);
  }
  return runJobs(jobs.jobs, options, inputs.problems);
}

}  // namespace

int runExport(const ExportOptions& options) {
  return reporting([&] {
    if (!options.isListing) {
      return exportModels(options);
    }
    return runAll(options.models, "%1 of %2 models were not listed",
                  [&](const std::string& model) { return listModel(model, options); });
  });
}

}  // namespace dxf2d
