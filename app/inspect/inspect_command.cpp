#include "app/inspect/inspect_command.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>
#include <vector>

#include "app/deferred_end.h"
#include "app/failure.h"
#include "app/guarded_run.h"
#include "app/inspect/callback_slots.h"
#include "app/inspect/inspection_scenes.h"
#include "app/inspect/module_exports.h"
#include "app/output_file.h"
#include "app/plugin_module.h"
#include "app/temporary_directory.h"
#include "ktscene/kt_traverser.h"
#include "ktscene/zu_message.h"
#include "platform/path_text.h"

namespace {

constexpr const char* kEntryName = "InitializeTraverser";

// A walk over one of the scenes takes milliseconds.
constexpr std::chrono::seconds kWalkTime{60};

std::string named(const InspectOptions& options) { return "the plug-in '" + options.plugin + "'"; }

// Where the drawings of the walks go, for as long as this lives.
class ScratchDirectory {
 public:
  ScratchDirectory() : path_((temporaryDirectory() / "dxf2d-inspect-XXXXXX").string()) {
    if (mkdtemp(path_.data()) == nullptr) {
      throw OutputError(kExitOutputNotMade,
                        "cannot make a directory in '" + temporaryDirectory().string() +
                            "': " + std::strerror(errno) + "; mend that or name another in TMPDIR");
    }
  }
  ~ScratchDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchDirectory(const ScratchDirectory&) = delete;
  ScratchDirectory& operator=(const ScratchDirectory&) = delete;

  std::string File() const { return path_ + "/drawing.dxf"; }

 private:
  // Longer than the directory.
  DeferredEnd deferred_;
  std::string path_;
};

// What is printed is all that there is of an inspection.
void flushReport() {
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return;
  throw Failure(kExitWriteFailed,
                "cannot write to standard output; mend that or send it elsewhere");
}

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
  for (const std::string& name : names) std::printf("  %s\n", name.c_str());
}

// Loads the plug-in. Returns an exit code.
int look(const InspectOptions& options) {
  const std::vector<std::string> exports = exportedNames(options.plugin);
  if (!std::ranges::binary_search(exports, kEntryName)) {
    return fail(kExitPlugin, "'" + options.plugin +
                                 "' is no plug-in: it is a module that lacks the entry " +
                                 kEntryName + ", which has to be exported with C linkage");
  }
  KtTraverser traverser;
  enterPlugin(options.plugin, traverser);
  printSlots(traverser);
  printExports(exports);
  flushReport();
  return kExitDone;
}

// ---- Walks

// What the plug-in last had to say in an error box; the callbacks carry no context.
std::string& boxText() {
  static std::string text;
  return text;
}

void keepBoxText(void*, const char16_t*, const char16_t* text, int) {
  boxText() = text == nullptr ? "" : PathToBytes(text);
}

void printResult(const InspectionScene& kind, const std::string& result) {
  std::printf("  %-22s %s\n", kind.name, result.c_str());
  flushReport();
}

// Walks the plug-in over one kind of content. Empty when that passes, else what is wrong.
std::string faultInWalk(const InspectOptions& options, const InspectionScene& kind,
                        const std::string& drawing) {
  try {
    KtTraverser traverser;
    enterPlugin(options.plugin, traverser);
    ZuSetErrorBoxHandler(&keepBoxText);
    KtScene scene = kind.make();
    if (traverser.Walk(scene, PathFromBytes(drawing))) return {};
    return "fails: it answers false to opening or closing the file" +
           (boxText().empty() ? "" : " (" + boxText() + ")");
  } catch (const std::exception& error) {
    return std::string("fails: it throws \"") + error.what() + '"';
  } catch (...) {
    return "fails: it throws what is no std::exception";
  }
}

[[noreturn]] void failToStart(const InspectOptions& options, int error) {
  throw Failure(kExitLimit, "no process can be started for " + named(options) + " (" +
                                strerror(error) + "); end other programs");
}

GuardedEnd tryWalk(const InspectOptions& options, const InspectionScene& kind,
                   const std::string& drawing) {
  const auto walk = [&] {
    const std::string fault = faultInWalk(options, kind, drawing);
    printResult(kind, fault.empty() ? "passes" : fault);
    return fault.empty() ? kExitDone : kExitPlugin;
  };
  return runGuarded([&] { return reporting(walk); }, {0, kWalkTime});
}

// What the walk itself could not print.
void printEnd(const InspectOptions& options, const InspectionScene& kind, const GuardedEnd& end) {
  switch (end.how) {
    case GuardedEnd::How::kExited:
      return printResult(kind, "ends its host (exit code " + std::to_string(end.number) + ")");
    case GuardedEnd::How::kSignal:
      return printResult(kind, std::string("brings its host down (") + strsignal(end.number) + ")");
    case GuardedEnd::How::kOutOfTime:
      return printResult(
          kind, "does not come to an end within " + std::to_string(kWalkTime.count()) + " seconds");
    case GuardedEnd::How::kNotStarted:
      failToStart(options, end.number);
    case GuardedEnd::How::kReturned:
    case GuardedEnd::How::kAskedToEnd:
      return;
  }
}

int tryWalks(const InspectOptions& options) {
  const ScratchDirectory scratch;
  std::printf("Walks:\n");
  flushReport();
  std::size_t failed = 0;
  for (const InspectionScene& kind : inspectionScenes()) {
    const GuardedEnd end = tryWalk(options, kind, scratch.File());
    // The signal takes effect when the directory is gone.
    if (end.how == GuardedEnd::How::kAskedToEnd) return kExitInternal;
    if (end.Returned(kExitWriteFailed)) return kExitWriteFailed;
    printEnd(options, kind, end);
    if (!end.Returned(kExitDone)) ++failed;
  }
  if (failed == 0) return kExitDone;
  return fail(kExitPlugin, named(options) + " does not stand " + std::to_string(failed) + " of " +
                               std::to_string(inspectionScenes().size()) +
                               " walks; see the lines above");
}

}  // namespace

int runInspect(const InspectOptions& options) {
  return reporting([&] {
    const GuardedEnd end = runGuarded([&] { return reporting([&] { return look(options); }); });
    if (end.how == GuardedEnd::How::kSignal) {
      return fail(kExitPlugin, named(options) + " brings its host down while it is loaded (" +
                                   strsignal(end.number) + ")");
    }
    if (end.how == GuardedEnd::How::kExited) {
      return fail(kExitPlugin, named(options) + " ends its host while it is loaded (exit code " +
                                   std::to_string(end.number) + ")");
    }
    if (end.how == GuardedEnd::How::kNotStarted) failToStart(options, end.number);
    return end.Returned(kExitDone) ? tryWalks(options) : end.number;
  });
}
