#include "app/export/export_command.h"

#include <filesystem>
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

int exportModels(const ExportOptions& options) {
  if (!SetThreadCodePage(options.codePage)) throw UsageError(unknownCodePage(options.codePage));
  const std::vector<ExportJob> jobs = exportJobs(options.models, options.output);
  if (jobs.size() == 1) return runExportJob(jobs.front(), options);
  checkDirectory(options.output);
  return exportAll(jobs, options);
}

}  // namespace

int runExport(const ExportOptions& options) {
  return reporting([&] { return exportModels(options); });
}
