#include "app/export/import_step.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include "app/cli/failure.h"
#include "app/cli/file_path.h"
#include "app/cli/option_values.h"
#include "app/cli/translation.h"
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
  const std::string end = normalized(filePath(model).extension().string());
  return std::ranges::find(known, end) == known.end() ? importer : nullptr;
}

// Throws Failure, for the file at `path` of `model`, when only an importer that is not installed
// reads its format: what else would read such files only says that it cannot.
void checkInstalled(const std::string& path, const std::string& model) {
  const std::string end = normalized(filePath(path).extension().string());
  for (const KnownFormat& format : kKnownFormats) {
    if (format.hasNoOther && !end.empty() &&
        std::ranges::find(format.ends, end) != format.ends.end()) {
      throw Failure(kExitInput, {model,
                                 tr("cannot be read: the importer of %1 is not installed",
                                    {std::string(format.name)}),
                                 tr("install %1", {std::string(format.importer)})});
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

bool ImportStep::IsNeeded(const std::string& model, const ExportOptions& options) {
  if (isSceneFile(model)) {
    return false;
  }
  model_ = model;
  options_ = &options;
  const bool hasImporter = FindImporter(model);
  return hasImporter || UnpackedModel::IsPacked(model);
}

bool ImportStep::FindImporter(const std::string& path) {
  const std::vector<Importer> importers = findImporters(options_->importers);
  const Importer* const importer = importerOf(importers, path, *options_);
  if (importer == nullptr) {
    checkInstalled(path, model_);
    return false;
  }
  importer_ = *importer;
  return true;
}

int ImportStep::Unpack(InputTask& work, std::uint64_t& peakMemory) {
  std::vector<std::string> ends = readerEnds(*options_);
  const std::vector<std::string> more = importerEnds(*options_);
  ends.insert(ends.end(), more.begin(), more.end());
  for (const KnownFormat& format : kKnownFormats) {
    ends.insert(ends.end(), format.ends.begin(), format.ends.end());
  }
  std::erase(ends, "");
  unpacked_.emplace();
  return unpacked_->Run(model_, ends, work, peakMemory);
}

int ImportStep::Run(InputTask& work, std::uint64_t& peakMemory) {
  if (!importer_) {
    if (const int code = Unpack(work, peakMemory); code != kExitDone) {
      return code;
    }
    work.UseUnpacked(unpacked_->Path());
    if (!FindImporter(unpacked_->Path())) {
      return kExitDone;
    }
  }
  imported_.emplace(*importer_);
  return imported_->Run(*importer_, options_->importSettings,
                        {unpacked_ ? unpacked_->Path() : model_, model_}, work,
                        options_->allowsOutside, peakMemory);
}

ImportedFile ImportStep::File() const {
  ImportedFile file;
  if (unpacked_) {
    file.unpacked = unpacked_->Path();
  }
  if (!imported_) {
    return file;
  }
  file.file = imported_->File();
  file.reader = imported_->Reader();
  for (const auto& [name, value] : options_->importSettings) {
    if (!importer_->options.contains(name)) {
      file.withoutEffect += (file.withoutEffect.empty() ? "--" : ", --") + name;
    }
  }
  return file;
}

}  // namespace dxf2d
