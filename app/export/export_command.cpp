#include "app/export/export_command.h"

#include <assimp/Importer.hpp>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <new>

#include "app/export/drawing_counts.h"
#include "app/export/drawing_destination.h"
#include "app/export/export_summary.h"
#include "app/guarded_run.h"
#include "app/mapped_file.h"
#include "app/model/model_error.h"
#include "app/model/model_reader.h"
#include "app/plugin_module.h"
#include "app/preview/text_decoding.h"
#include "ktscene/kt_scene_reader.h"
#include "ktscene/kt_traverser.h"
#include "ktscene/zu_message.h"
#include "platform/cfile_exception.h"
#include "platform/code_page.h"
#include "platform/path_text.h"

namespace {

using Clock = std::chrono::steady_clock;

int fail(int code, const std::string& sentence) {
  std::fprintf(stderr, "dxf2d: %s\n", sentence.c_str());
  return code;
}

// What the plug-in last had to say in an error box; the callbacks carry no context.
std::u16string& boxText() {
  static std::u16string text;
  return text;
}

void keepBoxText(void*, const char16_t*, const char16_t* text, int) {
  boxText() = text == nullptr ? u"" : text;
}

// Runs `step`, which returns an exit code, and makes of what it throws a sentence and a code.
template <typename Step>
int reporting(const ExportOptions& options, Step step) {
  try {
    return step();
  } catch (const ModelError& error) {
    return fail(error.Code(), error.what());
  } catch (const KtSceneError& error) {
    return fail(kExitInput, error.what());
  } catch (const OutputError& error) {
    return fail(error.Code(), error.what());
  } catch (const PluginError& error) {
    return fail(kExitPlugin, error.what());
  } catch (const std::bad_alloc&) {
    return fail(kExitLimit, "'" + options.model + "' needs more memory than there is");
  } catch (const std::exception& error) {
    return fail(kExitInternal, std::string(error.what()) + "; please report this");
  }
}

// Has the plug-in write the drawing of `scene` into the destination's work file. Returns an exit
// code.
int walk(const ExportOptions& options, const KtTraverser& traverser, KtScene& scene,
         const DrawingDestination& destination) {
  boxText().clear();
  try {
    if (traverser.Walk(scene, PathFromBytes(destination.WorkPath()))) return kExitDone;
  } catch (const CFileException& error) {
    return fail(kExitWriteFailed, "cannot write '" + options.drawing +
                                      "': " + destination.AsUserNamesIt(error.what()));
  }
  const std::string reason = destination.AsUserNamesIt(PathToBytes(boxText()));
  return fail(kExitOutputNotMade, "cannot create '" + options.drawing + "': " +
                                      (reason.empty() ? "the plug-in gives no reason" : reason));
}

void say(const ExportOptions& options, const std::string& line) {
  std::FILE* stream = options.drawing == "-" ? stderr : stdout;
  std::fprintf(stream, "%s\n", line.c_str());
  std::fflush(stream);
}

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

int exportScene(const ExportOptions& options, const KtTraverser& traverser,
                DrawingDestination& destination) {
  KtScene scene = ReadSceneFile(options.model);
  const int code = walk(options, traverser, scene, destination);
  // An empty drawing is the right one of an empty scene.
  if (code == kExitDone) destination.Deliver();
  return code;
}

int exportModel(const ExportOptions& options, const KtTraverser& traverser,
                DrawingDestination& destination, Clock::time_point start) {
  Model model = readModel(options.model, options.plan.up);
  PlanScene plan = makePlanScene(*model.scene, model.importerName, options.model, options.plan);
  // Freeing a million faces one by one takes longer than drawing them, and the process ends soon.
  static_cast<void>(model.importer.release());
  const int code = walk(options, traverser, plan.scene, destination);
  if (code != kExitDone) return code;
  const DrawingCounts counts = countDrawing(MappedFile(destination.WorkPath()).Bytes());
  if (counts.polylines == 0) {
    return fail(kExitNothingToDraw,
                "nothing to draw in '" + options.model + "': no edge of it shows in this view");
  }
  destination.Deliver();
  say(options, summaryOf(options.drawing, plan.content, counts, secondsSince(start)));
  return kExitDone;
}

// A model takes ten to twenty times its size in its file; the rest is room for packed and
// referenced files. A file that announces more than it can hold is stopped there, instead of taking
// all the memory there is.
std::uint64_t memoryFor(const std::string& path) {
  constexpr std::uint64_t kRoom = std::uint64_t{2} << 30;
  constexpr std::uint64_t kTimesFileSize = 64;
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  return kRoom + (error ? 0 : kTimesFileSize * size);
}

int failAsEnded(const ExportOptions& options, int signal) {
  constexpr int kShellSignalBase = 128;
  if (signal == SIGINT || signal == SIGQUIT || signal == SIGTERM || signal == SIGHUP) {
    return kShellSignalBase + signal;
  }
  if (signal == SIGKILL) {
    return fail(kExitLimit, "cannot draw '" + options.model +
                                "': the system stopped it, likely for want of memory");
  }
  return fail(kExitInput, "cannot read '" + options.model + "': it brings its reader down (" +
                              strsignal(signal) + ")");
}

bool isSceneFile(const std::string& path) {
  return std::filesystem::path(path).extension() == ".json";
}

int exportFile(const ExportOptions& options) {
  const Clock::time_point start = Clock::now();
  std::error_code ignored;
  if (std::filesystem::equivalent(options.model, options.drawing, ignored)) {
    return fail(kExitUsage,
                "'" + options.drawing + "' is the model itself; give the drawing another name");
  }
  if (!SetThreadCodePage(options.codePage)) {
    return fail(kExitUsage, unknownCodePage(options.codePage));
  }
  KtTraverser traverser;
  enterPlugin(options.plugin, traverser);
  ZuSetErrorBoxHandler(&keepBoxText);
  // Before the reading, which may take long: a drawing that cannot be written is refused at once.
  DrawingDestination destination(options.drawing);
  if (isSceneFile(options.model)) return exportScene(options, traverser, destination);
  // The readers are many, and some do not stand what broken files hold.
  const auto work = [&] {
    return reporting(options, [&] { return exportModel(options, traverser, destination, start); });
  };
  const GuardedEnd end = runGuarded(work, memoryFor(options.model));
  return end.signal == 0 ? end.exitCode : failAsEnded(options, end.signal);
}

}  // namespace

int runExport(const ExportOptions& options) {
  return reporting(options, [&] { return exportFile(options); });
}
