// The command line of dxf2d.
#pragma once

#include <optional>
#include <variant>

#include "app/export/export_command.h"
#include "app/inspect/inspect_command.h"
#include "app/preview/preview_command.h"

using Command = std::variant<ExportOptions, PreviewOptions, InspectOptions>;

// What the arguments ask for. Empty when that was answered right here, by help, the version or a
// complaint; `exitCode` is then the one to end with.
std::optional<Command> parseCommandLine(int argc, const char* const* argv, int& exitCode);
