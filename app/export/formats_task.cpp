#include <assimp/importerdesc.h>

#include <assimp/Importer.hpp>
#include <sstream>
#include <string>

#include "app/export/export_call.h"
#include "app/export/worker_tasks.h"

namespace dxf2d {

WorkerTask formatsTask() {
  return {kFormatsTask, [](std::span<const std::string>) {
            std::string lines;
            const Assimp::Importer importer;
            for (std::size_t i = 0; i < importer.GetImporterCount(); ++i) {
              const aiImporterDesc& reader = *importer.GetImporterInfo(i);
              lines += reader.mName;
              char separator = '\t';
              std::istringstream ends(reader.mFileExtensions);
              for (std::string end; ends >> end; separator = ' ') {
                lines += separator + ("." + end);
              }
              lines += '\n';
            }
            tellParent(lines);
            return static_cast<int>(kExitDone);
          }};
}

}  // namespace dxf2d
