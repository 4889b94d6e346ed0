#include "app/output/destination.h"

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <random>
#include <utility>

#include "app/cli/file_path.h"
#include "app/cli/translation.h"
#include "app/output/mapped_file.h"
#include "app/output/temporary_directory.h"

namespace dxf2d {

namespace {

// Never a file of this name: OutputFile works beside it, and it is not committed.
std::string scratchName() {
  return (temporaryDirectory() / ("dxf2d-output-" + std::to_string(std::random_device{}())))
      .string();
}

}  // namespace

void requireDirectory(const std::string& directory) {
  std::error_code ignored;
  if (std::filesystem::is_directory(filePath(directory), ignored)) {
    return;
  }
  const bool exists = std::filesystem::exists(filePath(directory), ignored);
  throw OutputError(
      kExitOutputNotMade,
      {directory, exists ? tr("is not a directory") : tr("the directory does not exist"),
       exists ? tr("choose another") : tr("create it or choose another")});
}

std::string Destination::EndOf(const std::string& path) {
  namespace fs = std::filesystem;
  std::error_code ignored;
  const fs::file_status status = fs::status(filePath(path), ignored);
  const std::string end = filePath(path).extension().string();
  const bool isNamedByEnd = end.size() > 1 && (!fs::exists(status) || fs::is_regular_file(status));
  return isNamedByEnd ? end : std::string();
}

Destination::Destination(const std::string& path, Existing existing) : path_(PathOf(path)) {
  work_.emplace(path_, existing);
  if (!work_->IsWrittenInPlace()) {
    return;
  }
  inPlace_.emplace(path_, existing);
  try {
    work_.emplace(scratchName(), Existing::kReplace);
  } catch (const OutputError& error) {
    throw OutputError(error.Code(),
                      {path_, tr("needs a temporary file: %1", {error.Text().problem}),
                       tr("name a directory for temporary files in TMPDIR")});
  }
}

WorkOutput Destination::Work() const {
  const std::string remedy =
      inPlace_ ? tr("check the disk or name another directory for temporary files in TMPDIR")
               : checkDisk();
  return {work_->WorkDescriptor(), work_->Path(), path_, inEnglish(remedy)};
}

void Destination::Deliver() {
  if (!inPlace_) {
    work_->Commit();
    work_.reset();
    return;
  }
  const MappedFile output(work_->Path(), path_);
  // The bytes live on with the mapping. From here on nothing is left to clean up, so a user who
  // waits for the other end of a FIFO in vain can end the program.
  work_.reset();
  inPlace_->Write(output.Bytes());
  inPlace_->Commit();
}

int deliverFrom(const InputTask& work, WorkerCall call, const std::vector<std::string>& options,
                Destination& destination, const Verbosity& verbosity) {
  const auto begin = std::chrono::steady_clock::now();
  const WorkOutput output = destination.Work();
  call.descriptors.push_back(output.file);
  call.Add(output.Words());
  call.Add(options);
  std::string nothing;
  std::uint64_t peakMemory = 0;
  const int code = work.Run(std::move(call), nothing, &peakMemory);
  if (code == kExitDone) {
    destination.Deliver();
  }
  if (code == kExitDone && verbosity.isVerbose) {
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    char text[64];
    std::snprintf(text, sizeof text, "%.3f", taken.count());
    note(tr("%1: done in %2 s, with %3 MiB of memory",
            {destination.Name(), text, std::to_string(peakMemory >> 20)}));
  }
  return code;
}

}  // namespace dxf2d
