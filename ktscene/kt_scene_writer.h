// Writes scene files (JSON), for bug reports and for exports elsewhere; docs/scene-format.md
// describes the format.
#pragma once

#include <string>

#include "ktscene/export.h"
#include "ktscene/kt_scene.h"
#include "ktscene/kt_scene_error.h"

// The text of the scene file that holds `scene`, in UTF-8. ParseScene makes the same scene from it,
// every number to the last bit, except for what files cannot hold: of a material they keep only the
// diffuse color (unless the node has a color), and user data is left out. Sets that nodes share are
// written for each, and borrowed ones like the others. Any depth is safe. Throws KtSceneError, with
// `name` for the file and the JSON pointer of the offender, for what is not allowed in a file, such
// as numbers that are not finite or beyond 1e15 and lone surrogates.
KT_SCENE_API std::string SceneText(const KtScene& scene, const std::string& name);

// Writes the same to the file at `path` (the operating system's bytes), which is complete or as it
// was before (see KtOutputFile). Throws KtSceneError, and std::system_error when the file cannot be
// written.
KT_SCENE_API void WriteSceneFile(const KtScene& scene, const std::string& path);
