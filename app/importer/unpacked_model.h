// Models in archives and compressed files.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/cli/translation.h"
#include "app/output/scratch_directory.h"
#include "app/output/scratch_file.h"
#include "app/process/input_task.h"

namespace dxf2d {

// A model that was packed, and the files beside it in its archive, in a directory of their own.
class UnpackedModel {
 public:
  // Whether the end of a file's name says that it is packed.
  static bool IsPacked(const std::string& model);
  // Whether a file in a folder is taken for a packed model: the end of its name says so, or the one
  // before, which is among `ends`; any other archive more often holds other things.
  static bool IsPackedModel(const std::string& file, const std::vector<std::string>& ends);
  // For lists of formats.
  static std::vector<std::string> Ends();

  // Unpacks `model`, of which one member has one of `ends`, within the limits of `work`. Returns
  // and raises what ImportedModel::Run does.
  int Run(const std::string& model, const std::vector<std::string>& ends, InputTask& work,
          std::uint64_t& peakMemory);

  // Of the model, once it is unpacked.
  const std::string& Path() const { return path_; }

 private:
  ScratchDirectory directory_{"dxf2d-unpack"};
  ScratchFile messages_{tr("the messages of dxf2d-unpack")};
  std::string path_;
};

}  // namespace dxf2d
