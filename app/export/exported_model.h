// The model of an export task, whoever reads it.
#pragma once

#include <string>

#include "app/cli/translation.h"
#include "app/export/export_call.h"
#include "app/export/export_request.h"
#include "app/model/imported_model.h"
#include "app/model/model_error.h"

namespace dxf2d {

// Reads a model that was packed, under the name `path` of its archive.
inline Model readUnpackedModel(const std::string& unpacked, const std::string& path,
                               const ReadOptions& options) {
  try {
    Model model = readModel(unpacked, options);
    model.source.path = path;
    return model;
  } catch (const ModelError& error) {
    throw ModelError(error.Code(), {path, error.Text().problem, error.Text().remedy});
  }
}

// Reads the model at `path`, or what was made of it before. Throws ModelError and std::bad_alloc.
inline Model readExportedModel(const std::string& path, const ExportOptions& options,
                               const ImportedFile& imported) {
  const ReadOptions reading{options.plan.up, options.allowsOutside,
                            options.importSettings.contains("spaces")};
  if (imported.unpacked.empty() && !imported.IsThere()) {
    return readModel(path, reading);
  }
  Model model = imported.IsThere()
                    ? readImportedModel("/proc/self/fd/" + std::to_string(imported.file), path,
                                        imported.reader)
                    : readUnpackedModel(imported.unpacked, path, reading);
  if (!imported.unpacked.empty()) {
    const std::size_t name = imported.unpacked.rfind('/') + 1;
    model.source.notes.push_back(tr("unpacked %1", {imported.unpacked.substr(name)}));
  }
  return model;
}

}  // namespace dxf2d
