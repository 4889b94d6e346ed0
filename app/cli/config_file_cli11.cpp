// The reader of TOML is CLI11's, which takes long to compile.
#include <CLI/CLI.hpp>
#include <sstream>

#include "app/cli/config_file.h"
#include "app/cli/failure.h"
#include "app/cli/translation.h"

namespace dxf2d {

std::vector<Setting> settingsOf(const std::string& path, const std::string& text) {
  std::istringstream stream(text);
  std::vector<Setting> settings;
  try {
    for (const CLI::ConfigItem& item : CLI::ConfigTOML().from_config(stream)) {
      // Where sections begin and end.
      if (item.name == "++" || item.name == "--") {
        continue;
      }
      std::string section;
      for (const std::string& parent : item.parents) {
        section += (section.empty() ? "" : ".") + parent;
      }
      settings.push_back({section, item.name, item.inputs});
    }
  } catch (const std::exception&) {
    throw UsageError(
        {path, tr("is not a file in TOML"), tr("write lines such as hidden = \"remove\"")});
  }
  return settings;
}

}  // namespace dxf2d
