#include "app/inspect/inspect_tasks.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "app/cli/failure.h"
#include "app/cli/printable.h"
#include "app/host/plugin_module.h"
#include "app/inspect/callback_slots.h"
#include "app/inspect/inspect_command.h"
#include "app/inspect/inspection_scenes.h"
#include "app/inspect/module_exports.h"
#include "app/process/confinement.h"
#include "ktscene/kt_traverser.h"
#include "platform/path_text.h"

namespace dxf2d {

namespace {

constexpr const char* kEntryName = "InitializeTraverser";

// ---- Slots and exports

void printSlots(const KtTraverser& traverser) {
  std::printf("Slots:\n");
  int number = 0;
  for (const CallbackSlot& slot : slotsOf(traverser.Callbacks())) {
    std::printf("  %2d  %-28s %s\n", ++number, slot.name, slot.filled ? "filled" : "null");
  }
}

void printExports(std::vector<std::string> names) {
  std::ranges::transform(names, names.begin(), writtenInCpp);
  std::ranges::sort(names);
  std::printf("Exports (%zu):\n", names.size());
  for (const std::string& name : names) {
    std::printf("  %s\n", printable(name).c_str());
  }
}

// Loads the plug-in. Returns an exit code.
int look(std::span<const std::string> words) {
  const std::string& plugin = words[0];
  const std::vector<std::string> exports = exportedNames(plugin);
  if (!std::ranges::binary_search(exports, kEntryName)) {
    return fail(kExitPlugin, {plugin, std::string("is not a plug-in: it has no ") + kEntryName,
                              "export that function with C linkage, or name another module"});
  }
  KtTraverser traverser;
  enterPlugin(plugin, traverser);
  printSlots(traverser);
  printExports(exports);
  flushStandardOutput();
  return kExitDone;
}

// ---- Walks

// Walks the plug-in over one kind of content. Empty when that passes, else what is wrong.
std::string faultInWalk(const std::string& plugin, const InspectionScene& kind,
                        const std::string& directory) {
  try {
    KtTraverser traverser;
    enterPlugin(plugin, traverser);
    captureErrorBoxes();
    confine({systemFiles(), {}, {directory}});
    KtScene scene = kind.make();
    if (traverser.Walk(scene, pathFromBytes(directory + "/drawing.dxf"))) {
      return {};
    }
    const std::string box = lastErrorBox();
    return "fails: returns false from opening or closing the file" +
           (box.empty() ? "" : " (" + box + ")");
  } catch (const std::exception& error) {
    return std::string("fails: throws \"") + error.what() + '"';
  } catch (...) {
    return "fails: throws an object that is not a std::exception";
  }
}

// Walks the plug-in over one kind of content and prints the result. Returns an exit code.
int walk(std::span<const std::string> words) {
  const InspectionScene& kind = inspectionScenes()[std::stoul(words[1])];
  const std::string fault = faultInWalk(words[0], kind, words[2]);
  std::printf("  %-22s %s\n", kind.name, fault.empty() ? "passes" : printable(fault).c_str());
  flushStandardOutput();
  return fault.empty() ? kExitDone : kExitPlugin;
}

}  // namespace

WorkerTask lookTask() { return {kLookTask, &look}; }
WorkerTask walkTask() { return {kWalkTask, &walk}; }

}  // namespace dxf2d
