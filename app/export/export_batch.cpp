#include "app/export/export_batch.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <optional>
#include <system_error>

#include "app/batch/job_queue.h"
#include "app/batch/progress.h"
#include "app/batch/report_file.h"
#include "app/cli/failure.h"
#include "app/cli/file_path.h"
#include "app/cli/translation.h"
#include "app/export/export_call.h"
#include "app/export/export_job.h"
#include "app/host/plugin_module.h"
#include "app/process/termination_signals.h"
#include "app/process/worker_template.h"
#include "platform/parallel.h"

namespace dxf2d {

namespace {

namespace fs = std::filesystem;

using Clock = std::chrono::steady_clock;

// Why a job is left out; nothing where it is not.
std::optional<std::string> reasonToSkip(const ExportJob& job, Skipped skipped) {
  std::error_code error;
  const fs::file_time_type drawn = fs::last_write_time(filePath(job.drawing), error);
  if (skipped == Skipped::kNone || error) {
    return std::nullopt;
  }
  if (skipped == Skipped::kExisting) {
    return tr("has a drawing");
  }
  const fs::file_time_type changed = fs::last_write_time(filePath(job.model), error);
  return !error && changed <= drawn
             ? std::optional<std::string>(tr("is not newer than its drawing"))
             : std::nullopt;
}

// As a shell would take them.
std::string shellText(const OptionWords& words) {
  std::string text;
  for (std::size_t i = 0; i + 1 < words.size(); i += 2) {
    text += (text.empty() ? "" : " ") + words[i];
    if (!words[i + 1].empty()) {
      text += " '" + words[i + 1] + "'";
    }
  }
  return text;
}

// Without the defaults that are for models.
const OptionWords& wordsForScenes(const ExportOptions& options) {
  return options.forScenes ? options.forScenes->words : options.words;
}

// The long name of an option that was given and applies to models only; empty for none.
std::string optionForModels(const OptionWords& words) {
  ExportOptions unused;
  for (const Option& option : exportOptions(unused)) {
    if (option.appliesTo == AppliesTo::kModelsOnly &&
        std::ranges::find(words, option.LongName()) != words.end()) {
      return option.LongName();
    }
  }
  return "";
}

// The plug-in that workers load, unless it is a stranger's.
std::vector<std::string> trustedPlugin(const ExportOptions& options) {
  if (!options.pluginFacts.isOwn) {
    return {};
  }
  try {
    return {pluginFile(options.plugin)};
  } catch (const PluginError&) {
    // Each job says that it is missing.
    return {};
  }
}

class ExportBatch {
 public:
  ExportBatch(const std::vector<ExportJob>& jobs, const ExportOptions& options)
      : jobs_(jobs),
        options_(options),
        optionsText_(shellText(options.words)),
        optionForModels_(jobs.size() > 1 ? optionForModels(wordsForScenes(options)) : ""),
        sceneOptions_(options.forScenes ? *options.forScenes : options) {
    sceneOptions_.format = options_.format;
    sceneOptions_.pluginFacts = options_.pluginFacts;
    if (options_.batch.skipped == Skipped::kNotNewer) {
      options_.existing = Existing::kReplace;
      sceneOptions_.existing = Existing::kReplace;
    }
    if (!options.batch.report.empty()) {
      report_.emplace(options.batch.report);
    }
  }

  int Run(const std::vector<Message>& problems) {
    // Job threads have it, too: what they make is cleaned up before the signal ends the process.
    const ScopedSignalBlock untilEnd;
    failed_ = problems.size();
    for (const Message& problem : problems) {
      note(sentenceOf(problem));
    }
    if (!options_.batch.verbosity.isQuiet && batch::isProgressShown() && !jobs_.empty()) {
      progress_.emplace(jobs_.size());
    }
    std::vector<std::uint64_t> memory;
    memory.reserve(jobs_.size());
    for (const ExportJob& job : jobs_) {
      memory.push_back(memoryLimitOf(job.model, options_.limits));
    }
    const unsigned processors = batch::defaultJobCount();
    const unsigned count = options_.batch.jobs.value_or(processors);
    if (!options_.threads) {
      const auto jobsAtATime = std::min<std::size_t>(count, std::max<std::size_t>(jobs_.size(), 1));
      options_.threads = std::clamp(processors / static_cast<unsigned>(jobsAtATime), 1U,
                                    static_cast<unsigned>(kMostThreads));
    }
    batch::runJobs(memory, {count, batch::availableMemory()},
                   [&](std::size_t job) { return RunJob(jobs_[job]); });
    progress_.reset();
    return Conclude(jobs_.size() + problems.size());
  }

 private:
  // Whether the run goes on.
  bool RunJob(const ExportJob& job) {
    if (isTerminationPending()) {
      return false;
    }
    batch::Record record{job.model, job.drawing, optionsText_, batch::Outcome::kDrawn, 0, {}, 0.0,
                         0,         {}};
    const Clock::time_point start = Clock::now();
    bool hasBegunToDraw = false;
    if (const auto reason = reasonToSkip(job, options_.batch.skipped)) {
      record.outcome = batch::Outcome::kSkipped;
      record.sentence = inEnglish(*reason);
      ++skipped_;
    } else {
      record.exitCode = Draw(job, record, hasBegunToDraw);
      if (isTerminationPending()) {
        return false;
      }
    }
    record.seconds = std::chrono::duration<double>(Clock::now() - start).count();
    if (record.exitCode != kExitDone) {
      record.outcome = batch::Outcome::kFailed;
      record.sentence = lastSentence();
      ++failed_;
    } else if (record.outcome == batch::Outcome::kDrawn) {
      ++drawn_;
    }
    lastCode_ = record.exitCode;
    hasNoPlugin_ = hasNoPlugin_ || (record.exitCode == kExitPlugin && !hasBegunToDraw);
    if (progress_) {
      progress_->AddDone();
    }
    const bool isReported = reporting([&] {
                              if (report_) {
                                report_->Add(record);
                              }
                              if (options_.isJson) {
                                PrintAsJson(record);
                              }
                              return static_cast<int>(kExitDone);
                            }) == kExitDone;
    // Other models need the same plug-in.
    const bool isFailed = record.exitCode != kExitDone;
    isReportLost_ = isReportLost_ || !isReported;
    return isReported && !(isFailed && options_.batch.failsFast) && !hasNoPlugin_;
  }

  int Draw(const ExportJob& job, batch::Record& record, bool& hasBegunToDraw) {
    if (isSceneFile(job.model) && !optionForModels_.empty()) {
      return fail(kExitUsage,
                  {job.model,
                   tr("%1 applies to models only, and a scene file is drawn exactly as it is",
                      {optionForModels_}),
                   tr("leave the option out")});
    }
    if (jobs_.size() > 1) {
      // What fails here is said when the drawing is created.
      std::error_code ignored;
      fs::create_directories(filePath(job.drawing).parent_path(), ignored);
    }
    JobNews news;
    news.onStage = [&](std::string_view stage) {
      hasBegunToDraw = hasBegunToDraw || stage == kDrawingStage;
      if (progress_) {
        progress_->SetStage(job.model, stage);
      }
    };
    const int code =
        runExportJob(job, isSceneFile(job.model) ? sceneOptions_ : options_, Workers(), news);
    record.peakMemory = news.peakMemory;
    record.facts = news.facts;
    return code;
  }

  // What this thread's workers are forked from; null for one model alone, for which the program is
  // started sooner.
  WorkerTemplate* Workers() const {
    if (jobs_.size() == 1) {
      return nullptr;
    }
    static thread_local WorkerTemplate workers({}, trustedPlugin(options_));
    return &workers;
  }

  // A line of JSON, where else a summary goes.
  void PrintAsJson(const batch::Record& record) {
    printLine(record.output == "-" ? stderr : stdout, batch::asciiLineOf(record));
    flushStandardOutput();
  }

  int Conclude(std::size_t total) {
    const std::size_t begun = drawn_ + skipped_ + failed_;
    const std::string rest =
        begun == total ? "" : tr(", %1 not begun or not finished", {std::to_string(total - begun)});
    const std::string counts =
        tr("%1 drawn, %2 skipped, %3 failed",
           {std::to_string(drawn_), std::to_string(skipped_), std::to_string(failed_)}) +
        rest;
    if (isTerminationPending()) {
      if (total > 1) {
        note(tr("interrupted: of %1 models, %2; --skip-existing goes on from here",
                {std::to_string(total), counts}));
      }
      return kExitInternal;
    }
    if (isReportLost_) {
      return kExitWriteFailed;
    }
    if (total == 1 || hasNoPlugin_) {
      return hasNoPlugin_ ? static_cast<int>(kExitPlugin) : failed_ == 0 ? 0 : lastCode_.load();
    }
    if (failed_ == 0) {
      return kExitDone;
    }
    const char* const missed = options_.cuts.size() > 1 ? marked("%1 of %2 drawings were not made")
                                                        : marked("%1 of %2 models were not drawn");
    return fail(kExitSomeFailed,
                {"", tr(missed, {std::to_string(failed_), std::to_string(total)}) + rest,
                 tr("see the messages above")});
  }

  const std::vector<ExportJob>& jobs_;
  ExportOptions options_;
  std::string optionsText_;
  std::string optionForModels_;
  ExportOptions sceneOptions_;
  std::optional<batch::ReportFile> report_;
  std::optional<batch::ProgressBar> progress_;
  std::atomic<std::size_t> drawn_ = 0;
  std::atomic<std::size_t> skipped_ = 0;
  std::atomic<std::size_t> failed_ = 0;
  std::atomic<int> lastCode_ = kExitDone;
  std::atomic<bool> hasNoPlugin_ = false;
  std::atomic<bool> isReportLost_ = false;
};

}  // namespace

int runExportJobs(const std::vector<ExportJob>& jobs, const ExportOptions& options,
                  const std::vector<Message>& problems) {
  return ExportBatch(jobs, options).Run(problems);
}

}  // namespace dxf2d
