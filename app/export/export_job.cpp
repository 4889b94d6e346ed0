#include "app/export/export_job.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <optional>
#include <utility>
#include <vector>

#include "app/cli/failure.h"
#include "app/cli/translation.h"
#include "app/export/export_call.h"
#include "app/export/export_report.h"
#include "app/export/import_step.h"
#include "app/export/job_finishing.h"
#include "app/host/plugin_module.h"
#include "app/output/destination.h"
#include "app/process/file_identity.h"

namespace dxf2d {

namespace {

using Clock = std::chrono::steady_clock;

void say(std::FILE* stream, const std::string& line) {
  printLine(stream, line);
  if (stream == stdout) {
    flushStandardOutput();
  }
}

// A file that a job writes, by the user's name.
struct Output {
  std::string name;
  std::string remedy;
};

// The drawing, and the picture beside it if there is one.
std::vector<Output> outputsOf(const ExportJob& job, const ExportOptions& options) {
  std::vector<Output> outputs = {{job.drawing, tr("give the drawing another name")}};
  if (!options.preview.empty()) {
    outputs.push_back({options.preview, tr("give the picture another name")});
  }
  return outputs;
}

// Throws UsageError when an output would replace what it is made of, whatever names lead there.
void checkInputs(const ExportJob& job, const ExportOptions& options) {
  for (const Output& output : outputsOf(job, options)) {
    if (Destination::IsFile(output.name, job.model)) {
      throw UsageError({output.name, tr("is the model itself"), output.remedy});
    }
    if (Destination::IsFile(output.name, pluginFile(options.plugin))) {
      throw UsageError({output.name, tr("is the plug-in"), output.remedy});
    }
  }
}

// Throws UsageError when an output would replace a file that the model refers to.
void checkCompanions(const ExportJob& job, const ExportOptions& options,
                     const ExportReport& report) {
  for (const Output& output : outputsOf(job, options)) {
    const std::optional<FileIdentity> file = Destination::IdentityOf(output.name);
    if (file && std::ranges::find(report.inputs, *file) != report.inputs.end()) {
      throw UsageError(
          {output.name, tr("is a file that the model '%1' refers to", {job.model}), output.remedy});
    }
  }
}

std::string timeSince(Clock::time_point start) {
  char text[32];
  std::snprintf(text, sizeof text, "%.3f s",
                std::chrono::duration<double>(Clock::now() - start).count());
  return text;
}

// Throws UsageError where the preview cannot be a picture of its own.
void checkPreview(const ExportJob& job, const ExportOptions& options) {
  if (!pictureFormat(options.preview)) {
    throw UsageError({options.preview, tr("the picture's format is unknown"),
                      tr("end the name in .png, .svg or .pdf")});
  }
  if (options.preview == job.drawing ||
      Destination::IsFile(options.preview, Destination::PathOf(job.drawing))) {
    throw UsageError(
        {options.preview, tr("is the drawing itself"), tr("give the picture another name")});
  }
}

// The stages of a job and how long each took.
class StageTimes {
 public:
  void Begin(std::string_view stage) {
    End();
    stage_ = stage;
    begin_ = Clock::now();
  }
  // "reading 0.120 s, drawing 0.031 s".
  std::string Text() {
    End();
    return text_;
  }

 private:
  void End() {
    if (!stage_.empty()) {
      text_ += (text_.empty() ? "" : ", ") + tr(stage_.c_str()) + " " + timeSince(begin_);
      stage_.clear();
    }
  }

  std::string stage_;
  Clock::time_point begin_;
  std::string text_;
};

// Has an importer read the model, if there is one for it, and a worker draw it into the work files.
// Appends what the worker tells to `told`. Returns an exit code.
int makeDrawing(InputTask& work, const ExportJob& job, const ExportOptions& options,
                const WorkOutput& output, const std::optional<WorkOutput>& preview,
                WorkerTemplate* workers, std::string& told, JobNews& news) {
  StageTimes times;
  const std::string foreign = options.pluginFacts.isOwn ? "" : options.plugin;
  const auto beginStage = [&](std::string_view stage) {
    times.Begin(stage);
    work.Blame(stage == kDrawingStage ? foreign : "", tr(" while it draws '%1'", {job.model}));
    if (news.onStage) {
      news.onStage(stage);
    }
  };
  ImportStep import;
  int code = kExitDone;
  if (import.IsNeeded(job.model, options)) {
    beginStage("importing");
    code = import.Run(work, news.peakMemory);
  }
  if (code == kExitDone) {
    WorkerCall call = callToExport(job, options, output, preview, import.File());
    call.onStage = beginStage;
    call.from = workers;
    std::uint64_t peakMemory = 0;
    // Before the worker reads the model it loads the plug-in.
    work.Blame(foreign, tr(" while it is loaded"));
    // Some importers crash on malformed files.
    code = work.Run(std::move(call), told, &peakMemory);
    news.peakMemory = std::max(news.peakMemory, peakMemory);
  }
  const std::string stages = times.Text();
  if (options.batch.verbosity.isVerbose && !stages.empty()) {
    note(job.model + ": " + stages);
  }
  return code;
}

int draw(InputTask& work, const ExportJob& job, const ExportOptions& options,
         WorkerTemplate* workers, JobNews& news) {
  const Clock::time_point start = Clock::now();
  checkInputs(job, options);
  // The worker finds the same; here it refuses what does not fit before the model is read.
  static_cast<void>(finishingOf(job, options));
  // Before the model is read, which may take long: an output that cannot be created is an error at
  // once.
  Destination destination(job.drawing, options.existing);
  std::optional<Destination> preview;
  std::optional<WorkOutput> previewWork;
  if (!options.preview.empty()) {
    checkPreview(job, options);
    preview.emplace(options.preview, options.existing);
    previewWork = preview->Work();
  }
  std::string told;
  const int code =
      makeDrawing(work, job, options, destination.Work(), previewWork, workers, told, news);
  if (code != kExitDone) {
    return code;
  }
  const ExportReport report = reportOf(told);
  news.facts = report.facts;
  checkCompanions(job, options, report);
  std::FILE* const stream = destination.IsStandardOutput() ? stderr : stdout;
  destination.Deliver();
  if (preview) {
    preview->Deliver();
  }
  if (!report.summaryBeforeTime.empty() && !options.batch.verbosity.isQuiet && !options.isJson) {
    say(stream,
        job.drawing + ": " + report.summaryBeforeTime + timeSince(start) + report.summaryAfterTime);
  }
  return kExitDone;
}

}  // namespace

int runExportJob(const ExportJob& job, const ExportOptions& options, WorkerTemplate* workers,
                 JobNews& news) {
  InputTask work(tr("the importer"), job.model, options.limits);
  return work.Reporting([&] { return draw(work, job, options, workers, news); });
}

}  // namespace dxf2d
