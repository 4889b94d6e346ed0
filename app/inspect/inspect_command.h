// dxf2d inspect: what is in a plug-in, and whether hosts can rely on it.
#pragma once

#include "app/cli/command.h"
#include "app/inspect/inspect_options.h"

namespace dxf2d {

// Names of worker tasks. The words of the first are the plug-in; of the second the plug-in, the
// number of the check, a directory for its drawings, and the number of seeds.
inline constexpr const char* kLookTask = "look";
inline constexpr const char* kCheckTask = "check";

// The command with its options.
Command inspectCommand();

// Prints the plug-in's description, slots and exports, how its process is confined, and the result
// of each of inspectionChecks, as text or as one JSON object. The plug-in runs in worker processes,
// one for each check, so that its crash is reported and not shared. Returns an ExitCode; unless
// that is kExitDone, there is one message on stderr. Leaves no file behind. Throws nothing.
int runInspect(const InspectOptions& options);

}  // namespace dxf2d
