#include "app/cli/failure.h"
#include "app/cli/translation.h"
#include "app/importer/program_run.h"

namespace dxf2d {
namespace {

// Of the words of the call.
constexpr std::size_t kModel = 3;

// Such programs read what nobody has looked at, and there is nothing to confine them by.
int refuse(std::span<const std::string> words) {
  return fail(kExitInput,
              {words[kModel],
               tr("cannot be read: it needs an importer or is packed, and neither importers nor "
                  "dxf2d-unpack are there on Windows"),
               tr("unpack it, or save it in another format, such as glTF, OBJ or STL")});
}

}  // namespace

WorkerTask importTask() { return {kImportTask, refuse}; }

}  // namespace dxf2d
