// The file of a batch's report.
#pragma once

#include <mutex>
#include <string>

#include "app/batch/record.h"
#include "app/process/descriptor.h"

namespace dxf2d::batch {

// A report that grows by one line for each input, so that it is valid at any moment. One that is
// there from an earlier run goes on, without a last line that is not finished. May be used by
// several threads.
class ReportFile {
 public:
  // Opens or creates `path`. Throws UsageError for a name of no known end and for a file that is
  // not a report, OutputError when it cannot be written or another run writes it.
  explicit ReportFile(std::string path);

  // Throws OutputError.
  void Add(const Record& record);

 private:
  void GoOn();

  std::string path_;
  RecordFormat format_;
  Descriptor file_;
  std::mutex mutex_;
};

// What stands in a report. Throws UsageError when it is none, Failure when it cannot be read.
std::vector<Record> readReport(const std::string& path);

}  // namespace dxf2d::batch
