#include "app/importer/import.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>

#include "app/cli/failure.h"

namespace dxf2d {
namespace {

// The last line of a file that is not empty; of a long one, its beginning.
std::string lastLineOf(const std::string& path) {
  constexpr std::streamoff kMost = 2000;
  std::ifstream file(path, std::ios::binary);
  file.seekg(0, std::ios::end);
  const std::streamoff size = file.tellg();
  file.seekg(std::max<std::streamoff>(0, size - kMost));
  std::string last;
  for (std::string line; std::getline(file, line);) {
    if (line.find_first_not_of(" \t\r") != std::string::npos) {
      last = line;
    }
  }
  constexpr std::size_t kLongest = 300;
  last.resize(std::min(last.size(), kLongest));
  while (!last.empty() && (last.back() == '.' || last.back() == '\r' || last.back() == ' ')) {
    last.pop_back();
  }
  return last;
}

// Size and time of the last change of a file.
struct FileState {
  std::uintmax_t size;
  std::filesystem::file_time_type changed;

  friend bool operator==(const FileState&, const FileState&) = default;
};

std::optional<FileState> stateOf(const std::string& path) {
  std::error_code error;
  const FileState state{
      std::filesystem::file_size(path, error),
      error ? std::filesystem::file_time_type() : std::filesystem::last_write_time(path, error)};
  return error ? std::nullopt : std::optional(state);
}

}  // namespace

int ImportedModel::Run(const Importer& importer, const ImportSettings& settings,
                       const std::string& model, InputTask& work, bool allowsOutside,
                       std::uint64_t& peakMemory) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(model, error);
  if (!std::filesystem::is_regular_file(status)) {
    return fail(kExitInput,
                {model,
                 std::filesystem::exists(status) ? "cannot be read: it is not a regular file"
                                                 : "cannot be read: there is no such file",
                 "check the name"});
  }
  const std::string path = std::filesystem::absolute(model).string();
  const std::optional<FileState> before = stateOf(model);
  WorkerCall call{kImportTask,
                  {std::to_string(result_.Number()), std::to_string(messages_.Number()),
                   allowsOutside ? "/" : std::filesystem::path(path).parent_path().string(), path,
                   importer.directory},
                  {result_.Number(), messages_.Number()}};
  call.Add(commandFor(importer, settings, path, result_.Path()));
  std::optional<int> end;
  const int code = work.RunProgram(call, end, peakMemory);
  if (code != kExitDone) {
    return code;
  }
  if (stateOf(model) != before) {
    return fail(kExitInput, {model, "cannot be read: it changes while it is read",
                             "check that no program is writing the file"});
  }
  if (end != 0) {
    const std::string reason = lastLineOf(messages_.Path());
    return fail(
        kExitInput,
        {model, "cannot be read: " + (reason.empty() ? importer.name + " gives no reason" : reason),
         kRepairFile});
  }
  return kExitDone;
}

}  // namespace dxf2d
