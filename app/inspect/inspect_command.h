// dxf2d inspect: what is in a plug-in, and whether it stands a walk.
#pragma once

#include <string>

struct InspectOptions {
  std::string plugin;
};

// Prints the plug-in's slots, its exports and how it stands a walk over every kind of content.
// The plug-in runs in processes of their own, so that one that fails is reported and not followed.
// Returns an ExitCode; unless that is kExitDone, one sentence on stderr says why. Leaves no file
// behind. Throws nothing.
int runInspect(const InspectOptions& options);
