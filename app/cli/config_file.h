// The configuration file: defaults for options of commands.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/cli/command.h"

namespace dxf2d {

// One setting of a configuration file.
struct Setting {
  // The section that it stands in, such as "export"; empty for none.
  std::string section;
  std::string name;
  std::vector<std::string> values;
};

// The settings of a file in TOML. Throws UsageError where it is not one.
std::vector<Setting> settingsOf(const std::string& path, const std::string& text);

// The user's own file, which need not be there: dxf2d.toml in $XDG_CONFIG_HOME or in ~/.config.
// None where neither is an absolute path: a file in the current directory may be anybody's.
std::optional<std::string> userConfigFile();

// --config, --no-config and --show-config.
std::vector<Option> configOptions(ConfigRequest& request);

// Where the defaults are, and what they are.
struct ConfigDefaults {
  // Empty for no file.
  std::string file;
  OptionWords words;
};

// The defaults that a file has for options of `command`, each checked by its `take`. `request` says
// which file. Throws UsageError for a file that cannot be read or says what it must not.
ConfigDefaults readDefaults(const Command& command, const ConfigRequest& request);

// As a file that has the same effect.
std::string textOf(const Command& command, const ConfigDefaults& defaults);

}  // namespace dxf2d
