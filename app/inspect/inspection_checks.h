// What a plug-in is tested with.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "app/inspect/inspected_plugin.h"

namespace dxf2d {

// One test, for a process of its own.
struct InspectionCheck {
  // In English, for programs.
  std::string name;
  // In the user's language.
  std::string title;
  // Returns what is wrong, in the user's language, as "returns false …"; empty when the plug-in
  // passes. What it leaves behind in the process is found by the caller.
  std::function<std::string(const InspectedPlugin&)> run;
};

// A walk over each kind of content, tests of conduct, and `seeds` hosts that call at random.
std::vector<InspectionCheck> inspectionChecks(std::uint32_t seeds);

}  // namespace dxf2d
