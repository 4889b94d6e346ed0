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

std::vector<Option> importSettingOptions(ImportSettings& settings) {
  const auto takeTolerance = [&settings](const std::string& text) {
    const std::optional<double> length = parseNumber(text);
    settings["tolerance"] = normalized(text);
    return length && *length > 0.0;
  };
  const auto takeSpaces = [&settings](const std::string&) {
    settings["spaces"] = "";
    return true;
  };
  return {{"--tolerance", "LENGTH",
           "How far the triangles of curved faces may be from them, in the model's units; for STEP "
           "and IGES (default: 1/2000 of the model's size)",
           "a number above 0", takeTolerance, AppliesTo::kModelsOnly},
          {"--spaces", "", "Also draw the spaces of IFC models, such as rooms", "", takeSpaces,
           AppliesTo::kModelsOnly}};
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
  settings_ = options.importSettings;
  return true;
}

int ImportStep::Run(InputTask& work, std::uint64_t& peakMemory) {
  imported_.emplace(*importer_);
  return imported_->Run(*importer_, settings_, model_, work, allowsOutside_, peakMemory);
}

ImportedFile ImportStep::File() const {
  if (!imported_) {
    return {};
  }
  ImportedFile file{imported_->File(), imported_->Reader()};
  for (const auto& [name, value] : settings_) {
    if (!importer_->options.contains(name)) {
      file.withoutEffect += (file.withoutEffect.empty() ? "--" : ", --") + name;
    }
  }
  return file;
}

}  // namespace dxf2d
