#include "app/cli/config_file.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

#include "app/cli/failure.h"
#include "app/cli/file_path.h"
#include "app/cli/suggestion.h"
#include "app/cli/translation.h"

namespace dxf2d {
namespace {

namespace fs = std::filesystem;

// An absolute path from the environment.
std::optional<fs::path> directoryFrom(const char* variable) {
  const char* const value = std::getenv(variable);
  if (value == nullptr || *value != '/') {
    return std::nullopt;
  }
  return filePath(value);
}

std::string contentOf(const std::string& path) {
  std::error_code ignored;
  std::ifstream file(filePath(path), std::ios::binary);
  if (!file || fs::is_directory(filePath(path), ignored)) {
    throw UsageError({path, tr("the configuration file cannot be read"),
                      tr("name another with --config, or use --no-config")});
  }
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::string> configurableNames(const Command& command) {
  std::vector<std::string> names;
  for (const Option& option : command.options) {
    if (option.isConfigurable) {
      names.push_back(option.LongName().substr(2));
    }
  }
  return names;
}

const Option& optionOf(const Command& command, const Setting& setting, const std::string& path) {
  if (setting.section != command.name) {
    const std::string problem =
        setting.section.empty()
            ? tr("unknown setting '%1'", {setting.name})
            : tr("unknown setting '%1' in the section '%2'", {setting.name, setting.section});
    throw UsageError({path, problem, tr("put defaults of %1 below [%1]", {command.name})});
  }
  const auto option = std::ranges::find(command.options, "--" + setting.name, &Option::LongName);
  if (option == command.options.end()) {
    throw UsageError({path, tr("unknown setting '%1'", {setting.name}),
                      didYouMean(setting.name, configurableNames(command),
                                 tr("see %1", {"dxf2d help " + command.name}))});
  }
  if (!option->isConfigurable) {
    throw UsageError({path, tr("'%1' cannot be set in a configuration file", {setting.name}),
                      tr("give --%1 on the command line", {setting.name})});
  }
  return *option;
}

void addFlag(const Setting& setting, const std::string& path, OptionWords& words) {
  const std::string value = setting.values.size() == 1 ? setting.values.front() : "";
  if (value != "true" && value != "false") {
    throw UsageError(
        {path, tr("invalid %1 '%2': expected %3", {setting.name, value, tr("true or false")}),
         tr("correct the file")});
  }
  if (value == "true") {
    words.insert(words.end(), {"--" + setting.name, ""});
  }
}

void addValues(const Option& option, const Setting& setting, const std::string& path,
               OptionWords& words) {
  if (setting.values.size() != 1 && !option.isRepeatable) {
    throw UsageError({path, tr("%1 has several values", {setting.name}), tr("give it one")});
  }
  for (const std::string& value : setting.values) {
    words.insert(words.end(), {"--" + setting.name, value});
  }
}

}  // namespace

std::optional<std::string> userConfigFile() {
  if (const auto directory = directoryFrom("XDG_CONFIG_HOME")) {
    return (*directory / "dxf2d.toml").string();
  }
  if (const auto home = directoryFrom("HOME")) {
    return (*home / ".config" / "dxf2d.toml").string();
  }
  return std::nullopt;
}

std::vector<Option> configOptions(ConfigRequest& request) {
  Option show{"--show-config", "", "Print the defaults that the configuration file sets", "",
              [&request](const std::string&) { return request.isShown = true; }};
  show.onlyWith = {"--config", "--no-config"};
  show.needsNoInputs = true;
  return {{"--config", "FILE",
           "Take defaults for models from this file instead of ~/.config/dxf2d.toml", "a file name",
           [&request](const std::string& text) {
             request.file = text;
             return !text.empty();
           }},
          {"--no-config", "", "Take no defaults from a file", "",
           [&request](const std::string&) { return request.isIgnored = true; }},
          show};
}

ConfigDefaults readDefaults(const Command& command, const ConfigRequest& request) {
  ConfigDefaults defaults{request.file, {}};
  if (request.isIgnored && !request.file.empty()) {
    throw UsageError({"", tr("%1 and %2 exclude one another", {"--config", "--no-config"}),
                      tr("give one of them")});
  }
  if (request.file.empty()) {
    const std::optional<std::string> own = userConfigFile();
    std::error_code error;
    if (request.isIgnored || !own || !fs::exists(*own, error)) {
      return defaults;
    }
    defaults.file = *own;
  }
  for (const Setting& setting : settingsOf(defaults.file, contentOf(defaults.file))) {
    const Option& option = optionOf(command, setting, defaults.file);
    if (std::ranges::find(defaults.words, option.LongName()) != defaults.words.end()) {
      throw UsageError(
          {defaults.file, tr("%1 is set more than once", {setting.name}), tr("set it once")});
    }
    if (option.value.empty()) {
      addFlag(setting, defaults.file, defaults.words);
    } else {
      addValues(option, setting, defaults.file, defaults.words);
    }
  }
  return defaults;
}

std::string textOf(const Command& command, const ConfigDefaults& defaults) {
  if (defaults.file.empty()) {
    return tr("# no configuration file") + "\n";
  }
  std::string text = "# " + defaults.file + "\n[" + command.name + "]\n";
  for (std::size_t i = 0; i < defaults.words.size();) {
    const std::string name = defaults.words[i];
    const auto option = std::ranges::find(command.options, name, &Option::LongName);
    std::vector<std::string> values;
    for (; i < defaults.words.size() && defaults.words[i] == name; i += 2) {
      values.push_back(defaults.words[i + 1]);
    }
    std::string written;
    for (const std::string& value : values) {
      written += (written.empty() ? "\"" : ", \"") + value + "\"";
    }
    const bool isFlag = option != command.options.end() && option->value.empty();
    text += name.substr(2) + " = " +
            (isFlag               ? "true"
             : values.size() == 1 ? written
                                  : "[" + written + "]") +
            "\n";
  }
  return text;
}

}  // namespace dxf2d
