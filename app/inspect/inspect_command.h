// dxf2d inspect: what is in a plug-in, and whether it stands a walk.
#pragma once

#include <chrono>
#include <string>

#include "app/cli/command.h"

namespace dxf2d {

struct InspectOptions {
  std::string plugin;
  // For loading it, which runs its constructors, and for each walk: both take milliseconds.
  std::chrono::seconds time{60};
};

// Names of worker tasks. The words of the first are the plug-in; of the second the plug-in, the
// number of the scene, and a directory for its drawing.
inline constexpr const char* kLookTask = "look";
inline constexpr const char* kWalkTask = "walk";

// The command with its options.
Command inspectCommand();

// Prints the plug-in's slots, its exports, how walks are confined, and the result of a walk over
// every kind of content. The plug-in runs in worker processes, so that its crash is reported and
// not shared. Returns an ExitCode; unless that is kExitDone, there is one message on stderr. Leaves
// no file behind. Throws nothing.
int runInspect(const InspectOptions& options);

}  // namespace dxf2d
