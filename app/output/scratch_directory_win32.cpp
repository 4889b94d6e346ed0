#include "app/output/scratch_directory.h"

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <random>
#include <system_error>

#include "app/cli/file_path.h"
#include "app/cli/translation.h"
#include "app/output/output_file.h"
#include "app/output/temporary_directory.h"

namespace dxf2d {

// The user's directory for temporary files is the user's alone.
ScratchDirectory::ScratchDirectory(const std::string& name) {
  constexpr int kAttempts = 100;
  std::random_device random;
  std::error_code error = std::make_error_code(std::errc::file_exists);
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    path_ = (temporaryDirectory() / (name + "-" + std::to_string(random()))).generic_string();
    if (std::filesystem::create_directory(filePath(path_), error)) {
      return;
    }
  }
  throw OutputError(kExitOutputNotMade,
                    {temporaryDirectory().string(),
                     tr("a temporary directory cannot be created in it: %1", {error.message()}),
                     tr("name another in TMPDIR")});
}

ScratchDirectory::~ScratchDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(filePath(path_), ignored);
}

}  // namespace dxf2d
