#include "app/export/export_report.h"

#include <sstream>
#include <stdexcept>

namespace dxf2d {

namespace {

// Names in a summary may hold line ends.
constexpr char kEnd = '\0';

std::string_view takePart(std::string_view& text) {
  const std::size_t end = text.find(kEnd);
  if (end == std::string_view::npos) {
    throw std::invalid_argument("the report of an export is not complete");
  }
  const std::string_view part = text.substr(0, end);
  text.remove_prefix(end + 1);
  return part;
}

}  // namespace

std::string textOf(const ExportReport& report) {
  std::string text =
      report.summaryBeforeTime + kEnd + report.summaryAfterTime + kEnd + report.facts + kEnd;
  for (const FileIdentity& input : report.inputs) {
    text += std::to_string(input.device) + " " + std::to_string(input.number) + " ";
  }
  return text + kEnd;
}

ExportReport reportOf(std::string_view text) {
  ExportReport report;
  report.summaryBeforeTime = takePart(text);
  report.summaryAfterTime = takePart(text);
  report.facts = takePart(text);
  std::istringstream numbers{std::string(takePart(text))};
  for (FileIdentity input; numbers >> input.device >> input.number;) {
    report.inputs.push_back(input);
  }
  return report;
}

}  // namespace dxf2d
