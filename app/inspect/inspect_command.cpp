#include "app/inspect/inspect_command.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "app/cli/failure.h"
#include "app/cli/option_values.h"
#include "app/cli/printable.h"
#include "app/cli/translation.h"
#include "app/inspect/inspection_checks.h"
#include "app/inspect/scene_findings.h"
#include "app/output/output_file.h"
#include "app/output/scratch_directory.h"
#include "app/process/confinement.h"
#include "app/process/input_task.h"
#include "app/process/worker_ends.h"
#include "app/process/worker_process.h"

namespace dxf2d {

namespace {

std::string fixPlugin() { return tr("fix the plug-in or name another"); }

WorkerResult runInTime(const InspectOptions& options, WorkerCall call) {
  // What a plug-in prints does not get into a report for programs.
  call.hasOutput = !options.isJson;
  WorkerLimits limits;
  limits.time = options.time;
  return runWorker(call, limits);
}

// A word of the report, in the user's language where it is one of ours.
std::string shown(const std::string& word) {
  return word.empty() ? tr("not stated") : printable(tr(word.c_str()));
}

// Where the report goes.
class Report {
 public:
  Report(const InspectOptions& options, const std::string& facts) : isJson_(options.isJson) {
    json_["plugin"] = options.plugin;
    // The plug-in's process wrote it; the plug-in may have had a hand in it.
    if (const Json parsed = Json::parse(facts, nullptr, false); parsed.is_object()) {
      json_.update(parsed);
    }
    if (IsForeign()) {
      return;
    }
    const ConfinementStatus status = availableConfinement();
    json_["confinement"] = {{"landlock", status.fileRules}, {"seccomp", status.callFilter}};
    json_["checks"] = Json::array();
    if (!isJson_) {
      PrintHead();
    }
  }

  // Whether the plug-in is one for another system, which cannot be loaded: all of it that is known
  // are its exports.
  bool IsForeign() const { return json_.contains("system"); }

  void PrintForeign() const {
    if (isJson_) {
      PrintJson();
      return;
    }
    PrintHeading(tr("A plug-in for %1; there, dxf2d inspect says more.",
                    {printable(TextOf(json_, "system"))}));
    PrintExports();
    flushStandardOutput();
  }

  void Add(const InspectionCheck& check, const std::string& fault) {
    json_["checks"].push_back({{"name", check.name}, {"passed", fault.empty()}});
    if (!fault.empty()) {
      json_["checks"].back()["fault"] = inEnglish(fault);
      ++failed_;
    }
    if (!isJson_) {
      PrintLine(check.title, 22,
                fault.empty() ? tr("passes") : printable(tr("fails: %1", {fault})));
      flushStandardOutput();
    }
  }

  // Returns the number of checks that failed.
  std::size_t Finish() {
    json_["passed"] = failed_ == 0;
    if (isJson_) {
      PrintJson();
    }
    return failed_;
  }

 private:
  using Json = nlohmann::ordered_json;

  static void PrintHeading(const std::string& heading) { std::printf("%s\n", heading.c_str()); }
  static void PrintLine(const std::string& name, std::size_t length, const std::string& value) {
    std::printf("  %s %s\n", padded(name, length).c_str(), value.c_str());
  }

  static std::string TextOf(const Json& object, const char* key) {
    const auto found = object.find(key);
    return found != object.end() && found->is_string() ? found->get<std::string>() : "";
  }

  void PrintJson() const {
    std::printf("%s\n", json_.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
    flushStandardOutput();
  }

  void PrintExports() const {
    const Json exports = json_.value("exports", Json::array());
    PrintHeading(tr("Exports (%1):", {std::to_string(exports.size())}));
    for (const Json& name : exports) {
      std::printf("  %s\n", printable(name.is_string() ? name.get<std::string>() : "").c_str());
    }
  }

  void PrintHead() const {
    const Json description = json_.value("description", Json::object());
    PrintHeading(tr("Description:"));
    for (const char* key :
         {marked("name"), marked("version"), marked("extension"), marked("format")}) {
      const std::string value = TextOf(description, key);
      PrintLine(tr(key), 10, value.empty() ? tr("not stated") : printable(value));
    }
    PrintHeading(tr("Slots:"));
    int number = 0;
    for (const Json& slot : json_.value("slots", Json::array())) {
      std::printf("  %2d", ++number);
      PrintLine(shown(TextOf(slot, "name")), 28,
                slot.value("filled", false) ? tr("filled") : tr("null"));
    }
    PrintExports();
    PrintConfinement();
    PrintHeading(tr("Checks:"));
    flushStandardOutput();
  }

  void PrintConfinement() const {
    const Json& status = json_["confinement"];
    const int version = status["landlock"].get<int>();
    PrintHeading(tr("Confinement of checks and of readers of models:"));
    PrintLine(
        tr("files"), 22,
        version == 0 ? tr("not available") : tr("Landlock, version %1", {std::to_string(version)}));
    PrintLine(tr("system calls"), 22,
              status["seccomp"].get<bool>() ? "seccomp" : tr("not available"));
  }

  bool isJson_;
  Json json_;
  std::size_t failed_ = 0;
};

// What is wrong with the plug-in when a check has ended so; empty for nothing.
std::string faultOf(const InspectOptions& options, const WorkerResult& end) {
  switch (end.how) {
    case WorkerResult::How::kExited:
      return tr("makes its host exit (exit code %1)", {std::to_string(end.number)});
    case WorkerResult::How::kSignal:
      return tr("crashes its host (%1)", {crashName(end.number)});
    case WorkerResult::How::kTimedOut:
      return tr("does not finish within %1 seconds", {std::to_string(options.time.count())});
    case WorkerResult::How::kMemoryExceeded:
      return tr("takes too much memory");
    case WorkerResult::How::kNotStarted:
    case WorkerResult::How::kNotLoaded:
      throw startFailure(options.plugin, end);
    case WorkerResult::How::kReturned:
    case WorkerResult::How::kTerminated:
      break;
  }
  if (end.Returned(kExitDone)) {
    return "";
  }
  return end.text.empty() ? tr("fails to be loaded again") : sentenceFromWorker(end.text);
}

int makeChecks(const InspectOptions& options, Report& report) {
  const std::vector<InspectionCheck> checks = inspectionChecks(options.seeds);
  for (std::size_t i = 0; i < checks.size(); ++i) {
    const ScratchDirectory scratch("dxf2d-inspect");
    const WorkerResult end = runInTime(options, {kCheckTask,
                                                 {options.plugin, std::to_string(i), scratch.Path(),
                                                  std::to_string(options.seeds)}});
    // The signal takes effect when the directory is gone.
    if (end.how == WorkerResult::How::kTerminated) {
      return kExitInternal;
    }
    report.Add(checks[i], faultOf(options, end));
  }
  const std::size_t failed = report.Finish();
  if (failed == 0) {
    return kExitDone;
  }
  return fail(kExitPlugin,
              {options.plugin,
               tr("fails %1 of %2 checks", {std::to_string(failed), std::to_string(checks.size())}),
               tr("see the report above")});
}

// Returns an exit code.
int failToLook(const InspectOptions& options, const WorkerResult& end) {
  switch (end.how) {
    case WorkerResult::How::kTimedOut:
      return fail(kExitPlugin,
                  {options.plugin,
                   tr("is not loaded within %1 seconds", {std::to_string(options.time.count())}),
                   fixPlugin()});
    case WorkerResult::How::kSignal:
      return fail(
          kExitPlugin,
          {options.plugin, tr("crashes its host while it is loaded (%1)", {crashName(end.number)}),
           fixPlugin()});
    case WorkerResult::How::kExited:
      return fail(kExitPlugin, {options.plugin,
                                tr("makes its host exit while it is loaded (exit code %1)",
                                   {std::to_string(end.number)}),
                                fixPlugin()});
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

}  // namespace

Command inspectCommand() {
  // Shared by the functions below.
  const auto options = std::make_shared<InspectOptions>();
  Command command;
  command.name = "inspect";
  command.summary =
      "Examines a plug-in: its slots, its exports, walks over every kind of content, and whether "
      "hosts can rely on it. Of a scene file, what its drawing would lack.";
  command.examples = {{"dxf2d inspect ./my_plugin.so", "What it registers, and what it does."}};
  command.inputName = "PLUGIN";
  command.inputHelp = "The plug-in, a loadable module; or a scene file (.json)";
  command.takeInputs = [options](const std::vector<std::string>& inputs) {
    options->plugin = inputs.front();
  };
  const auto parseSeconds = [](const std::string& text) -> std::optional<std::chrono::seconds> {
    const std::optional<std::uint32_t> count = parseCount(text);
    return count ? std::optional(std::chrono::seconds(*count)) : std::nullopt;
  };
  command.options = {
      {"--max-time", "SECONDS [" + std::to_string(options->time.count()) + "]",
       "Time limit for loading the plug-in, and for each check", kExpectedCount,
       into(options->time, parseSeconds)},
      {"--seeds", "COUNT [" + std::to_string(options->seeds) + "]",
       "Number of hosts that call at random", kExpectedCount, into(options->seeds, parseCount)},
      {"--json", "", "Print the report as JSON", "",
       [options](const std::string&) { return options->isJson = true; }}};
  command.run = [options](const OptionWords&) { return runInspect(*options); };
  return command;
}

int runInspect(const InspectOptions& options) {
  if (isSceneInput(options.plugin)) {
    return inspectScene(options);
  }
  return reporting([&] {
    const WorkerResult end = runInTime(options, {kLookTask, {options.plugin}});
    // Of checks they are what the plug-in says of faulty content.
    for (const std::string& sentence : end.notes) {
      noteFromWorker(sentence);
    }
    if (end.Returned(kExitDone)) {
      Report report(options, end.text);
      if (report.IsForeign()) {
        report.PrintForeign();
        return static_cast<int>(kExitDone);
      }
      return makeChecks(options, report);
    }
    return failToLook(options, end);
  });
}

}  // namespace dxf2d
