#include "app/export/formats_command.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "app/cli/failure.h"
#include "app/cli/option_values.h"
#include "app/cli/translation.h"
#include "app/export/import_step.h"
#include "app/export/model_ends.h"
#include "app/importer/importer.h"
#include "app/importer/unpacked_model.h"

namespace dxf2d {
namespace {

// A line of the list.
struct ReadableFormat {
  std::string name;
  std::vector<std::string> ends;
  // The program or library that reads it.
  std::string reader;
  // What to do to read it; empty when it can be read.
  std::string remedy{};
};

struct FormatsOptions {
  std::vector<std::string> importers;
  bool isJson = false;
};

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) {
    text += (text.empty() ? "" : " ") + word;
  }
  return text;
}

std::vector<ReadableFormat> findFormats(const FormatsOptions& options) {
  std::vector<ReadableFormat> formats{{tr("Scene file"), {".json"}, "dxf2d"}};
  const std::vector<Importer> importers = findImporters(options.importers);
  for (const Importer& importer : importers) {
    for (const ImporterFormat& format : importer.formats) {
      formats.push_back({format.name, format.extensions, importer.name + " " + importer.version});
    }
  }
  for (const KnownFormat& known : kKnownFormats) {
    const std::string importer(known.importer);
    if (std::ranges::find(importers, importer, &Importer::name) == importers.end()) {
      ReadableFormat format{std::string(known.name), {}, importer, tr("install %1", {importer})};
      for (const std::string_view end : known.ends) {
        if (!end.empty()) {
          format.ends.emplace_back(end);
        }
      }
      formats.push_back(std::move(format));
    }
  }
  formats.push_back(
      {tr("Packed model"), UnpackedModel::Ends(), tr("dxf2d-unpack and the model's reader")});
  for (const ModelReader& reader : modelReaders({})) {
    formats.push_back({reader.name, reader.ends, "assimp"});
  }
  return formats;
}

void printAsText(const std::vector<ReadableFormat>& formats) {
  for (const ReadableFormat& format : formats) {
    const std::string ends = format.ends.empty() ? "" : " (" + joined(format.ends) + ")";
    printLine(stdout, format.name + ends + ": " +
                          (format.remedy.empty() ? tr("read by %1", {format.reader})
                                                 : tr("cannot be read; %1", {format.remedy})));
  }
}

void printAsJson(const std::vector<ReadableFormat>& formats) {
  using Json = nlohmann::ordered_json;
  Json list = Json::array();
  for (const ReadableFormat& format : formats) {
    list.push_back({{"name", inEnglish(format.name)},
                    {"extensions", format.ends},
                    {"reader", inEnglish(format.reader)},
                    {"readable", format.remedy.empty()}});
  }
  printLine(stdout, list.dump(-1, ' ', true, Json::error_handler_t::replace));
}

int printFormats(const FormatsOptions& options) {
  const std::vector<ReadableFormat> formats = findFormats(options);
  if (options.isJson) {
    printAsJson(formats);
  } else {
    printAsText(formats);
  }
  flushStandardOutput();
  return kExitDone;
}

}  // namespace

Command formatsCommand() {
  const auto options = std::make_shared<FormatsOptions>();
  Command command;
  command.name = "formats";
  command.summary = "Lists the formats of models.";
  command.help =
      "That is the ends of their files' names, which program reads them, and what to install for "
      "those that cannot be read.";
  command.examples = {{"dxf2d formats", "What this installation reads."}};
  command.options = {importerOption(options->importers),
                     {"--json", "", "List as JSON", "", [options](const std::string&) {
                        options->isJson = true;
                        return true;
                      }}};
  command.run = [options](const OptionWords&) {
    return reporting([&] { return printFormats(*options); });
  };
  return command;
}

}  // namespace dxf2d
