// Reads scene files (JSON); docs/scene-format.md describes them.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "ktscene/export.h"
#include "ktscene/kt_scene.h"

// A scene file that cannot be read or breaks a rule. what() is one sentence in UTF-8 that names the
// file, the JSON pointer of the offender (where there is one) and the reason.
class KT_SCENE_API KtSceneError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  ~KtSceneError() override;
};

// Reads the scene file at `path` (the operating system's bytes). Throws KtSceneError.
KT_SCENE_API KtScene ReadSceneFile(const std::string& path);

// The same from JSON text in memory; `name` stands for the file in messages.
KT_SCENE_API KtScene ParseScene(std::string_view json, const std::string& name);
