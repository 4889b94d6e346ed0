#include "app/destination.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <random>
#include <system_error>

#include "app/mapped_file.h"
#include "app/temporary_directory.h"

namespace {

constexpr const char* kStandardOutput = "-";

// Never a file of this name: OutputFile works beside it, and it is not committed.
std::string scratchName() {
  return temporaryDirectory() / ("dxf2d-output-" + std::to_string(std::random_device{}()));
}

void writeToStandardOutput(std::string_view bytes) {
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size();
  if (!written || std::fflush(stdout) != 0) {
    throw OutputError(kExitWriteFailed,
                      "cannot write to standard output: " + std::generic_category().message(errno) +
                          "; mend that or choose another place");
  }
}

}  // namespace

Destination::Destination(const std::string& path, Existing existing) : path_(path) {
  if (path != kStandardOutput) {
    work_.emplace(path, existing);
    if (!work_->IsStraight()) return;
    straight_.emplace(path, existing);
  }
  work_.emplace(scratchName(), Existing::kReplace);
}

void Destination::Deliver() {
  if (path_ != kStandardOutput && !straight_) {
    work_->Commit();
    work_.reset();
    return;
  }
  const MappedFile output(work_->Path());
  // The bytes live on with the mapping. From here on nothing is left to clean up, so a user who
  // waits for the other end of a FIFO in vain can end the program.
  work_.reset();
  if (straight_) {
    straight_->Write(output.Bytes());
    straight_->Commit();
  } else {
    writeToStandardOutput(output.Bytes());
  }
}

std::string Destination::AsUserNamesIt(std::string text) const {
  const std::string& work = WorkPath();
  const std::string name = path_ == kStandardOutput ? std::string("standard output") : path_;
  for (std::size_t at = 0; (at = text.find(work, at)) != std::string::npos; at += name.size()) {
    text.replace(at, work.size(), name);
  }
  return text;
}
