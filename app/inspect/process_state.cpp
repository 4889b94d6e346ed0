#include "app/inspect/process_state.h"

#include <algorithm>
#include <iterator>

#include "app/cli/translation.h"

namespace dxf2d {

namespace {

std::vector<std::string> missingFrom(const std::vector<std::string>& some,
                                     const std::vector<std::string>& others) {
  std::vector<std::string> missing;
  std::ranges::set_difference(some, others, std::back_inserter(missing));
  return missing;
}

}  // namespace

std::string ProcessState::SettingChangedIn(const ProcessState& later) const {
  if (later.locale_ != locale_) {
    return tr("changes the locale of the process to %1", {later.locale_});
  }
  if (later.threadLocale_ != threadLocale_) {
    return tr("leaves another locale on the thread");
  }
  for (const std::string& entry : missingFrom(later.environment_, environment_)) {
    return tr("changes the environment (%1)", {entry.substr(0, entry.find('='))});
  }
  for (const std::string& entry : missingFrom(environment_, later.environment_)) {
    return tr("changes the environment (%1)", {entry.substr(0, entry.find('='))});
  }
  return later.directory_ != directory_ ? tr("changes the current directory") : "";
}

}  // namespace dxf2d
