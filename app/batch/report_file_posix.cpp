#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "app/batch/report_file.h"
#include "app/cli/translation.h"
#include "app/output/output_failures.h"
#include "app/output/whole_write.h"

namespace dxf2d::batch {

namespace {

RecordFormat formatOf(const std::string& path) {
  const std::optional<RecordFormat> format = recordFormat(path);
  if (!format) {
    throw UsageError(
        {path, tr("the report's format is unknown"), tr("end its name in .jsonl or .csv")});
  }
  return *format;
}

// From the beginning. Throws OutputError.
std::string textOf(int file, const std::string& path) {
  std::string text;
  char bytes[1 << 16];
  while (true) {
    const ssize_t count = retryInterrupted(
        [&] { return pread(file, bytes, sizeof bytes, static_cast<off_t>(text.size())); });
    if (count < 0) {
      throw OutputError(kExitInput,
                        {path, tr("cannot be read: %1", {reasonOf(errno)}), checkDisk()});
    }
    if (count == 0) {
      return text;
    }
    text.append(bytes, static_cast<std::size_t>(count));
  }
}

[[noreturn]] void failAsOther(const std::string& path) {
  throw UsageError({path, tr("is not a report of dxf2d"), tr("choose another name")});
}

}  // namespace

ReportFile::ReportFile(std::string path) : path_(std::move(path)), format_(formatOf(path_)) {
  file_ = Descriptor(retryInterrupted([&] {
    return open(path_.c_str(), O_RDWR | O_CREAT | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC,
                0666);
  }));
  if (!file_.IsOpen()) {
    failCreatingBeside(path_, path_, errno);
  }
  struct stat status {};
  if (fstat(file_.Number(), &status) != 0 || !S_ISREG(status.st_mode)) {
    failCreating(path_, tr("it is not a regular file"), tr("choose another name"));
  }
  if (flock(file_.Number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
    failCreating(path_, tr("another run is writing it"),
                 tr("wait for that run or choose another name"));
  }
  GoOn();
}

// After what an earlier run left.
void ReportFile::GoOn() {
  const std::string text = textOf(file_.Number(), path_);
  const std::size_t whole = text.rfind('\n') + 1;
  // A run may have been killed before it wrote the head.
  const bool isBegun = whole == 0 && headOf(format_).starts_with(text);
  if (!isBegun && (whole == 0 || !recordsOf(text, format_))) {
    failAsOther(path_);
  }
  if (ftruncate(file_.Number(), static_cast<off_t>(whole)) != 0) {
    failWriting(path_, errno);
  }
  if (whole == 0) {
    writeWhole(file_.Number(), headOf(format_), path_);
  }
}

void ReportFile::Add(const Record& record) {
  const std::string line = lineOf(record, format_);
  const std::lock_guard lock(mutex_);
  writeWhole(file_.Number(), line, path_);
}

std::vector<Record> readReport(const std::string& path) {
  const RecordFormat format = formatOf(path);
  const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!file.IsOpen()) {
    throw Failure(kExitInput,
                  {path, tr("cannot be read: %1", {reasonOf(errno)}), tr("check the name")});
  }
  auto records = recordsOf(textOf(file.Number(), path), format);
  if (!records) {
    failAsOther(path);
  }
  return *std::move(records);
}

}  // namespace dxf2d::batch
