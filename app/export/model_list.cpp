#include "app/export/model_list.h"

#include <cstdio>

#include "app/cli/failure.h"
#include "app/cli/printable.h"
#include "app/export/export_call.h"
#include "app/export/import_step.h"

namespace dxf2d {
namespace {

// Names are escaped already, unless an attacker writes the list.
std::string printableLines(const std::string& text) {
  std::string lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    lines += printable(std::string_view(text).substr(at, end - at)) + '\n';
    at = end + 1;
  }
  return lines;
}

void print(const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
  flushStandardOutput();
}

}  // namespace

int listModel(const std::string& path, const ExportOptions& options) {
  InputTask work(tr("the importer"), path, options.limits);
  return work.Reporting([&] {
    std::string list;
    ImportStep import;
    std::uint64_t peakMemory = 0;
    int code = import.IsNeeded(path, options) ? import.Run(work, peakMemory) : kExitDone;
    if (code == kExitDone) {
      code = work.Run(callToList(path, options, import.File()), list);
    }
    if (code == kExitDone) {
      print(printableLines(list));
    }
    return code;
  });
}

}  // namespace dxf2d
