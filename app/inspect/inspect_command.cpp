#include "app/inspect/inspect_command.h"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <vector>

#include "app/cli/failure.h"
#include "app/cli/option_values.h"
#include "app/cli/printable.h"
#include "app/inspect/inspection_scenes.h"
#include "app/output/output_file.h"
#include "app/output/scratch_directory.h"
#include "app/process/confinement.h"
#include "app/process/input_task.h"
#include "app/process/worker_process.h"

namespace dxf2d {

namespace {

constexpr const char* kFixPlugin = "fix the plug-in or name another";

WorkerResult runInTime(const InspectOptions& options, WorkerCall call) {
  call.hasOutput = true;
  WorkerLimits limits;
  limits.time = options.time;
  WorkerResult end = runWorker(call, limits);
  for (const std::string& sentence : end.notes) {
    note(sentence);
  }
  return end;
}

std::string timeOf(const InspectOptions& options) {
  return std::to_string(options.time.count()) + " seconds";
}

void printResult(const InspectionScene& kind, const std::string& result) {
  std::printf("  %-22s %s\n", kind.name, printable(result).c_str());
  flushStandardOutput();
}

// What the walk itself could not print.
void printEnd(const InspectOptions& options, const InspectionScene& kind, const WorkerResult& end) {
  switch (end.how) {
    case WorkerResult::How::kExited:
      return printResult(kind,
                         "makes its host exit (exit code " + std::to_string(end.number) + ")");
    case WorkerResult::How::kSignal:
      return printResult(kind, std::string("crashes its host (") + strsignal(end.number) + ")");
    case WorkerResult::How::kTimedOut:
      return printResult(kind, "does not finish within " + timeOf(options));
    case WorkerResult::How::kNotStarted:
    case WorkerResult::How::kNotLoaded:
      throw startFailure(options.plugin, end);
    case WorkerResult::How::kMemoryExceeded:
    case WorkerResult::How::kReturned:
    case WorkerResult::How::kTerminated:
      return;
  }
}

int tryWalks(const InspectOptions& options) {
  const ScratchDirectory scratch("dxf2d-inspect");
  std::printf("Walks:\n");
  flushStandardOutput();
  std::size_t failed = 0;
  std::size_t number = 0;
  for (const InspectionScene& kind : inspectionScenes()) {
    const WorkerResult end =
        runInTime(options, {kWalkTask, {options.plugin, std::to_string(number++), scratch.Path()}});
    // The signal takes effect when the directory is gone.
    if (end.how == WorkerResult::How::kTerminated) {
      return kExitInternal;
    }
    if (end.Returned(kExitWriteFailed)) {
      return kExitWriteFailed;
    }
    printEnd(options, kind, end);
    if (!end.Returned(kExitDone)) {
      ++failed;
    }
  }
  if (failed == 0) {
    return kExitDone;
  }
  return fail(kExitPlugin, {options.plugin,
                            "fails " + std::to_string(failed) + " of " +
                                std::to_string(inspectionScenes().size()) + " walks",
                            "see the report above"});
}

// Returns an exit code.
int failToLook(const InspectOptions& options, const WorkerResult& end) {
  switch (end.how) {
    case WorkerResult::How::kTimedOut:
      return fail(kExitPlugin,
                  {options.plugin, "is not loaded within " + timeOf(options), kFixPlugin});
    case WorkerResult::How::kSignal:
      return fail(kExitPlugin, {options.plugin,
                                std::string("crashes its host while it is loaded (") +
                                    strsignal(end.number) + ")",
                                kFixPlugin});
    case WorkerResult::How::kExited:
      return fail(kExitPlugin, {options.plugin,
                                "makes its host exit while it is loaded (exit code " +
                                    std::to_string(end.number) + ")",
                                kFixPlugin});
    case WorkerResult::How::kNotStarted:
    case WorkerResult::How::kNotLoaded:
      throw startFailure(options.plugin, end);
    case WorkerResult::How::kMemoryExceeded:
    case WorkerResult::How::kReturned:
    case WorkerResult::How::kTerminated:
      break;
  }
  return end.number;
}

void printConfinement() {
  const ConfinementStatus status = availableConfinement();
  std::printf("Confinement of walks and of readers of models:\n");
  const std::string files =
      status.fileRules == 0 ? "none" : "Landlock, version " + std::to_string(status.fileRules);
  std::printf("  %-22s %s\n", "files", files.c_str());
  std::printf("  %-22s %s\n", "system calls", status.callFilter ? "seccomp" : "none");
  flushStandardOutput();
}

}  // namespace

Command inspectCommand() {
  // Shared by the functions below.
  const auto options = std::make_shared<InspectOptions>();
  Command command;
  command.name = "inspect";
  command.summary =
      "Examines a plug-in: its slots, its exports, and a test walk over every kind of content.";
  command.examples = {{"dxf2d inspect ./my_plugin.so", "What it registers, and what it does."}};
  command.inputName = "PLUGIN";
  command.inputHelp = "The plug-in, a loadable module";
  command.takeInputs = [options](const std::vector<std::string>& inputs) {
    options->plugin = inputs.front();
  };
  const auto parseSeconds = [](const std::string& text) -> std::optional<std::chrono::seconds> {
    const std::optional<std::uint32_t> count = parseCount(text);
    return count ? std::optional(std::chrono::seconds(*count)) : std::nullopt;
  };
  command.options = {{"--max-time", "SECONDS [" + std::to_string(options->time.count()) + "]",
                      "Time limit for loading the plug-in, and for each walk", kExpectedCount,
                      into(options->time, parseSeconds)}};
  command.run = [options](const OptionWords&) { return runInspect(*options); };
  return command;
}

int runInspect(const InspectOptions& options) {
  return reporting([&] {
    const WorkerResult end = runInTime(options, {kLookTask, {options.plugin}});
    if (end.Returned(kExitDone)) {
      printConfinement();
      return tryWalks(options);
    }
    return failToLook(options, end);
  });
}

}  // namespace dxf2d
