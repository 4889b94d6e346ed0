// What the worker processes of dxf2d export are called with.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "app/cli/translation.h"
#include "app/export/export_request.h"
#include "app/output/work_output.h"
#include "app/process/worker_call.h"

namespace dxf2d {

inline constexpr const char* kExportTask = "export";
inline constexpr const char* kListTask = "list";
inline constexpr const char* kFormatsTask = "formats";
inline constexpr const char* kDescribeTask = "describe";

// The stage of an export in which the plug-in works.
inline constexpr const char* kDrawingStage = marked("drawing");

// What was made of a model before the worker reads it.
struct ImportedFile {
  // The binary glTF of an importer program, open; -1 for a model that the worker reads itself.
  int file = -1;
  // The importer's name.
  std::string reader{};
  // The options that were given and that the importer does not have, as the user gives them.
  std::string withoutEffect{};
  // The path of a model that was packed; empty for others.
  std::string unpacked{};

  bool IsThere() const { return file >= 0; }
};

// To draw a job into a work file, and a picture of it into `preview` if there is one. The format of
// the options is known. Throws PluginError when this program has no plug-in.
WorkerCall callToExport(const ExportJob& job, const ExportOptions& options,
                        const WorkOutput& output, const std::optional<WorkOutput>& preview,
                        const ImportedFile& imported);

// To list what a model holds.
WorkerCall callToList(const std::string& model, const ExportOptions& options,
                      const ImportedFile& imported);

// The arguments of such calls.
struct ExportArguments {
  ExportJob job;
  ExportOptions options;
  WorkOutput output;
  std::optional<WorkOutput> preview;
  ImportedFile imported;
};
ExportArguments exportArgumentsOf(std::span<const std::string> words);
ExportArguments listArgumentsOf(std::span<const std::string> words);

}  // namespace dxf2d
