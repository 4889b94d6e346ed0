// The exit codes of dxf2d: the same number means the same thing in every command.
#pragma once

namespace dxf2d {

enum ExitCode : int {
  kExitDone = 0,
  kExitInternal = 1,       // a bug in the program itself
  kExitUsage = 2,          // the command line is wrong
  kExitInput = 3,          // the input is unreadable or malformed, or crashes the importer
  kExitNothingToDraw = 4,  // the input is valid and contains nothing that can be drawn
  kExitOutputNotMade = 5,  // the output cannot be created
  kExitWriteFailed = 6,    // the output was created and writing it failed
  kExitLimit = 7,          // the input exceeds a limit on memory, time, nodes or vertices
  kExitPlugin = 8,         // the plug-in is missing, invalid or fails
  kExitOutputExists = 9,   // the output exists and --force was not given
  kExitSomeFailed = 10,    // some of several inputs failed
};

}  // namespace dxf2d
