// dxf2d inspect of a scene file: what a drawing of it would lack.
#pragma once

#include "app/inspect/inspect_options.h"
#include "app/process/worker_program.h"

namespace dxf2d {

// The words are the scene file, and "json" or "text".
inline constexpr const char* kSceneTask = "scene";

// Whether the input of inspect is a scene file and no plug-in.
bool isSceneInput(const std::string& input);

// Prints what KtCheckScene finds in the scene file `options.plugin`. Returns an exit code:
// kExitInput, after a message, when something is missing from its drawing or wrong in it.
int inspectScene(const InspectOptions& options);

// Reads the scene file and prints the findings.
WorkerTask sceneTask();

}  // namespace dxf2d
