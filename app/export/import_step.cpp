#include "app/export/import_step.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include "app/cli/failure.h"
#include "app/cli/option_values.h"
#include "app/export/model_ends.h"

namespace dxf2d {
namespace {

// Null when the readers of the worker are to read the model.
const Importer* importerOf(const std::vector<Importer>& importers, const std::string& model,
                           const ExportOptions& options) {
  if (const Importer* const named = importerByName(importers, model)) {
    return named;
  }
  const Importer* const importer = importerByMagic(importers, model);
  if (importer == nullptr) {
    return nullptr;
  }
  // Formats share their first bytes: IFC files begin like those of STEP.
  const std::vector<std::string> known = readerEnds(options);
  const std::string end = normalized(std::filesystem::path(model).extension().string());
  return std::ranges::find(known, end) == known.end() ? importer : nullptr;
}

// Throws Failure for a format of an importer that is not installed: what else would
// read such files only says that it cannot.
void checkInstalled(const std::string& model) {
  const std::string end = normalized(std::filesystem::path(model).extension().string());
  for (const KnownFormat& format : kKnownFormats) {
    if (format.hasNoOther && !end.empty() &&
        std::ranges::find(format.ends, end) != format.ends.end()) {
      throw Failure(kExitInput, {model,
                                 "cannot be read: the importer of " + std::string(format.name) +
                                     " is not installed",
                                 "install " + std::string(format.importer)});
    }
  }
}

}  // namespace

Option importerOption(std::vector<std::string>& importers) {
  Option option{"--importer", "FILE", "Use the importer that this file describes as well",
                "a file name", [&importers](const std::string& text) {
                  importers.push_back(text);
                  return !text.empty();
                }};
  option.isRepeatable = true;
  return option;
}

bool ImportStep::Find(const std::string& model, const ExportOptions& options) {
  if (isSceneFile(model)) {
    return false;
  }
  const std::vector<Importer> importers = findImporters(options.importers);
  const Importer* const importer = importerOf(importers, model, options);
  if (importer == nullptr) {
    checkInstalled(model);
    return false;
  }
  model_ = model;
  allowsOutside_ = options.allowsOutside;
  importer_ = *importer;
  return true;
}

int ImportStep::Run(InputTask& work, std::uint64_t& peakMemory) {
  imported_.emplace(*importer_);
  return imported_->Run(*importer_, model_, work, allowsOutside_, peakMemory);
}

ImportedFile ImportStep::File() const {
  return imported_ ? ImportedFile{imported_->File(), imported_->Reader()} : ImportedFile{};
}

}  // namespace dxf2d
