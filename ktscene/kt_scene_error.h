// The refusal of a scene file.
#pragma once

#include <stdexcept>

#include "ktscene/export.h"

// A scene file that cannot be read or breaks a rule of the format. what() is one sentence in UTF-8,
// without a line feed: the file's name, the JSON pointer (RFC 6901) of the offender where there is
// one, and the reason, each followed by ": ".
class KT_SCENE_API KtSceneError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  ~KtSceneError() override;
};
