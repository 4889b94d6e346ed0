#include "app/batch/report_file.h"

#include <cerrno>

#include "app/batch/report_storage.h"
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

[[noreturn]] void failAsOther(const std::string& path) {
  throw UsageError({path, tr("is not a report of dxf2d"), tr("choose another name")});
}

}  // namespace

ReportFile::ReportFile(std::string path) : path_(std::move(path)), format_(formatOf(path_)) {
  file_ = openReport(path_);
  GoOn();
}

// After what an earlier run left.
void ReportFile::GoOn() {
  const std::string text = reportText(file_.Number(), path_);
  const std::size_t whole = text.rfind('\n') + 1;
  // A run may have been killed before it wrote the head.
  const bool isBegun = whole == 0 && headOf(format_).starts_with(text);
  if (!isBegun && (whole == 0 || !recordsOf(text, format_))) {
    failAsOther(path_);
  }
  cutReport(file_.Number(), whole, path_);
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
  const Descriptor file = openReportToRead(path);
  if (!file.IsOpen()) {
    throw Failure(kExitInput,
                  {path, tr("cannot be read: %1", {reasonOf(errno)}), tr("check the name")});
  }
  auto records = recordsOf(reportText(file.Number(), path), format);
  if (!records) {
    failAsOther(path);
  }
  return *std::move(records);
}

}  // namespace dxf2d::batch
