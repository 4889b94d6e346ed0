#include "app/export/plugin_facts.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>

#include "app/cli/file_path.h"
#include "app/cli/option_values.h"
#include "app/cli/printable.h"
#include "app/cli/translation.h"
#include "app/export/export_call.h"
#include "app/export/worker_tasks.h"
#include "app/output/destination.h"
#include "app/process/file_identity.h"
#include "app/process/input_task.h"
#include "app/process/worker_ends.h"
#include "app/process/worker_process.h"

namespace dxf2d {

namespace {

std::string nameAnother() { return tr("name another plug-in with --plugin"); }

// Without --plugin, or with the file that is taken then.
bool isOwnPlugin(const std::string& plugin) {
  if (plugin.empty()) {
    return true;
  }
  try {
    const auto own = identityOf(pluginFile(""));
    return own && identityOf(plugin) == own;
  } catch (const PluginError&) {
    return false;
  }
}

// Whether the module can call KtTraverser::Describe, which it has to name then.
bool canDescribeItself(const std::string& plugin) {
  constexpr std::string_view kName = "_ZN11KtTraverser8DescribeERK19KtPluginDescription";
  std::ifstream file(filePath(plugin), std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(file), {});
  return bytes.find(kName) != std::string::npos;
}

// What the worker itself could not say.
int failToAsk(const std::string& plugin, const WorkerResult& end) {
  using How = WorkerResult::How;
  switch (end.how) {
    case How::kReturned:
      return end.number;
    case How::kTerminated:
      return kExitInternal;
    case How::kNotStarted:
    case How::kNotLoaded:
      throw startFailure(plugin, end);
    case How::kSignal:
      return fail(kExitPlugin,
                  {plugin, tr("crashes its host while it is loaded (%1)", {crashName(end.number)}),
                   nameAnother()});
    case How::kExited:
      return fail(kExitPlugin, {plugin,
                                tr("makes its host exit while it is loaded (exit code %1)",
                                   {std::to_string(end.number)}),
                                nameAnother()});
    case How::kTimedOut:
    case How::kMemoryExceeded:
      break;
  }
  return fail(kExitPlugin, {plugin, tr("is not loaded within a minute"), nameAnother()});
}

// Options that make something of a drawing in DXF.
constexpr std::array kDrawingOptions = {
    "--dpi",        "--explode", "--format",  "--join",     "--layers", "--margin",    "--paper",
    "--plot-scale", "--preview", "--release", "--simplify", "--title",  "--true-color"};

}  // namespace

int askPlugin(const ExportOptions& options, PluginFacts& facts) {
  if (isOwnPlugin(options.plugin)) {
    return kExitDone;
  }
  facts.isOwn = false;
  if (!canDescribeItself(options.plugin)) {
    return kExitDone;
  }
  // Its constructors and its entry take milliseconds.
  WorkerLimits limits;
  limits.time = std::chrono::minutes(1);
  const WorkerResult end = runWorker({kDescribeTask, {options.plugin}}, limits);
  for (const std::string& sentence : end.notes) {
    noteFromWorker(sentence);
  }
  if (!end.Returned(kExitDone)) {
    return failToAsk(options.plugin, end);
  }
  facts = {false, "", ""};
  std::istringstream lines(end.text);
  std::getline(lines, facts.end);
  std::getline(lines, facts.format);
  return kExitDone;
}

void checkForeignFormat(const ExportOptions& options, bool isForSeveral) {
  const PluginFacts& plugin = options.pluginFacts;
  if (plugin.WritesDxf()) {
    return;
  }
  if (plugin.end.empty()) {
    throw UsageError({options.plugin, tr("writes no files"), tr("name another with --plugin")});
  }
  for (const char* name : kDrawingOptions) {
    if (std::ranges::find(options.words, name) != options.words.end()) {
      throw UsageError({options.plugin,
                        tr("writes %1, and %2 is for drawings in DXF", {plugin.format, name}),
                        tr("leave the option out")});
    }
  }
  const std::string end = isForSeveral ? "" : Destination::EndOf(options.output);
  if (!end.empty() && normalized(end) != normalized(plugin.end)) {
    throw UsageError({options.output,
                      tr("the plug-in writes %1 and not '%2'", {plugin.format, end}),
                      tr("end the name in %1", {plugin.end})});
  }
}

WorkerTask describeTask() {
  return {kDescribeTask, [](std::span<const std::string> words) {
            KtTraverser traverser;
            enterPlugin(words[0], traverser);
            const KtPluginDescription description = traverser.Description();
            tellParent(std::string(description.extension) + "\n" + printable(description.format) +
                       "\n");
            return static_cast<int>(kExitDone);
          }};
}

}  // namespace dxf2d
