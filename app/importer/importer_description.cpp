#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "app/cli/failure.h"
#include "app/cli/file_path.h"
#include "app/cli/option_values.h"
#include "app/cli/translation.h"
#include "app/importer/importer.h"

namespace dxf2d {
namespace {

using Json = nlohmann::json;

constexpr std::string_view kValue = "{value}";

// Reads the members of a description, and throws UsageError for those that are not as they should
// be.
class DescriptionReader {
 public:
  explicit DescriptionReader(const std::string& path) : path_(path) {}

  Importer Read() const {
    const Json json = Document();
    Importer importer;
    importer.name = Text(json, "name");
    importer.version = Text(json, "version");
    importer.directory = std::filesystem::absolute(filePath(path_)).parent_path().string();
    importer.command = Texts(json, "command");
    if (importer.command.front().starts_with("./")) {
      importer.command.front().replace(0, 1, importer.directory);
    }
    if (!json.contains("formats") || !json["formats"].is_array() || json["formats"].empty()) {
      Fail(tr("'formats' is not a list of formats"));
    }
    for (const Json& format : json["formats"]) {
      importer.formats.push_back(Format(format));
    }
    ReadOptions(json, importer);
    return importer;
  }

 private:
  [[noreturn]] void Fail(const std::string& problem) const {
    throw UsageError({path_, tr("is not the description of an importer: %1", {problem}),
                      tr("fix the file, or remove it")});
  }

  Json Document() const {
    std::ifstream file{filePath(path_)};
    if (!file) {
      throw UsageError({path_, tr("cannot be opened"), tr("check the name and its permissions")});
    }
    Json json = Json::parse(file, nullptr, false);
    if (!json.is_object()) {
      Fail(tr("it is not a JSON object"));
    }
    return json;
  }

  std::string Text(const Json& json, const std::string& member) const {
    if (!json.is_object() || !json.contains(member) || !json[member].is_string() ||
        json[member].get_ref<const std::string&>().empty()) {
      Fail(tr("'%1' is not a text", {member}));
    }
    return json[member].get<std::string>();
  }

  std::vector<std::string> Texts(const Json& json, const std::string& member) const {
    const auto isText = [](const Json& item) { return item.is_string(); };
    if (!json.is_object() || !json.contains(member) || !json[member].is_array() ||
        json[member].empty() || !std::ranges::all_of(json[member], isText)) {
      Fail(tr("'%1' is not a list of texts", {member}));
    }
    return json[member].get<std::vector<std::string>>();
  }

  ImporterFormat Format(const Json& json) const {
    ImporterFormat format{Text(json, "name"), Texts(json, "extensions"), {}};
    for (std::string& extension : format.extensions) {
      if (!extension.starts_with('.')) {
        Fail(tr("'%1' in 'extensions' does not begin with a dot", {extension}));
      }
      extension = normalized(extension);
    }
    if (json.contains("magic")) {
      format.magic = Text(json, "magic");
    }
    return format;
  }

  void ReadOptions(const Json& json, Importer& importer) const {
    if (!json.contains("options")) {
      return;
    }
    if (!json["options"].is_object()) {
      Fail(tr("'options' is not an object"));
    }
    for (const auto& [name, words] : json["options"].items()) {
      importer.options[name] = Texts(json["options"], name);
    }
  }

  const std::string& path_;
};

}  // namespace

std::vector<std::string> commandFor(const Importer& importer, const ImportSettings& settings,
                                    const std::string& model, const std::string& result) {
  std::vector<std::string> command;
  for (const std::string& word : importer.command) {
    if (word != "{in}") {
      command.push_back(word == "{out}" ? result : word);
      continue;
    }
    for (const auto& [name, value] : settings) {
      const auto option = importer.options.find(name);
      if (option != importer.options.end()) {
        for (std::string more : option->second) {
          if (const std::size_t at = more.find(kValue); at != std::string::npos) {
            more.replace(at, kValue.size(), value);
          }
          command.push_back(std::move(more));
        }
      }
    }
    command.push_back(model);
  }
  return command;
}

Importer readImporter(const std::string& path) { return DescriptionReader(path).Read(); }

}  // namespace dxf2d
