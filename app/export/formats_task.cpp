#include <assimp/Importer.hpp>
#include <string>

#include "app/export/export_call.h"
#include "app/export/worker_tasks.h"

namespace dxf2d {

WorkerTask formatsTask() {
  return {kFormatsTask, [](std::span<const std::string>) {
            std::string ends;
            const Assimp::Importer importer;
            importer.GetExtensionList(ends);
            tellParent(ends);
            return static_cast<int>(kExitDone);
          }};
}

}  // namespace dxf2d
