// Draws many models, several at a time.
#pragma once

#include <string>
#include <vector>

#include "app/export/export_request.h"

namespace dxf2d {

// Draws all jobs and prints a sentence for each that fails, which does not keep the others. Returns
// an exit code: that of a single job; of several, kExitSomeFailed if any failed, or kExitPlugin
// when there is no plug-in for any. `problems` failed before.
//
// A termination signal ends the run after clean-up and a sentence that says what was drawn.
int runExportJobs(const std::vector<ExportJob>& jobs, const ExportOptions& options,
                  const std::vector<Message>& problems = {});

}  // namespace dxf2d
