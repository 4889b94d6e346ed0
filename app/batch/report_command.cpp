#include "app/batch/report_command.h"

#include <cstdio>
#include <memory>
#include <sstream>

#include "app/batch/report_file.h"
#include "app/batch/totals.h"
#include "app/cli/failure.h"

namespace dxf2d {

namespace {

struct ReportOptions {
  std::vector<std::string> reports;
  bool isJson = false;
};

int printTotals(const ReportOptions& options) {
  std::vector<batch::Record> records;
  for (const std::string& report : options.reports) {
    const std::vector<batch::Record> more = batch::readReport(report);
    records.insert(records.end(), more.begin(), more.end());
  }
  const batch::Totals totals = batch::totalsOf(records);
  std::istringstream lines(options.isJson ? batch::jsonOf(totals) : textOf(totals));
  for (std::string line; std::getline(lines, line);) {
    printLine(stdout, line);
  }
  flushStandardOutput();
  return kExitDone;
}

}  // namespace

Command reportCommand() {
  const auto options = std::make_shared<ReportOptions>();
  Command command;
  command.name = "report";
  command.summary = "Prints the totals of reports that dxf2d export --report wrote.";
  command.help =
      "Inputs drawn, skipped and failed by exit code, polylines and vertices, time and memory. Of "
      "several records of an input the last one counts.";
  command.examples = {{"dxf2d report night.jsonl", "What became of a night's models."}};
  command.inputName = "REPORT";
  command.inputHelp = "The reports, .jsonl or .csv";
  command.takesSeveralInputs = true;
  command.takeInputs = [options](const std::vector<std::string>& inputs) {
    options->reports = inputs;
  };
  command.options = {{"--json", "", "Print the totals as JSON", "",
                      [options](const std::string&) { return options->isJson = true; }}};
  command.run = [options](const OptionWords&) {
    return reporting([&] { return printTotals(*options); });
  };
  return command;
}

}  // namespace dxf2d
