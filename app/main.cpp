// dxf2d: the command-line host of the plug-in.
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "app/batch/report_command.h"
#include "app/cli/command_line.h"
#include "app/export/export_command.h"
#include "app/export/formats_command.h"
#include "app/finish/finish_command.h"
#include "app/inspect/inspect_command.h"
#include "app/preview/preview_command.h"
#include "app/process/standard_streams.h"
#include "app/process/termination_signals.h"
#include "app/view/view_command.h"

namespace {

constexpr const char* kAbout =
    "Draws plans of 3D models as DXF: outlines seen from one direction, flat, in the model's own "
    "units.";

constexpr const char* kExitCodes =
    "Exit codes: 0 done, 1 internal error, 2 wrong usage, 3 unreadable input, 4 nothing to draw, "
    "5 output cannot be created, 6 writing failed, 7 limit exceeded, 8 plug-in missing or invalid, "
    "9 output exists, 10 some of several models failed. A termination signal, such as that of "
    "Ctrl-C, ends the program by that signal after it has cleaned up.";

}  // namespace

int main(int argc, char** argv) {
  dxf2d::reserveStandardStreams();
  dxf2d::unblockTerminationSignals();
  // Messages in the user's language, and nothing else: numbers in drawings always have a point.
  std::setlocale(LC_MESSAGES, "");
  // EPIPE and EFBIG are reported as failed writes.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  const dxf2d::Program program{
      kAbout,
      "dxf2d " DXF2D_VERSION,
      kExitCodes,
      {dxf2d::exportCommand(), dxf2d::finishCommand(), dxf2d::previewCommand(),
       dxf2d::viewCommand(), dxf2d::inspectCommand(), dxf2d::formatsCommand(),
       dxf2d::reportCommand()}};
  const int exitCode = dxf2d::runCommandLine(program, argc, argv);
  // Not exit(): all files are closed and checked, and freeing a large scene takes time.
  std::fflush(stdout);
  std::_Exit(exitCode);
}
