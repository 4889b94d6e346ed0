#include "app/importer/import.h"

#include <filesystem>

#include "app/cli/failure.h"
#include "app/cli/file_path.h"

namespace dxf2d {

namespace fs = std::filesystem;

int ImportedModel::Run(const Importer& importer, const ImportSettings& settings,
                       const ImportInput& model, InputTask& work, bool allowsOutside,
                       std::uint64_t& peakMemory) {
  if (const int code = requireRegular(model); code != kExitDone) {
    return code;
  }
  const fs::path path = fs::absolute(filePath(model.path));
  ImportProgram program{importer.name,
                        commandFor(importer, settings, path.string(), result_.Path()),
                        importer.directory, allowsOutside ? "/" : path.parent_path().string()};
  program.result = result_.Number();
  program.remedy = repairFile();
  return runOn({path.string(), model.name}, program, messages_, work, peakMemory);
}

}  // namespace dxf2d
