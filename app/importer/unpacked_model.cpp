#include "app/importer/unpacked_model.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <span>
#include <string_view>

#include "app/cli/failure.h"
#include "app/cli/file_path.h"
#include "app/cli/option_values.h"
#include "app/cli/translation.h"
#include "app/importer/program_run.h"
#include "app/process/worker_location.h"

namespace dxf2d {
namespace {

namespace fs = std::filesystem;

// The ends of packed models, and those of archives of any files.
constexpr std::array<std::string_view, 3> kModelArchives{".ifczip", ".stpz", ".x3dz"};
constexpr std::array<std::string_view, 9> kArchives{".gz",  ".bz2", ".xz",  ".lzma", ".zst",
                                                    ".zip", ".7z",  ".tar", ".tgz"};

std::string endOf(const fs::path& path) { return normalized(path.extension().string()); }

bool isAmong(std::span<const std::string_view> ends, const std::string& end) {
  return std::ranges::find(ends, end) != ends.end();
}

}  // namespace

bool UnpackedModel::IsPacked(const std::string& model) {
  const std::string end = endOf(filePath(model));
  return isAmong(kModelArchives, end) || isAmong(kArchives, end);
}

bool UnpackedModel::IsPackedModel(const std::string& file, const std::vector<std::string>& ends) {
  const fs::path path = filePath(file);
  const std::string end = endOf(path);
  return isAmong(kModelArchives, end) ||
         (isAmong(kArchives, end) && std::ranges::find(ends, endOf(path.stem())) != ends.end());
}

std::vector<std::string> UnpackedModel::Ends() {
  std::vector<std::string> ends(kModelArchives.begin(), kModelArchives.end());
  ends.insert(ends.end(), kArchives.begin(), kArchives.end());
  return ends;
}

int UnpackedModel::Run(const std::string& model, const std::vector<std::string>& ends,
                       InputTask& work, std::uint64_t& peakMemory) {
  const ImportInput input{fs::absolute(filePath(model)).string(), model};
  if (const int code = requireRegular(input); code != kExitDone) {
    return code;
  }
  const std::string unpacker = (filePath(workerProgram()).parent_path() / "dxf2d-unpack").string();
  ImportProgram program{"dxf2d-unpack",
                        {unpacker, input.path, directory_.Path()},
                        unpacker,
                        input.path,
                        directory_.Path()};
  program.remedy = tr("unpack it, or repair it if it is damaged");
  program.command.insert(program.command.end(), ends.begin(), ends.end());
  const int code = runOn(input, program, messages_, work, peakMemory);
  if (code == kExitDone) {
    const fs::path name = filePath(lastLineOf(messages_.Path())).filename();
    path_ = (directory_.Path() / name).string();
  }
  return code;
}

}  // namespace dxf2d
