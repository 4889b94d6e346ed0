#include "app/export/model_ends.h"

#include <sstream>
#include <utility>

#include "app/cli/failure.h"
#include "app/cli/translation.h"
#include "app/export/export_call.h"
#include "app/importer/importer.h"
#include "app/process/input_task.h"

namespace dxf2d {

std::vector<ModelReader> modelReaders(const ResourceLimits& limits) {
  std::string told;
  const InputTask work(tr("the importer"), "", limits);
  const int code = work.Run({kFormatsTask, {}}, told);
  if (code != kExitDone) {
    throw Failure(static_cast<ExitCode>(code), {"", tr("the formats of models are not known"),
                                                tr("name the models instead of folders")});
  }
  std::vector<ModelReader> readers;
  std::istringstream lines(told);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t tab = line.find('\t');
    ModelReader reader{line.substr(0, tab), {}};
    if (tab != std::string::npos) {
      std::istringstream ends(line.substr(tab + 1));
      for (std::string end; ends >> end;) {
        reader.ends.push_back(end);
      }
    }
    readers.push_back(std::move(reader));
  }
  return readers;
}

std::vector<std::string> readerEnds(const ExportOptions& options) {
  std::vector<std::string> ends;
  for (const ModelReader& reader : modelReaders(options.limits)) {
    ends.insert(ends.end(), reader.ends.begin(), reader.ends.end());
  }
  return ends;
}

std::vector<std::string> importerEnds(const ExportOptions& options) {
  std::vector<std::string> ends;
  for (const Importer& importer : findImporters(options.importers)) {
    for (const ImporterFormat& format : importer.formats) {
      ends.insert(ends.end(), format.extensions.begin(), format.extensions.end());
    }
  }
  return ends;
}

}  // namespace dxf2d
