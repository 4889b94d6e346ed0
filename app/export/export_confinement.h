// The rules of the process that reads a model.
#pragma once

#include <string>
#include <vector>

#include "app/export/export_call.h"
#include "app/export/export_request.h"
#include "app/output/output_failures.h"
#include "app/process/confinement.h"
#include "app/process/own_descriptor.h"

namespace dxf2d {

// A model's reader may read the model's directory, or everything with options.allowsOutside, and
// that of a scene the scene; both may write the open files `writable`.
inline Confinement rulesFor(const std::string& model, const ExportOptions& options,
                            const std::vector<int>& writable, const ImportedFile& imported) {
  Confinement rules{systemFiles(), writable};
  if (imported.IsThere()) {
    // Nothing of the model itself is read.
    rules.reopened.push_back(imported.file);
    return rules;
  }
  if (!imported.unpacked.empty()) {
    // Alone in its directory with what was packed with it.
    rules.readable.push_back(directoryOf(imported.unpacked));
    return rules;
  }
  rules.readable.push_back(model);
  if (!isSceneFile(model) && options.allowsOutside) {
    rules.readable.emplace_back("/");
  } else if (!isSceneFile(model) && !ownDescriptor(model)) {
    // Not /dev, for a model on standard input.
    rules.readable.push_back(directoryOf(model));
  }
  return rules;
}

}  // namespace dxf2d
