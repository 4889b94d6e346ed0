#include "app/export/export_job.h"

#include <assimp/Importer.hpp>
#include <chrono>
#include <filesystem>
#include <system_error>

#include "app/destination.h"
#include "app/export/drawing_counts.h"
#include "app/export/export_summary.h"
#include "app/export/scene_meter.h"
#include "app/failure.h"
#include "app/mapped_file.h"
#include "app/model/model_error.h"
#include "app/model/model_reader.h"
#include "app/plugin_module.h"
#include "app/printable.h"
#include "app/shared_value.h"
#include "ktscene/kt_scene_reader.h"
#include "ktscene/kt_traverser.h"
#include "ktscene/zu_message.h"
#include "platform/cfile_exception.h"
#include "platform/path_text.h"

namespace {

using Clock = std::chrono::steady_clock;

// What the plug-in last had to say in an error box; the callbacks carry no context.
std::u16string& boxText() {
  static std::u16string text;
  return text;
}

void keepBoxText(void*, const char16_t*, const char16_t* text, int) {
  boxText() = text == nullptr ? u"" : text;
}

// What the working process tells of a drawing that it made.
struct DrawingReport {
  // False for scene files, which are drawn without a word.
  bool isTold = false;
  PlanContent content;
  DrawingCounts counts;
};

// ---- In the working process

// Draws one model or scene into a work file.
class Draughtsman {
 public:
  Draughtsman(const ExportJob& job, const ExportOptions& options, const Destination& destination,
              DrawingReport& report)
      : job_(job), options_(options), destination_(destination), report_(report) {}

  // Returns an exit code.
  int Draw() {
    enterPlugin(options_.plugin, traverser_);
    ZuSetErrorBoxHandler(&keepBoxText);
    const bool isScene = std::filesystem::path(job_.model).extension() == ".json";
    return isScene ? DrawScene() : DrawModel();
  }

 private:
  int DrawScene() {
    KtScene scene = SceneOfFile();
    ModelMeter meter(options_.plan.limits, job_.model);
    meterScene(scene, meter);
    // An empty drawing is the right one of an empty scene.
    return Walk(scene);
  }

  KtScene SceneOfFile() const {
    try {
      return ReadSceneFile(job_.model);
    } catch (const KtSceneError& error) {
      throw ModelError(kExitInput, error.what());
    }
  }

  int DrawModel() {
    Model model = readModel(job_.model, options_.plan.up);
    PlanScene plan = makePlanScene(*model.scene, model.importerName, job_.model, options_.plan);
    // Freeing a million faces one by one takes longer than drawing them, and the process ends soon.
    static_cast<void>(model.importer.release());
    const int code = Walk(plan.scene);
    if (code != kExitDone) return code;
    report_ = {true, plan.content, countDrawing(MappedFile(destination_.WorkPath()).Bytes())};
    if (report_.counts.polylines != 0) return kExitDone;
    return fail(kExitNothingToDraw,
                "nothing to draw in '" + job_.model + "': no edge of it shows in this view");
  }

  int Walk(KtScene& scene) {
    boxText().clear();
    try {
      if (traverser_.Walk(scene, PathFromBytes(destination_.WorkPath()))) return kExitDone;
    } catch (const CFileException& error) {
      return fail(kExitWriteFailed,
                  "cannot write '" + destination_.Name() + "': " + ReasonOf(error));
    }
    const std::string reason = destination_.AsUserNamesIt(PathToBytes(boxText()));
    return fail(kExitOutputNotMade, "cannot create '" + destination_.Name() + "': " +
                                        (reason.empty() ? "the plug-in gives no reason" : reason));
  }

  // In the words of the system, where it was asked.
  std::string ReasonOf(const CFileException& error) const {
    if (error.m_lOsError <= 0) return destination_.AsUserNamesIt(error.what());
    return std::generic_category().message(static_cast<int>(error.m_lOsError)) + "; " +
           destination_.WayOut();
  }

  const ExportJob& job_;
  const ExportOptions& options_;
  const Destination& destination_;
  DrawingReport& report_;
  KtTraverser traverser_;
};

// ---- In the waiting process

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

void say(std::FILE* stream, const std::string& line) {
  std::fprintf(stream, "%s\n", printable(line).c_str());
  std::fflush(stream);
}

int draw(const LimitedWork& work, const ExportJob& job, const ExportOptions& options) {
  const Clock::time_point start = Clock::now();
  std::error_code ignored;
  if (std::filesystem::equivalent(job.model, Destination::PathOf(job.drawing), ignored)) {
    return fail(kExitUsage,
                "'" + job.drawing + "' is the model itself; give the drawing another name");
  }
  // Before the reading, which may take long: a drawing that cannot be written is refused at once.
  Destination destination(job.drawing, options.existing);
  SharedValue<DrawingReport> report;
  // The readers are many, and some do not stand what broken files hold.
  const int code = work.Run([&] { return Draughtsman(job, options, destination, *report).Draw(); });
  if (code != kExitDone) return code;
  std::FILE* const stream = destination.IsStandardOutput() ? stderr : stdout;
  destination.Deliver();
  if (report->isTold) {
    say(stream, summaryOf(job.drawing, report->content, report->counts, secondsSince(start)));
  }
  return kExitDone;
}

}  // namespace

int runExportJob(const ExportJob& job, const ExportOptions& options) {
  const LimitedWork work("draw", job.model, options.limits);
  return work.Reporting([&] { return draw(work, job, options); });
}
