#include "app/inspect/inspect_tasks.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "app/cli/failure.h"
#include "app/cli/printable.h"
#include "app/cli/translation.h"
#include "app/host/plugin_module.h"
#include "app/inspect/callback_slots.h"
#include "app/inspect/foreign_module.h"
#include "app/inspect/inspect_command.h"
#include "app/inspect/inspection_checks.h"
#include "app/inspect/module_exports.h"
#include "ktscene/kt_traverser.h"

namespace dxf2d {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kEntryName = "InitializeTraverser";

Json slotsAsJson(const KtTraverser& traverser) {
  Json list = Json::array();
  int number = 0;
  for (const CallbackSlot& slot : slotsOf(traverser.Callbacks())) {
    list.push_back({{"number", ++number}, {"name", slot.name}, {"filled", slot.filled}});
  }
  return list;
}

Json exportsAsJson(std::vector<std::string> names) {
  std::ranges::transform(names, names.begin(), writtenInCpp);
  std::ranges::sort(names);
  std::ranges::transform(names, names.begin(), printable);
  return names;
}

Json descriptionAsJson(const KtPluginDescription& description) {
  return {{"name", printable(description.name)},
          {"version", printable(description.version)},
          {"extension", description.extension},
          {"format", printable(description.format)}};
}

void tellFacts(const Json& facts) {
  tellParent(facts.dump(-1, ' ', false, Json::error_handler_t::replace));
}

// Loads the plug-in, unless it is one for another system. Returns an exit code.
int look(std::span<const std::string> words) {
  const std::string& plugin = words[0];
  const std::optional<ForeignModule> foreign = foreignModule(plugin);
  const std::vector<std::string> exports = foreign ? foreign->exports : exportedNames(plugin);
  if (!std::ranges::binary_search(exports, kEntryName)) {
    return fail(kExitPlugin, {plugin, tr("is not a plug-in: it has no %1", {kEntryName}),
                              tr("export that function with C linkage, or name another module")});
  }
  if (foreign) {
    tellFacts({{"system", foreign->system}, {"exports", exportsAsJson(exports)}});
    return kExitDone;
  }
  KtTraverser traverser;
  enterPlugin(plugin, traverser);
  tellFacts({{"description", descriptionAsJson(traverser.Description())},
             {"slots", slotsAsJson(traverser)},
             {"exports", exportsAsJson(exports)}});
  return kExitDone;
}

// Returns an exit code.
int check(std::span<const std::string> words) {
  const auto seeds = static_cast<std::uint32_t>(std::stoul(words[3]));
  const InspectionCheck check = inspectionChecks(seeds)[std::stoul(words[1])];
  const InspectedPlugin plugin(words[0], words[2]);
  std::string fault = check.run(plugin);
  if (fault.empty()) {
    fault = plugin.TracesLeft();
  }
  tellParent(noteForParent(fault));
  return fault.empty() ? kExitDone : kExitPlugin;
}

}  // namespace

WorkerTask lookTask() { return {kLookTask, &look}; }
WorkerTask checkTask() { return {kCheckTask, &check}; }

}  // namespace dxf2d
