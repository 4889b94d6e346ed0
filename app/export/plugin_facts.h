// What the plug-in of an export says of itself.
#pragma once

#include "app/export/export_request.h"
#include "app/host/plugin_module.h"

namespace dxf2d {

// Loads the plug-in of `options` in a worker process and asks it, unless it is the one that belongs
// to this program or has no means to describe itself: loading is no more than the export does, and
// may have effects. Returns an exit code, after a message unless that is kExitDone; it also fails
// when it crashes or hangs while it is loaded.
int askPlugin(const ExportOptions& options, PluginFacts& facts);

// Throws UsageError for what makes no sense with a plug-in that writes other files than drawings in
// DXF: pictures, finishing, and an output whose name ends in another way than its files do.
void checkForeignFormat(const ExportOptions& options, bool isForSeveral);

}  // namespace dxf2d
