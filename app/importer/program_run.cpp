#include "app/importer/program_run.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>

#include "app/cli/failure.h"
#include "app/cli/file_path.h"
#include "app/cli/translation.h"

namespace dxf2d {
namespace {

namespace fs = std::filesystem;

// Size and time of the last change of a file.
struct FileState {
  std::uintmax_t size;
  fs::file_time_type changed;

  friend bool operator==(const FileState&, const FileState&) = default;
};

std::optional<FileState> stateOf(const std::string& path) {
  std::error_code error;
  const FileState state{fs::file_size(filePath(path), error),
                        error ? fs::file_time_type() : fs::last_write_time(filePath(path), error)};
  return error ? std::nullopt : std::optional(state);
}

}  // namespace

std::string lastLineOf(const std::string& path) {
  constexpr std::streamoff kMost = 2000;
  std::ifstream file(filePath(path), std::ios::binary);
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

int requireRegular(const ImportInput& model) {
  std::error_code error;
  const fs::file_status status = fs::status(filePath(model.path), error);
  if (fs::is_regular_file(status)) {
    return kExitDone;
  }
  return fail(kExitInput, {model.name,
                           fs::exists(status) ? tr("cannot be read: it is not a regular file")
                                              : tr("cannot be read: there is no such file"),
                           tr("check the name")});
}

int runOn(const ImportInput& model, const ImportProgram& program, const ScratchFile& messages,
          InputTask& work, std::uint64_t& peakMemory) {
  const std::optional<FileState> before = stateOf(model.path);
  WorkerCall call{kImportTask,
                  {std::to_string(program.result), std::to_string(messages.Number()),
                   program.readable, model.path, program.ownFiles, program.scratch},
                  {messages.Number()}};
  if (program.result >= 0) {
    call.descriptors.push_back(program.result);
  }
  call.Add(program.command);
  std::optional<int> end;
  const int code = work.RunProgram(call, end, peakMemory);
  if (code != kExitDone) {
    return code;
  }
  if (stateOf(model.path) != before) {
    return fail(kExitInput, {model.name, tr("cannot be read: it changes while it is read"),
                             tr("check that no program is writing the file")});
  }
  if (end != 0) {
    const std::string reason = lastLineOf(messages.Path());
    return fail(kExitInput,
                {model.name,
                 tr("cannot be read: %1",
                    {(reason.empty() ? tr("%1 gives no reason", {program.name}) : reason)}),
                 program.remedy});
  }
  return kExitDone;
}

}  // namespace dxf2d
