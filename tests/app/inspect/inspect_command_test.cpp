#include "app/inspect/inspect_command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>

#include "app/cli/exit_code.h"
#include "app/inspect/inspection_checks.h"
#include "app/process/confinement.h"
#include "tests/app/inspect/windows_module_bytes.h"
#include "tests/support/scratch_directory.h"

namespace dxf2d {

namespace {

using testing::HasSubstr;
using testing::Not;

struct Outcome {
  int code = 0;
  std::string output;
  std::string errors;
};

Outcome inspect(const InspectOptions& options) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  Outcome outcome;
  outcome.code = runInspect(options);
  outcome.output = testing::internal::GetCapturedStdout();
  outcome.errors = testing::internal::GetCapturedStderr();
  return outcome;
}

Outcome inspect(const std::string& plugin, std::chrono::seconds time = InspectOptions().time) {
  InspectOptions options;
  options.plugin = plugin;
  options.time = time;
  return inspect(options);
}

std::size_t checkCount() { return inspectionChecks(InspectOptions().seeds).size(); }

std::size_t count(const std::string& text, const std::string& part) {
  std::size_t found = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++found;
  }
  return found;
}

// The line that begins with `start`, at or after the line `heading`.
std::string lineOf(const std::string& text, const std::string& heading, const std::string& start) {
  const std::size_t at = text.find('\n' + start, text.find(heading));
  return at == std::string::npos ? "" : text.substr(at + 1, text.find('\n', at + 1) - at - 1);
}

TEST(Inspect, OwnPluginPassesEveryCheck) {
  const Outcome outcome = inspect(PLUGIN);
  EXPECT_EQ(outcome.code, kExitDone);
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(count(outcome.output, " passes\n"), checkCount());
}

TEST(Inspect, OwnPluginFillsThirteenSlots) {
  const std::string output = inspect(PLUGIN).output;
  EXPECT_EQ(count(output, " filled\n"), 13U);
  EXPECT_EQ(count(output, " null\n"), 7U);
  for (const char* slot :
       {"   8  matrix", "   9  face geometry", "  12  point set", "  13  graphic node",
        "  15  text", "  17  begin file", "  18  end file"}) {
    EXPECT_THAT(lineOf(output, "Slots:", slot), HasSubstr(" null")) << slot;
  }
}

TEST(Inspect, OwnPluginExportsItsEntryAndThirteenCallbacks) {
  const std::string output = inspect(PLUGIN).output;
  EXPECT_THAT(output, HasSubstr("Exports (14):\n"));
  EXPECT_THAT(output, HasSubstr("  InitializeTraverser\n"));
  EXPECT_THAT(output, HasSubstr("  DXF2dMatrix(double const*)\n"));
}

TEST(Inspect, PluginThatDrawsNothingPasses) {
  const Outcome outcome = inspect(COUNTING);
  EXPECT_EQ(outcome.code, kExitDone);
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(count(outcome.output, " filled\n"), 2U);
  // Each walk is the first of its process.
  EXPECT_THAT(outcome.output, HasSubstr("\n0 nodes\n  empty scene            passes\n"));
  EXPECT_THAT(outcome.output, HasSubstr("\n100001 nodes\n  deep nesting           passes\n"));
}

TEST(Inspect, RefusesATextFile) {
  const Outcome outcome = inspect(TEXT_FILE);
  EXPECT_EQ(outcome.code, kExitPlugin);
  EXPECT_THAT(outcome.errors, HasSubstr("LICENSE: is not a plug-in: it is not a loadable module"));
  EXPECT_EQ(outcome.output, "");
}

TEST(Inspect, RefusesADirectory) {
  const Outcome outcome = inspect(std::filesystem::path(TEXT_FILE).parent_path().string());
  EXPECT_EQ(outcome.code, kExitPlugin);
  EXPECT_THAT(outcome.errors, HasSubstr("is not a plug-in"));
}

TEST(Inspect, MissingFileIsNamed) {
  const Outcome outcome = inspect("no/such/plugin.so");
  EXPECT_EQ(outcome.code, kExitPlugin);
  EXPECT_EQ(
      outcome.errors,
      "dxf2d: no/such/plugin.so: cannot be read: No such file or directory; check the name\n");
}

TEST(Inspect, ListsWhatAPluginForWindowsExports) {
  const ScratchDirectory scratch;
  const std::string plugin = scratch / "plugin.dll";
  const WindowsModuleBytes module({"_Z14DXF2dCloseNodev", "InitializeTraverser"});
  ScratchDirectory::Fill(plugin, module.Bytes());
  const Outcome outcome = inspect(plugin);
  EXPECT_EQ(outcome.code, kExitDone);
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(outcome.output,
            "A plug-in for Windows; there, dxf2d inspect says more.\n"
            "Exports (2):\n  DXF2dCloseNode()\n  InitializeTraverser\n");

  InspectOptions options;
  options.plugin = plugin;
  options.isJson = true;
  const auto report = nlohmann::json::parse(inspect(options).output);
  EXPECT_EQ(report, (nlohmann::json{{"plugin", plugin},
                                    {"system", "Windows"},
                                    {"exports", {"DXF2dCloseNode()", "InitializeTraverser"}}}));

  ScratchDirectory::Fill(plugin, WindowsModuleBytes({"Walk"}).Bytes());
  const Outcome without = inspect(plugin);
  EXPECT_EQ(without.code, kExitPlugin);
  EXPECT_THAT(without.errors, HasSubstr("it has no InitializeTraverser"));
}

TEST(Inspect, RefusesAModuleWithoutTheEntry) {
  const Outcome outcome = inspect(LACKS_THE_ENTRY);
  EXPECT_EQ(outcome.code, kExitPlugin);
  EXPECT_THAT(outcome.errors, HasSubstr("has no InitializeTraverser"));
  EXPECT_EQ(outcome.output, "");
}

TEST(Inspect, RefusesAProgram) { EXPECT_EQ(inspect(PROGRAM).code, kExitPlugin); }

TEST(Inspect, PluginThatRefusesHostsIsReported) {
  const Outcome outcome = inspect(REFUSES_HOSTS);
  EXPECT_EQ(outcome.code, kExitPlugin);
  EXPECT_THAT(outcome.errors, HasSubstr("refuses this program"));
}

TEST(Inspect, CrashWhileLoadingIsASentence) {
  const Outcome outcome = inspect(CRASHES_AT_LOAD);
  EXPECT_EQ(outcome.code, kExitPlugin);
  EXPECT_THAT(outcome.errors, HasSubstr("crashes its host while it is loaded (Aborted); "));
}

TEST(Inspect, ConstructorThatHangsIsASentence) {
  const Outcome outcome = inspect(HANGS_AT_LOAD, std::chrono::seconds(1));
  EXPECT_EQ(outcome.code, kExitPlugin);
  EXPECT_THAT(outcome.errors, HasSubstr("is not loaded within 1 seconds; "));
}

TEST(Inspect, FifoIsNotWaitedFor) {
  const ScratchDirectory scratch;
  const std::string fifo = scratch / "fifo.so";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  const Outcome outcome = inspect(fifo);
  EXPECT_EQ(outcome.code, kExitPlugin);
  EXPECT_THAT(outcome.errors, HasSubstr("it is not a regular file; "));
}

TEST(Inspect, TellsHowReadersAreConfined) {
  const std::string output = inspect(PLUGIN).output;
  const ConfinementStatus status = availableConfinement();
  EXPECT_THAT(lineOf(output, "Confinement", "  files"),
              HasSubstr(status.fileRules == 0 ? "not available" : "Landlock"));
  EXPECT_THAT(lineOf(output, "Confinement", "  system calls"),
              HasSubstr(status.callFilter ? "seccomp" : "not available"));
}

TEST(Inspect, CrashInAWalkNamesTheContent) {
  const Outcome outcome = inspect(CRASHES_ON_LABELS);
  EXPECT_EQ(outcome.code, kExitPlugin);
  EXPECT_THAT(lineOf(outcome.output, "Checks:", "  labels"),
              HasSubstr("crashes its host (Aborted)"));
  EXPECT_THAT(lineOf(outcome.output, "Checks:", "  everything"), HasSubstr("crashes its host"));
  EXPECT_THAT(lineOf(outcome.output, "Checks:", "  line sets"), HasSubstr(" passes"));
  EXPECT_THAT(outcome.errors, HasSubstr("fails "));
  EXPECT_THAT(outcome.errors, HasSubstr(" of " + std::to_string(checkCount()) + " checks"));
}

TEST(Inspect, PluginThatEndsItsHostFails) {
  const Outcome outcome = inspect(ENDS_ITS_HOST);
  EXPECT_EQ(outcome.code, kExitPlugin);
  EXPECT_THAT(lineOf(outcome.output, "Checks:", "  bounds  "),
              HasSubstr("makes its host exit (exit code 77)"));
}

TEST(Inspect, ExceptionIsQuoted) {
  const Outcome outcome = inspect(THROWS_ON_LINES);
  EXPECT_EQ(outcome.code, kExitPlugin);
  EXPECT_THAT(lineOf(outcome.output, "Checks:", "  line sets"),
              HasSubstr("fails: throws \"lines are beyond me\""));
}

TEST(Inspect, RefusedFileComesWithTheErrorBox) {
  const Outcome outcome = inspect(WRITES_NOWHERE);
  EXPECT_EQ(outcome.code, kExitPlugin);
  EXPECT_THAT(lineOf(outcome.output, "Checks:", "  empty scene"), HasSubstr("(the pen is dry)"));
  EXPECT_THAT(outcome.output, Not(HasSubstr(" passes\n")));
}

// ---- Conduct

TEST(Inspect, ExamplesAndASoundPluginPass) {
  for (const char* plugin : {MINIMAL_PLUGIN, SVG_PLUGIN, SOUND}) {
    const Outcome outcome = inspect(plugin);
    EXPECT_EQ(outcome.code, kExitDone) << outcome.output;
    EXPECT_EQ(outcome.errors, "");
  }
}

// Each plug-in has one fault; `check` is where it is found.
void expectFault(const std::string& plugin, const std::string& check, const std::string& fault) {
  const Outcome outcome = inspect(plugin);
  EXPECT_EQ(outcome.code, kExitPlugin) << plugin;
  EXPECT_THAT(lineOf(outcome.output, "Checks:", "  " + check), HasSubstr("fails: " + fault))
      << outcome.output;
}

TEST(Inspect, RefusedSecondWalkIsFound) {
  expectFault(REFUSES_SECOND_WALK, "second walk", "returns false from opening or closing the file");
}

TEST(Inspect, FileThatIsNotWrittenIsFound) {
  expectFault(WRITES_NOTHING, "empty scene", "returns true and writes nothing");
}

TEST(Inspect, FileThatStaysOpenIsFound) {
  expectFault(LEAKS_ITS_FILE, "empty scene", "leaves a file open (");
}

TEST(Inspect, ChangedLocaleIsFound) {
  expectFault(SETS_THE_LOCALE, "empty scene", "changes the locale of the process to C.UTF-8");
}

TEST(Inspect, KeptPointerIsFound) {
  expectFault(KEEPS_A_LENT_POINTER, "objects taken back", "crashes its host (Segmentation fault)");
}

TEST(Inspect, KeptNumbersAreFound) {
  expectFault(KEEPS_LENT_NUMBERS, "objects taken back",
              "draws something else when what it was lent is gone");
}

TEST(Inspect, IgnoredFileErrorIsFound) {
  expectFault(IGNORES_AN_UNCREATABLE_FILE, "file not to be created",
              "returns true for a file that cannot be written");
  expectFault(IGNORES_AN_UNCREATABLE_FILE, "full disk",
              "returns true for a file that cannot be written");
}

TEST(Inspect, ThreadThatStaysIsFound) {
  expectFault(LEAVES_A_THREAD, "empty scene", "leaves 2 threads where there was 1");
}

TEST(Inspect, CallsAtRandomAreTheSameForASeed) {
  InspectOptions options;
  options.plugin = SOUND;
  options.seeds = 7;
  const std::string output = inspect(options).output;
  EXPECT_THAT(output, HasSubstr("  random calls, seed 7   passes\n"));
  EXPECT_EQ(output, inspect(options).output);
}

TEST(Inspect, ReportAsJsonHasTheSame) {
  InspectOptions options;
  options.plugin = SETS_THE_LOCALE;
  options.isJson = true;
  const Outcome outcome = inspect(options);
  EXPECT_EQ(outcome.code, kExitPlugin);
  // The plug-in prints, too.
  const auto json = nlohmann::json::parse(outcome.output);
  EXPECT_EQ(json["plugin"], SETS_THE_LOCALE);
  EXPECT_EQ(json["passed"], false);
  EXPECT_EQ(json["slots"].size(), 20U);
  EXPECT_EQ(json["exports"][0], "InitializeTraverser");
  EXPECT_EQ(json["description"]["extension"], ".dxf");
  EXPECT_EQ(json["checks"].size(), checkCount());
  EXPECT_EQ(json["checks"][0]["passed"], false);
  EXPECT_EQ(json["checks"][0]["fault"], "changes the locale of the process to C.UTF-8");
}

// ---- Scene files

constexpr const char* kSoundScene =
    R"({"nodes": [{"graphicName": "g", "objectId": "o", "realObjectId": "o",
                   "geometry": [{"box": [1, 1, 1]}]}]})";
constexpr const char* kFaultyScene = R"({"nodes": [{"geometry": [{"box": [1, 1, 1]}]}]})";

TEST(InspectScene, WithoutFindingsPasses) {
  const ScratchDirectory scratch;
  const std::string scene = scratch / "scene.json";
  ScratchDirectory::Fill(scene, kSoundScene);
  const Outcome outcome = inspect(scene);
  EXPECT_EQ(outcome.code, kExitDone) << outcome.errors;
  EXPECT_EQ(outcome.output, scene + ": no findings\n");
}

TEST(InspectScene, NamesTheNodeAndWhatToDo) {
  const ScratchDirectory scratch;
  const std::string scene = scratch / "scene.json";
  ScratchDirectory::Fill(scene, kFaultyScene);
  const Outcome outcome = inspect(scene);
  EXPECT_EQ(outcome.code, kExitInput);
  EXPECT_EQ(outcome.output,
            scene +
                ": /nodes/0: error: is in no object, and nothing places it; give it "
                "or a node above it an objectId\n");
  EXPECT_EQ(
      outcome.errors,
      "dxf2d: " + scene +
          ": has 1 part that is missing from its drawing or wrong in it; see the report above\n");
}

TEST(InspectScene, ReportAsJsonHasTheSame) {
  const ScratchDirectory scratch;
  InspectOptions options;
  options.plugin = scratch / "scene.json";
  options.isJson = true;
  ScratchDirectory::Fill(options.plugin, kFaultyScene);
  const auto json = nlohmann::json::parse(inspect(options).output);
  EXPECT_EQ(json["passed"], false);
  EXPECT_EQ(json["findings"][0]["node"], "/nodes/0");
  EXPECT_EQ(json["findings"][0]["severity"], "error");
}

TEST(InspectScene, ThatIsNoneIsRefused) {
  const ScratchDirectory scratch;
  const std::string scene = scratch / "scene.json";
  ScratchDirectory::Fill(scene, "{");
  const Outcome outcome = inspect(scene);
  EXPECT_EQ(outcome.code, kExitInput);
  EXPECT_EQ(outcome.output, "");
  EXPECT_THAT(outcome.errors, HasSubstr(scene + ": is not JSON"));
}

// The directory for temporary files, for as long as this lives.
class TemporaryDirectoryIs {
 public:
  explicit TemporaryDirectoryIs(const std::string& directory) {
    if (const char* before = std::getenv("TMPDIR")) {
      before_ = before;
    }
    setenv("TMPDIR", directory.c_str(), 1);
  }
  ~TemporaryDirectoryIs() { before_ ? setenv("TMPDIR", before_->c_str(), 1) : unsetenv("TMPDIR"); }
  TemporaryDirectoryIs(const TemporaryDirectoryIs&) = delete;
  TemporaryDirectoryIs& operator=(const TemporaryDirectoryIs&) = delete;

 private:
  std::optional<std::string> before_;
};

TEST(Inspect, LeavesNoFileBehind) {
  const ScratchDirectory scratch;
  const TemporaryDirectoryIs temporary(scratch / "");
  EXPECT_EQ(inspect(PLUGIN).code, kExitDone);
  EXPECT_EQ(inspect(CRASHES_ON_LABELS).code, kExitPlugin);
  EXPECT_EQ(scratch.FileCount(), 0U);
}

TEST(Inspect, TerminationSignalLeavesNoFileAndPrintsNothing) {
  const ScratchDirectory scratch;
  const TemporaryDirectoryIs temporary(scratch / "");
  InspectOptions options;
  options.plugin = TERMINATES_ITS_HOST;
  EXPECT_EXIT(std::_Exit(runInspect(options)), testing::KilledBySignal(SIGTERM),
              testing::IsEmpty());
  EXPECT_EQ(scratch.FileCount(), 0U);
}

TEST(Inspect, ReportIntoAClosedPipeIsAFailedWrite) {
  const auto inspectUnheard = [] {
    static_cast<void>(std::freopen("/dev/full", "w", stdout));
    InspectOptions options;
    options.plugin = PLUGIN;
    std::_Exit(runInspect(options));
  };
  EXPECT_EXIT(inspectUnheard(), testing::ExitedWithCode(kExitWriteFailed), "standard output");
}

TEST(Inspect, ReportThatIsCutIsAFailedWrite) {
  const ScratchDirectory scratch;
  // Room for all but the walks.
  const rlim_t room = inspect(PLUGIN).output.find("Checks:") + 20;
  const auto inspectHalfHeard = [&] {
    const rlimit limit{room, room};
    std::signal(SIGXFSZ, SIG_IGN);
    static_cast<void>(std::freopen((scratch / "report").c_str(), "w", stdout));
    setrlimit(RLIMIT_FSIZE, &limit);
    InspectOptions options;
    options.plugin = PLUGIN;
    std::_Exit(runInspect(options));
  };
  EXPECT_EXIT(inspectHalfHeard(), testing::ExitedWithCode(kExitWriteFailed), "standard output");
}

TEST(Inspect, DirectoryThatTakesNoFilesIsNamed) {
  const TemporaryDirectoryIs temporary("/proc");
  const Outcome outcome = inspect(PLUGIN);
  EXPECT_EQ(outcome.code, kExitOutputNotMade);
  EXPECT_THAT(outcome.errors, HasSubstr("/proc: a temporary directory cannot be created in it"));
}

TEST(Inspect, InvalidTemporaryDirectoryIsNotUsed) {
  const TemporaryDirectoryIs temporary(TEXT_FILE);
  EXPECT_EQ(inspect(PLUGIN).code, kExitDone);
}

}  // namespace

}  // namespace dxf2d
