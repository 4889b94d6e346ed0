#include "app/inspect/scene_findings.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>

#include "app/cli/failure.h"
#include "app/cli/printable.h"
#include "app/cli/translation.h"
#include "app/process/confinement.h"
#include "app/process/input_task.h"
#include "ktscene/kt_scene_check.h"
#include "ktscene/kt_scene_reader.h"

namespace dxf2d {

namespace {

using Json = nlohmann::ordered_json;

const char* nameOf(KtSeverity severity) {
  return severity == KtSeverity::kError ? marked("error") : marked("warning");
}

void printAsText(const std::string& path, const std::vector<KtSceneFinding>& findings) {
  for (const KtSceneFinding& finding : findings) {
    const std::string line = path + ": " + finding.node + ": " + tr(nameOf(finding.severity)) +
                             ": " + finding.problem + "; " + finding.remedy;
    std::printf("%s\n", printable(line).c_str());
  }
  if (findings.empty()) {
    std::printf("%s: %s\n", printable(path).c_str(), tr("no findings").c_str());
  }
}

void printAsJson(const std::string& path, const std::vector<KtSceneFinding>& findings,
                 std::size_t errors) {
  Json list = Json::array();
  for (const KtSceneFinding& finding : findings) {
    list.push_back({{"severity", nameOf(finding.severity)},
                    {"node", finding.node},
                    {"problem", finding.problem},
                    {"remedy", finding.remedy}});
  }
  const Json report{{"scene", path}, {"findings", std::move(list)}, {"passed", errors == 0}};
  std::printf("%s\n", report.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
}

int check(std::span<const std::string> words) {
  const std::string& path = words[0];
  Confinement rules{systemFiles(), {}};
  rules.readable.push_back(path);
  confine(rules);
  KtScene scene;
  try {
    scene = ReadSceneFile(path);
  } catch (const KtSceneError& error) {
    // Some of its messages already say what to do.
    const std::string problem = error.what();
    const std::size_t end = problem.find("; ");
    return fail(kExitInput,
                {"", problem.substr(0, end),
                 end == std::string::npos ? tr("fix the scene file") : problem.substr(end + 2)});
  }
  const std::vector<KtSceneFinding> findings = KtCheckScene(scene);
  const auto errors = static_cast<std::size_t>(
      std::ranges::count(findings, KtSeverity::kError, &KtSceneFinding::severity));
  if (words[1] == "json") {
    printAsJson(path, findings, errors);
  } else {
    printAsText(path, findings);
  }
  flushStandardOutput();
  if (errors == 0) {
    return kExitDone;
  }
  return fail(kExitInput, {path,
                           trn("has %1 part that is missing from its drawing or wrong in it",
                               "has %1 parts that are missing from its drawing or wrong in it",
                               errors, {std::to_string(errors)}),
                           tr("see the report above")});
}

}  // namespace

bool isSceneInput(const std::string& input) { return input.ends_with(".json"); }

int inspectScene(const InspectOptions& options) {
  ResourceLimits limits;
  limits.time = options.time;
  InputTask work(tr("the reader"), options.plugin, limits);
  return work.Reporting([&] {
    WorkerCall call{kSceneTask, {options.plugin, options.isJson ? "json" : "text"}};
    call.hasOutput = true;
    std::string told;
    return work.Run(std::move(call), told);
  });
}

WorkerTask sceneTask() { return {kSceneTask, &check}; }

}  // namespace dxf2d
