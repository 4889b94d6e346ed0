// Runs importer programs.
#pragma once

#include <cstdint>
#include <string>

#include "app/cli/translation.h"
#include "app/importer/importer.h"
#include "app/importer/program_run.h"
#include "app/output/scratch_file.h"
#include "app/process/input_task.h"

namespace dxf2d {

// A model as an importer program has turned it into binary glTF, in a file without a name.
class ImportedModel {
 public:
  // Throws OutputError when there is no room for temporary files.
  explicit ImportedModel(const Importer& importer) : reader_(importer.name) {}

  // Runs the importer on `model` within the limits of `work`; with `allowsOutside` it may read
  // everything. Options that it does not have are passed over. Returns an ExitCode, with a message
  // printed unless that is kExitDone; the last line that the importer printed on standard error is
  // its reason for a failure. Raises `peakMemory` to the bytes that it took at most.
  int Run(const Importer& importer, const ImportSettings& settings, const ImportInput& model,
          InputTask& work, bool allowsOutside, std::uint64_t& peakMemory);

  // The binary glTF, for the worker that reads it.
  int File() const { return result_.Number(); }
  // The importer's name.
  const std::string& Reader() const { return reader_; }

 private:
  std::string reader_;
  ScratchFile result_{tr("the binary glTF of the importer")};
  ScratchFile messages_{tr("the messages of the importer")};
};

}  // namespace dxf2d
