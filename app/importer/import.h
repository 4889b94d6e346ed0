// Runs importer programs.
#pragma once

#include <cstdint>
#include <string>

#include "app/importer/importer.h"
#include "app/output/scratch_file.h"
#include "app/process/input_task.h"
#include "app/process/worker_program.h"

namespace dxf2d {

inline constexpr const char* kImportTask = "import";

// The task of the worker program that becomes the importer: confined to reading the model's
// directory, and the system's files and the importer's own, which it may also run, and to writing
// its result.
WorkerTask importTask();

// A model as an importer program has turned it into binary glTF, in a file without a name.
class ImportedModel {
 public:
  // Throws OutputError when there is no room for temporary files.
  explicit ImportedModel(const Importer& importer) : reader_(importer.name) {}

  // Runs the importer on `model` within the limits of `work`; with `allowsOutside` it may read
  // everything. Options that it does not have are passed over. Returns an ExitCode, with a message
  // printed unless that is kExitDone; the last line that the importer printed on standard error is
  // its reason for a failure. Adds the bytes that it took at most to `peakMemory` when that is
  // more.
  int Run(const Importer& importer, const ImportSettings& settings, const std::string& model,
          InputTask& work, bool allowsOutside, std::uint64_t& peakMemory);

  // The binary glTF, for the worker that reads it.
  int File() const { return result_.Number(); }
  // The importer's name.
  const std::string& Reader() const { return reader_; }

 private:
  std::string reader_;
  ScratchFile result_{"the binary glTF of the importer"};
  ScratchFile messages_{"the messages of the importer"};
};

}  // namespace dxf2d
