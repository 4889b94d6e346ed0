#include "app/output/scratch_directory.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "app/cli/translation.h"
#include "app/output/output_file.h"
#include "app/output/temporary_directory.h"

namespace dxf2d {

ScratchDirectory::ScratchDirectory(const std::string& name)
    : path_((temporaryDirectory() / (name + "-XXXXXX")).string()) {
  if (mkdtemp(path_.data()) == nullptr) {
    throw OutputError(kExitOutputNotMade, {temporaryDirectory().string(),
                                           tr("a temporary directory cannot be created in it: %1",
                                              {std::strerror(errno)}),
                                           tr("name another in TMPDIR")});
  }
}

ScratchDirectory::~ScratchDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace dxf2d
