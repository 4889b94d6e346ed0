// The model of an export task, whoever reads it.
#pragma once

#include <string>

#include "app/export/export_call.h"
#include "app/export/export_request.h"
#include "app/model/imported_model.h"

namespace dxf2d {

// Reads the model at `path`, or what an importer has made of it. Throws ModelError and
// std::bad_alloc.
inline Model readExportedModel(const std::string& path, const ExportOptions& options,
                               const ImportedFile& imported) {
  if (!imported.IsThere()) {
    return readModel(
        path, {options.plan.up, options.allowsOutside, options.importSettings.contains("spaces")});
  }
  return readImportedModel("/proc/self/fd/" + std::to_string(imported.file), path, imported.reader);
}

}  // namespace dxf2d
