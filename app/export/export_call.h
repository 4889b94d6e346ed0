// What the worker processes of dxf2d export are called with.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "app/export/export_request.h"
#include "app/output/work_output.h"
#include "app/process/worker_call.h"

namespace dxf2d {

inline constexpr const char* kExportTask = "export";
inline constexpr const char* kListTask = "list";
inline constexpr const char* kFormatsTask = "formats";

// To draw a job into a work file, and a picture of it into `preview` if there is one. The format of
// the options is known. Throws PluginError when this program has no plug-in.
WorkerCall callToExport(const ExportJob& job, const ExportOptions& options,
                        const WorkOutput& output, const std::optional<WorkOutput>& preview);

// To list what a model holds.
WorkerCall callToList(const std::string& model, const ExportOptions& options);

// The arguments of such calls.
struct ExportArguments {
  ExportJob job;
  ExportOptions options;
  WorkOutput output;
  std::optional<WorkOutput> preview;
};
ExportArguments exportArgumentsOf(std::span<const std::string> words);
ExportArguments listArgumentsOf(std::span<const std::string> words);

}  // namespace dxf2d
