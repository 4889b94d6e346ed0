// Models that an importer program reads before a worker does.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/cli/command.h"
#include "app/export/export_call.h"
#include "app/export/export_request.h"
#include "app/importer/import.h"
#include "app/importer/unpacked_model.h"
#include "app/process/input_task.h"

namespace dxf2d {

// A format that an importer of this project reads, whether or not it is installed.
struct KnownFormat {
  std::string_view name;
  std::string_view importer;
  // The ends of its files' names; may be empty.
  std::array<std::string_view, 3> ends;
  // Whether nothing else reads files with these ends.
  bool hasNoOther = true;
};
inline constexpr std::array kKnownFormats =
    std::to_array<KnownFormat>({{"STEP", "dxf2d-import-step", {".step", ".stp", ".p21"}},
                                {"IGES", "dxf2d-import-step", {".iges", ".igs", ".ige"}},
                                {"IFC4", "dxf2d-import-ifc", {".ifc"}, false}});

// --importer, which adds to `importers`.
Option importerOption(std::vector<std::string>& importers);

// The options that importers have, which store into `settings`.
std::vector<Option> importSettingOptions(ImportSettings& settings);

// What is done to a model before a worker reads it: it is unpacked if it is packed, and imported if
// there is an importer for it.
class ImportStep {
 public:
  // Returns false when nothing is to be done. The importer is the one that knows the model's
  // format: by the end of its name or, where nobody knows that end, by its first bytes. Throws
  // UsageError for a description that is not valid, and Failure when the importer is not installed.
  bool IsNeeded(const std::string& model, const ExportOptions& options);
  // Does it. Returns an ExitCode, with a message printed unless that is kExitDone. Raises
  // `peakMemory` to the bytes that it took at most. Throws like IsNeeded, for what is unpacked.
  int Run(InputTask& work, std::uint64_t& peakMemory);

  // For the worker, as long as this object lives.
  ImportedFile File() const;

 private:
  bool FindImporter(const std::string& path);
  int Unpack(InputTask& work, std::uint64_t& peakMemory);

  std::string model_;
  // Outlives this object.
  const ExportOptions* options_ = nullptr;
  std::optional<UnpackedModel> unpacked_;
  std::optional<Importer> importer_;
  std::optional<ImportedModel> imported_;
};

}  // namespace dxf2d
