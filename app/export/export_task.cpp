#include <array>
#include <assimp/Importer.hpp>
#include <cassert>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include "app/cli/failure.h"
#include "app/cli/translation.h"
#include "app/export/block_sources.h"
#include "app/export/drawing_completion.h"
#include "app/export/drawing_counts.h"
#include "app/export/export_call.h"
#include "app/export/export_confinement.h"
#include "app/export/export_facts.h"
#include "app/export/export_report.h"
#include "app/export/export_summary.h"
#include "app/export/exported_model.h"
#include "app/export/job_finishing.h"
#include "app/export/scene_limits.h"
#include "app/export/walk_record.h"
#include "app/export/worker_tasks.h"
#include "app/host/plugin_module.h"
#include "app/model/model_error.h"
#include "app/model/sheet_scene.h"
#include "app/output/mapped_file.h"
#include "app/preview/text_shaper.h"
#include "ktscene/kt_scene_reader.h"
#include "ktscene/kt_traverser.h"
#include "platform/cfile_exception.h"
#include "platform/code_page.h"
#include "platform/path_text.h"

namespace dxf2d {

namespace {

// "; missing: chair.lwo, m.mtl; outside: ../secret", or nothing.
std::string absentFilesOf(const ModelFiles& files) {
  std::string text;
  for (const auto& [title, names] : {std::pair(tr("; missing: "), &files.missing),
                                     std::pair(tr("; outside: "), &files.outside)}) {
    std::string separator = title;
    for (const std::string& name : *names) {
      text += separator + name;
      separator = ", ";
    }
  }
  return text;
}

// What an importer has read and left out, and the options that the reader, whichever it is, does
// not have.
std::string statementOf(const ModelSource& source, const ImportedFile& imported,
                        const ImportSettings& settings) {
  std::string text;
  if (imported.IsThere()) {
    text += tr("; read by %1", {source.importer});
  }
  for (const std::string& note : source.notes) {
    text += "; " + note;
  }
  // assimp divides curved faces as it likes.
  const std::string withoutEffect = imported.IsThere()               ? imported.withoutEffect
                                    : settings.contains("tolerance") ? "--tolerance"
                                                                     : "";
  return withoutEffect.empty() ? text : text + tr("; no effect: %1", {withoutEffect});
}

ModelError sceneFailure(const KtSceneError& error) {
  // Some of its messages already say what to do.
  std::string problem = error.what();
  std::string remedy = tr("fix the scene file");
  if (const std::size_t semicolon = problem.find("; "); semicolon != std::string::npos) {
    remedy = problem.substr(semicolon + 2);
    problem.resize(semicolon);
  }
  return {kExitInput, {"", problem, remedy}};
}

// Draws one model or scene into a work file.
class ExportTask {
 public:
  explicit ExportTask(const ExportArguments& arguments)
      : job_(arguments.job),
        imported_(arguments.imported),
        options_(arguments.options),
        finishing_(finishingOf(arguments.job, arguments.options)),
        output_(arguments.output),
        preview_(arguments.preview) {}

  // Returns an exit code.
  int Draw() {
    [[maybe_unused]] const bool isKnown = SetThreadCodePage(options_.codePage);
    assert(isKnown);
    setDrawingName(job_.drawing == "-" ? "" : job_.drawing);
    setPluginThreads(options_.plan.threading.most);
    enterPlugin(options_.plugin, traverser_);
    CheckFormat();
    if (pictureFormatOf(*options_.format) || preview_) {
      // The fonts that the user has are opened here, wherever they are.
      static_cast<void>(TextShaper(options_.codePage));
    }
    std::vector<int> writable = {output_.file};
    if (preview_) {
      writable.push_back(preview_->file);
    }
    confine(rulesFor(job_.model, options_, writable, imported_));
    const int code = isSceneFile(job_.model) ? DrawScene() : DrawModel();
    tellParent(textOf(report_));
    return code;
  }

 private:
  int DrawScene() {
    beginStage("reading");
    KtScene scene = SceneOfFile();
    LimitChecker limits(options_.plan.limits, job_.model);
    checkSceneLimits(scene, limits);
    // An empty scene has an empty drawing; that is not an error.
    const int code = Walk(scene);
    CompletionReport completed;
    if (code == kExitDone && !options_.batch.report.empty()) {
      report_.facts = factsOfScene(job_.model, CountDrawing());
    }
    return code == kExitDone ? Complete(scene, {}, {}, completed) : code;
  }

  // Throws PluginError for a plug-in that writes another format than it said when it was asked, or
  // that could not be asked, since another library of its describes it.
  void CheckFormat() const {
    const KtPluginDescription description = traverser_.Description();
    if (description.extension != options_.pluginFacts.end) {
      throw PluginError(
          {options_.plugin,
           tr("writes %1 and not '%2', as is expected of it",
              {description.format, options_.pluginFacts.end}),
           tr("have the plug-in itself call KtTraverser::Describe, or name another")});
    }
  }

  KtScene SceneOfFile() const {
    try {
      return ReadSceneFile(job_.model);
    } catch (const KtSceneError& error) {
      throw sceneFailure(error);
    }
  }

  int DrawModel() {
    beginStage("reading");
    Model model = readExportedModel(job_.model, options_, imported_);
    CheckFiles(model);
    PlanOptions options = options_.plan;
    options.linework.cut = job_.cut;
    options.wantsSources = finishing_.IsFinished();
    options.splitsKinds =
        finishing_.IsFinished() && finishing_.layers == finish::LayerScheme::kKind;
    options.linework.keepsHiddenWhole = finishing_.IsFinished();
    PlanScene plan = options_.sheet.IsWanted()
                         ? makeSheetScene(*model.scene, model.source, options, options_.sheet)
                         : makePlanScene(*model.scene, model.source, options);
    if (options_.isStrict) {
      CheckCut(plan.content);
    }
    // Freeing a million faces one by one takes longer than drawing them, and the process ends soon.
    static_cast<void>(model.importer.release());
    const int code = Walk(plan.scene);
    if (code != kExitDone) {
      return code;
    }
    if (!options_.pluginFacts.WritesDxf()) {
      return ReportForeign(plan.content, *model.files, model.source);
    }
    const DrawingCounts counts = CountDrawing();
    // Of another plug-in, what it returns is what counts: it may draw with other entities.
    if (counts.polylines != 0 || !options_.pluginFacts.isOwn) {
      CompletionReport completed;
      const int completion = Complete(plan.scene, plan.sources, plan.content, completed);
      const Summary summary = summaryOf(plan.content, counts);
      report_.summaryBeforeTime = summary.beforeTime;
      report_.summaryAfterTime = summary.afterTime + finishingSummary(finishing_, completed) +
                                 absentFilesOf(*model.files) +
                                 statementOf(model.source, imported_, options_.importSettings);
      if (!options_.batch.report.empty()) {
        report_.facts = factsOfModel(job_.model, model.source.importer, plan.content, counts);
      }
      return completion;
    }
    return fail(kExitNothingToDraw,
                {job_.model, tr("nothing to draw: no edge is visible in this view"),
                 tr("choose another --view")});
  }

  // Of a file that is not a DXF drawing.
  int ReportForeign(const PlanContent& content, const ModelFiles& files,
                    const ModelSource& source) {
    const Summary summary = summaryOf(content);
    report_.summaryBeforeTime = summary.beforeTime;
    report_.summaryAfterTime = summary.afterTime + absentFilesOf(files) +
                               statementOf(source, imported_, options_.importSettings);
    if (!options_.batch.report.empty()) {
      report_.facts = factsOfModel(job_.model, source.importer, content, {});
    }
    return kExitDone;
  }

  // Makes of the plug-in's drawing what the user wants. Returns an exit code.
  int Complete(const KtScene& scene, const std::vector<NodeSource>& sources,
               const PlanContent& content, CompletionReport& completed) const {
    const Completion completion = completionOf(job_, options_, finishing_, content);
    if (!completion.IsNeeded()) {
      return kExitDone;
    }
    beginStage("finishing");
    return completeDrawing(completion, sideTableOf(scene, sources, takenInstances()), job_.drawing,
                           output_, preview_, completed);
  }

  DrawingCounts CountDrawing() const {
    const MappedFile drawing(output_.path, output_.name);
    // A drawing of a million bytes is counted before a second thread has started.
    constexpr std::size_t kLeastBytes = 1'000'000;
    const Threading threading{options_.plan.threading.most, kLeastBytes};
    return countDrawing(drawing.Bytes(), threading.For(drawing.Bytes().size()));
  }

  void CheckCut(const PlanContent& content) const {
    if (content.openEnds != 0) {
      throw ModelError(kExitInput, {job_.model,
                                    trn("its cut lines have %1 open end, and --strict was given",
                                        "its cut lines have %1 open ends, and --strict was given",
                                        content.openEnds, {std::to_string(content.openEnds)}),
                                    tr("close the gaps of the model, or cut it elsewhere")});
    }
  }

  // Throws ModelError for a model of which a part is missing, if that is wanted.
  void CheckFiles(const Model& model) {
    report_.inputs = model.files->named;
    const std::vector<FileIdentity> textures = textureFiles(*model.scene, job_.model);
    report_.inputs.insert(report_.inputs.end(), textures.begin(), textures.end());
    const std::string absent = absentFilesOf(*model.files);
    if (options_.isStrict && !absent.empty()) {
      throw ModelError(kExitInput, {job_.model, tr("is not complete%1", {absent}),
                                    tr("provide the files, or leave --strict out")});
    }
  }

  int Walk(const KtScene& scene) {
    beginStage(kDrawingStage);
    captureErrorBoxes();
    const int code = options_.pluginFacts.isOwn ? CallPlugin(scene) : CallForeignPlugin(scene);
    if (code == kExitDone && !options_.pluginFacts.isOwn &&
        MappedFile(output_.path, output_.name).Bytes().empty()) {
      return FailForPlugin(tr("returns true and writes nothing"));
    }
    return code;
  }

  int CallPlugin(const KtScene& scene) {
    KtWalkOptions walk;
    // A scene file is drawn as it is: such a label does not fit the syntax and is left out.
    walk.refusesCommas = false;
    try {
      if (recordingTraverser(traverser_).Walk(scene, pathFromBytes(output_.path), walk)) {
        return kExitDone;
      }
    } catch (const CFileException& error) {
      return FailToWrite(error);
    }
    const std::string reason = output_.AsUserNamesIt(lastErrorBox());
    if (!options_.pluginFacts.isOwn && (hasWalkBegun() || reason.empty())) {
      return FailForPlugin(tr(
          "returns false from %1%2",
          {(hasWalkBegun() ? "slot 20" : "slot 19"), (reason.empty() ? "" : " (" + reason + ")")}));
    }
    return fail(kExitOutputNotMade,
                {output_.name,
                 tr("cannot be created: %1",
                    {(reason.empty() ? tr("the plug-in gives no reason") : reason)}),
                 tr(output_.remedy.c_str())});
  }

  int CallForeignPlugin(const KtScene& scene) {
    try {
      return CallPlugin(scene);
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const Failure&) {
      throw;
    } catch (const std::exception& error) {
      return FailForPlugin(tr("throws \"%1\"", {output_.AsUserNamesIt(error.what())}));
    } catch (...) {
      return FailForPlugin(tr("throws an object that is not a std::exception"));
    }
  }

  int FailForPlugin(const std::string& what) const {
    return fail(kExitPlugin, {options_.plugin, tr("%1 while it draws '%2'", {what, job_.model}),
                              tr("fix the plug-in or name another with --plugin")});
  }

  int FailToWrite(const CFileException& error) const {
    const std::string reason = ReasonOf(error);
    if (reason.empty()) {
      // Without any character sets not even the message can be converted.
      return fail(
          kExitWriteFailed,
          {output_.name, tr("cannot be written: the system has no character sets for its texts"),
           tr("install those of the C library (gconv)")});
    }
    // The plug-in itself gives a reason only for a text that the code page cannot take.
    return fail(kExitWriteFailed, {output_.name, tr("cannot be written: %1", {reason}),
                                   error.m_strReason.IsEmpty() ? tr(output_.remedy.c_str())
                                                               : tr("choose another --codepage")});
  }

  // The system's message where there is one.
  std::string ReasonOf(const CFileException& error) const {
    if (error.m_lOsError <= 0) {
      std::string reason = output_.AsUserNamesIt(error.what());
      // What to do follows in the same sentence.
      if (reason.ends_with('.')) {
        reason.pop_back();
      }
      return reason;
    }
    return std::generic_category().message(static_cast<int>(error.m_lOsError));
  }

  const ExportJob& job_;
  const ImportedFile& imported_;
  const ExportOptions& options_;
  FinishingPlan finishing_;
  const WorkOutput& output_;
  const std::optional<WorkOutput>& preview_;
  ExportReport report_;
  KtTraverser traverser_;
};

}  // namespace

WorkerTask exportTask() {
  return {kExportTask, [](std::span<const std::string> words) {
            const ExportArguments arguments = exportArgumentsOf(words);
            return ExportTask(arguments).Draw();
          }};
}

}  // namespace dxf2d
