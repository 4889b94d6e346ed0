#include "app/destination.h"

#include <filesystem>
#include <random>

#include "app/mapped_file.h"
#include "app/temporary_directory.h"

namespace {

// Never a file of this name: OutputFile works beside it, and it is not committed.
std::string scratchName() {
  return temporaryDirectory() / ("dxf2d-output-" + std::to_string(std::random_device{}()));
}

}  // namespace

Destination::Destination(const std::string& path, Existing existing) : path_(PathOf(path)) {
  work_.emplace(path_, existing);
  if (!work_->IsStraight()) return;
  straight_.emplace(path_, existing);
  try {
    work_.emplace(scratchName(), Existing::kReplace);
  } catch (const OutputError& error) {
    throw OutputError(error.Code(), std::string(error.what()) +
                                        "; TMPDIR names another directory for temporary files");
  }
}

std::string Destination::WayOut() const {
  return straight_ ? "mend that or name another directory for temporary files in TMPDIR"
                   : "mend that or choose another place";
}

void Destination::Deliver() {
  if (!straight_) {
    work_->Commit();
    work_.reset();
    return;
  }
  const MappedFile output(work_->Path());
  // The bytes live on with the mapping. From here on nothing is left to clean up, so a user who
  // waits for the other end of a FIFO in vain can end the program.
  work_.reset();
  straight_->Write(output.Bytes());
  straight_->Commit();
}

std::string Destination::AsUserNamesIt(std::string text) const {
  const std::string& work = WorkPath();
  for (std::size_t at = 0; (at = text.find(work, at)) != std::string::npos; at += path_.size()) {
    text.replace(at, work.size(), path_);
  }
  return text;
}
