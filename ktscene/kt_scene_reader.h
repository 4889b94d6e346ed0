// Reads scene files (JSON); docs/scene-format.md describes the format.
//
// Example:
//
//   try {
//     KtScene scene = ReadSceneFile("house.json");
//   } catch (const KtSceneError& error) {
//     std::fprintf(stderr, "%s\n", error.what());  // house.json: /nodes/0/box/2: must be above 0
//   }
#pragma once

#include <string>
#include <string_view>

#include "ktscene/export.h"
#include "ktscene/kt_scene.h"
#include "ktscene/kt_scene_error.h"

// Reads the scene file at `path` (the operating system's bytes; a path with a zero byte is
// refused). Matrices and coordinates are taken as they stand. Throws KtSceneError. Nesting of any
// depth is safe: the reader keeps its place on the heap. Safe to call from several threads at a
// time.
KT_SCENE_API KtScene ReadSceneFile(const std::string& path);

// Reads the same from JSON text in memory, in UTF-8; `name` stands for the file in messages.
KT_SCENE_API KtScene ParseScene(std::string_view json, const std::string& name);
