// dxf2d: the command-line host of the plug-in.
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "app/command_line.h"
#include "app/deferred_end.h"
#include "app/exit_code.h"
#include "app/standard_streams.h"

namespace {

int run(int argc, char** argv) {
  int exitCode = kExitDone;
  const std::optional<Command> command = parseCommandLine(argc, argv, exitCode);
  if (!command) return exitCode;
  if (const auto* exporting = std::get_if<ExportOptions>(&*command)) return runExport(*exporting);
  if (const auto* inspecting = std::get_if<InspectOptions>(&*command)) {
    return runInspect(*inspecting);
  }
  return runPreview(std::get<PreviewOptions>(*command));
}

}  // namespace

int main(int argc, char** argv) {
  reserveStandardStreams();
  admitEndRequests();
  // Messages in the user's language, and nothing else: numbers in drawings have a point everywhere.
  std::setlocale(LC_MESSAGES, "");
  // A reader of our output that goes away, and a file beyond the limit on sizes, are failed writes,
  // which are reported.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  const int exitCode = run(argc, argv);
  // Not exit(): all files are closed and checked, and freeing a large scene takes time.
  std::fflush(stdout);
  std::_Exit(exitCode);
}
