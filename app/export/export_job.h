// dxf2d export of one model or scene.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "app/export/export_request.h"
#include "app/process/worker_template.h"

namespace dxf2d {

// What becomes known of a job beside its exit code.
struct JobNews {
  // Called for each stage; may be empty.
  std::function<void(std::string_view)> onStage{};
  // Bytes that its worker took at most.
  std::uint64_t peakMemory = 0;
  // See ExportReport.
  std::string facts{};
};

// Draws a job's model in a worker process, which is forked from `workers` unless that is null.
// Prints a message when that fails, else the summary of a
// model. Returns an exit code.
int runExportJob(const ExportJob& job, const ExportOptions& options, WorkerTemplate* workers,
                 JobNews& news);

}  // namespace dxf2d
