// The exit codes of dxf2d: the same number means the same thing in every command.
#pragma once

enum ExitCode : int {
  kExitDone = 0,
  kExitInternal = 1,       // a fault of the program itself
  kExitUsage = 2,          // the command line asks for something that there is not
  kExitInput = 3,          // the input is unreadable, malformed, or brings its reader down
  kExitNothingToDraw = 4,  // the input is sound and holds nothing that can be drawn
  kExitOutputNotMade = 5,  // the output cannot be created
  kExitWriteFailed = 6,    // the output was created and writing it failed
  kExitLimit = 7,          // the input takes more memory, time, nodes or vertices than it may
  kExitPlugin = 8,         // the plug-in is missing or is none
  kExitOutputExists = 9,   // the output exists and --force was not given
  kExitSomeFailed = 10,    // some of several inputs failed
};
