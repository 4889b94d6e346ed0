// What the worker process of an export tells its parent about the drawing.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/process/file_identity.h"

namespace dxf2d {

struct ExportReport {
  // The summary, divided where the time belongs; both empty for scene files, which get none.
  std::string summaryBeforeTime;
  std::string summaryAfterTime;
  // What is known of the model and of the drawing (see batch::Record::facts), if that was wanted.
  std::string facts;
  // Files that the model consists of and refers to.
  std::vector<FileIdentity> inputs;
};

std::string textOf(const ExportReport& report);

// Throws std::invalid_argument for what is not the text of a report.
ExportReport reportOf(std::string_view text);

}  // namespace dxf2d
