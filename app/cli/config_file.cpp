#include "app/cli/config_file.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

#include "app/cli/failure.h"
#include "app/cli/suggestion.h"

namespace dxf2d {
namespace {

namespace fs = std::filesystem;

constexpr const char* kHint = "see dxf2d help export";

// An absolute path from the environment.
std::optional<fs::path> directoryFrom(const char* variable) {
  const char* const value = std::getenv(variable);
  if (value == nullptr || *value != '/') {
    return std::nullopt;
  }
  return fs::path(value);
}

std::string contentOf(const std::string& path) {
  std::error_code ignored;
  std::ifstream file(path, std::ios::binary);
  if (!file || fs::is_directory(path, ignored)) {
    throw UsageError({path, "the configuration file cannot be read",
                      "name another with --config, or use --no-config"});
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
    const std::string place =
        setting.section.empty() ? "" : " in the section '" + setting.section + "'";
    throw UsageError({path, "unknown setting '" + setting.name + "'" + place,
                      "put defaults of " + command.name + " below [" + command.name + "]"});
  }
  const auto option = std::ranges::find(command.options, "--" + setting.name, &Option::LongName);
  if (option == command.options.end()) {
    throw UsageError({path, "unknown setting '" + setting.name + "'",
                      didYouMean(setting.name, configurableNames(command), kHint)});
  }
  if (!option->isConfigurable) {
    throw UsageError({path, "'" + setting.name + "' cannot be set in a configuration file",
                      "give --" + setting.name + " on the command line"});
  }
  return *option;
}

void addFlag(const Setting& setting, const std::string& path, OptionWords& words) {
  const std::string value = setting.values.size() == 1 ? setting.values.front() : "";
  if (value != "true" && value != "false") {
    throw UsageError({path, "invalid " + setting.name + " '" + value + "': expected true or false",
                      "correct the file"});
  }
  if (value == "true") {
    words.insert(words.end(), {"--" + setting.name, ""});
  }
}

void addValues(const Option& option, const Setting& setting, const std::string& path,
               OptionWords& words) {
  if (setting.values.size() != 1 && !option.isRepeatable) {
    throw UsageError({path, setting.name + " has several values", "give it one"});
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
    throw UsageError({"", "--config and --no-config exclude one another", "give one of them"});
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
      throw UsageError({defaults.file, setting.name + " is set more than once", "set it once"});
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
    return "# no configuration file\n";
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
