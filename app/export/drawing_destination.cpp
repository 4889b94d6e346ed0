#include "app/export/drawing_destination.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "app/mapped_file.h"

namespace {

constexpr const char* kStandardOutput = "-";

// Never a file of this name: OutputFile works beside it, and it is not committed.
std::string scratchName() {
  std::error_code error;
  const std::filesystem::path directory = std::filesystem::temp_directory_path(error);
  return (error ? std::filesystem::path("/tmp") : directory) / "dxf2d-drawing";
}

void writeToStandardOutput(std::string_view bytes) {
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size();
  if (!written || std::fflush(stdout) != 0) {
    throw OutputError(kExitWriteFailed, "cannot write the drawing to standard output: " +
                                            std::generic_category().message(errno));
  }
}

}  // namespace

DrawingDestination::DrawingDestination(const std::string& path) : path_(path) {
  if (path == kStandardOutput) {
    work_.emplace(scratchName());
    return;
  }
  work_.emplace(path);
  if (work_->Path() != path) return;
  // OutputFile writes it straight.
  work_.reset();
  straight_.emplace(path);
  work_.emplace(scratchName());
}

void DrawingDestination::Deliver() {
  if (!straight_ && path_ != kStandardOutput) {
    work_->Commit();
    return;
  }
  const MappedFile drawing(work_->Path());
  if (straight_) {
    straight_->Write(drawing.Bytes());
    straight_->Commit();
  } else {
    writeToStandardOutput(drawing.Bytes());
  }
}

std::string DrawingDestination::AsUserNamesIt(std::string text) const {
  const std::string& work = WorkPath();
  const std::string name = path_ == kStandardOutput ? std::string("standard output") : path_;
  for (std::size_t at = 0; (at = text.find(work, at)) != std::string::npos; at += name.size()) {
    text.replace(at, work.size(), name);
  }
  return text;
}
