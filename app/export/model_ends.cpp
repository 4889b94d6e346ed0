#include "app/export/model_ends.h"

#include <sstream>

#include "app/cli/failure.h"
#include "app/export/export_call.h"
#include "app/process/input_task.h"

namespace dxf2d {

std::vector<std::string> modelEnds(const ExportOptions& options) {
  std::string list;
  const InputTask work("importer", "", options.limits);
  const int code = work.Run({kFormatsTask, {}}, list);
  if (code != kExitDone) {
    throw Failure(static_cast<ExitCode>(code), {"", "the formats of models are not known",
                                                "name the models instead of folders"});
  }
  std::istringstream ends(list);
  std::vector<std::string> found;
  for (std::string end; std::getline(ends, end, ';');) {
    // "*.obj"
    found.push_back(end.substr(end.find('.')));
  }
  return found;
}

}  // namespace dxf2d
