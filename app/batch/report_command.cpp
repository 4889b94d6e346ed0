#include "app/batch/report_command.h"

#include <cstdio>
#include <memory>
#include <sstream>

#include "app/batch/report_file.h"
#include "app/batch/totals.h"
#include "app/cli/failure.h"

namespace dxf2d {

namespace {

int printTotals(const std::vector<std::string>& reports) {
  std::vector<batch::Record> records;
  for (const std::string& report : reports) {
    const std::vector<batch::Record> more = batch::readReport(report);
    records.insert(records.end(), more.begin(), more.end());
  }
  std::istringstream lines(textOf(batch::totalsOf(records)));
  for (std::string line; std::getline(lines, line);) {
    printLine(stdout, line);
  }
  flushStandardOutput();
  return kExitDone;
}

}  // namespace

Command reportCommand() {
  const auto reports = std::make_shared<std::vector<std::string>>();
  Command command;
  command.name = "report";
  command.help =
      "Prints the totals of reports that dxf2d export --report wrote: inputs drawn, skipped and "
      "failed by exit code, polylines and vertices, time and memory. Of several records of an "
      "input the last one counts.";
  command.inputName = "REPORT";
  command.inputHelp = "The reports, .jsonl or .csv";
  command.takesSeveralInputs = true;
  command.takeInputs = [reports](const std::vector<std::string>& inputs) { *reports = inputs; };
  command.run = [reports](const OptionWords&) {
    return reporting([&] { return printTotals(*reports); });
  };
  return command;
}

}  // namespace dxf2d
