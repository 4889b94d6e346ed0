#include "app/export/export_command.h"

#include <filesystem>
#include <map>
#include <system_error>

#include "app/export/drawing_names.h"
#include "app/failure.h"
#include "app/preview/text_decoding.h"
#include "platform/code_page.h"

namespace {

int exportAll(const std::vector<ExportJob>& jobs, const ExportOptions& options) {
  std::size_t failed = 0;
  for (const ExportJob& job : jobs) {
    const int code = runExportJob(job, options);
    // The next model has no better one.
    if (code == kExitPlugin) return code;
    if (code != kExitDone) ++failed;
  }
  if (failed == 0) return kExitDone;
  return fail(kExitSomeFailed, std::to_string(failed) + " of " + std::to_string(jobs.size()) +
                                   " models were not drawn; see the sentences above");
}

// Once for all drawings in it.
void checkDirectory(const std::string& directory) {
  std::error_code ignored;
  if (std::filesystem::is_directory(directory, ignored)) return;
  const bool exists = std::filesystem::exists(directory, ignored);
  throw OutputError(kExitOutputNotMade,
                    "cannot draw into '" + directory +
                        (exists ? "': it is no directory; choose another"
                                : "': there is no such directory; create it or choose another"));
}

// Where the drawing would stand, when all links are followed. Empty where it cannot: that is said
// when its turn comes.
std::filesystem::path placeOf(const std::string& drawing) {
  try {
    std::error_code ignored;
    return std::filesystem::weakly_canonical(followLinks(drawing), ignored);
  } catch (const OutputError&) {
    return {};
  }
}

// Links may lead a drawing to a model that is still to be read, or to another drawing.
void checkLinks(const std::vector<ExportJob>& jobs) {
  namespace fs = std::filesystem;
  std::map<fs::path, std::string> modelAt;
  std::map<fs::path, std::string> drawingAt;
  std::error_code ignored;
  for (const ExportJob& job : jobs) {
    modelAt.emplace(fs::weakly_canonical(job.model, ignored), job.model);
  }
  for (const ExportJob& job : jobs) {
    const fs::path place = placeOf(job.drawing);
    if (place.empty()) continue;
    const auto model = modelAt.find(place);
    if (model != modelAt.end()) {
      throw UsageError("the drawing '" + job.drawing + "' would replace the model '" +
                       model->second + "'; draw into another directory");
    }
    const auto [other, isNew] = drawingAt.emplace(place, job.drawing);
    if (!isNew) {
      throw UsageError("'" + other->second + "' and '" + job.drawing +
                       "' lead to one file; draw into another directory");
    }
  }
}

int exportModels(const ExportOptions& options) {
  if (!SetThreadCodePage(options.codePage)) throw UsageError(unknownCodePage(options.codePage));
  const std::vector<ExportJob> jobs = exportJobs(options.models, options.output);
  if (jobs.size() == 1) return runExportJob(jobs.front(), options);
  checkDirectory(options.output);
  checkLinks(jobs);
  return exportAll(jobs, options);
}

}  // namespace

int runExport(const ExportOptions& options) {
  return reporting([&] { return exportModels(options); });
}
