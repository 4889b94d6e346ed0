// dxf2d: the command-line host of the plug-in.
#include <cstdio>
#include <cstdlib>

#include "app/batch/report_command.h"
#include "app/cli/catalog.h"
#include "app/cli/command_line.h"
#include "app/cli/help_command.h"
#include "app/cli/program_arguments.h"
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

constexpr const char* kEnding =
    "A termination signal, such as that of Ctrl-C, ends the program by that signal after it has "
    "cleaned up.";

dxf2d::Program describedProgram() {
  dxf2d::Program program;
  program.about = kAbout;
  program.version = "dxf2d " DXF2D_VERSION;
  program.date = DXF2D_DATE;
  program.ending = kEnding;
  program.exitCodes = {{"0", "done"},
                       {"1", "internal error"},
                       {"2", "wrong usage"},
                       {"3", "unreadable input"},
                       {"4", "nothing to draw"},
                       {"5", "output cannot be created"},
                       {"6", "writing failed"},
                       {"7", "limit exceeded"},
                       {"8", "plug-in missing or invalid"},
                       {"9", "output exists"},
                       {"10", "some of several models failed"}};
  program.environment = {
      {"CI", "If set, no progress is shown."},
      {"DXF2D_IMPORTER_PATH", "Directories, with colons between them, to look for importers in."},
      {"KT_THREADS", "The number of threads for a large face set or line set."},
      {"NO_COLOR", "If set, nothing on terminals is bold or colored."},
      {"TMPDIR", "The directory for temporary files."},
      {"XDG_CONFIG_HOME",
       "The directory of the configuration file dxf2d.toml, in place of "
       "~/.config."}};
  program.commands = {dxf2d::exportCommand(), dxf2d::finishCommand(),  dxf2d::previewCommand(),
                      dxf2d::viewCommand(),   dxf2d::inspectCommand(), dxf2d::formatsCommand(),
                      dxf2d::reportCommand()};
  return program;
}

}  // namespace

int main(int argc, char** argv) {
  dxf2d::ProgramArguments arguments(argc, argv);
  dxf2d::reserveStandardStreams();
  dxf2d::unblockTerminationSignals();
  dxf2d::ignoreWriteSignals();
  dxf2d::findCatalogs();
  dxf2d::Program program = describedProgram();
  dxf2d::addHelpCommands(program);
  const int exitCode = dxf2d::runCommandLine(program, arguments.Count(), arguments.Words());
  // Not exit(): all files are closed and checked, and freeing a large scene takes time.
  std::fflush(stdout);
  std::_Exit(exitCode);
}
