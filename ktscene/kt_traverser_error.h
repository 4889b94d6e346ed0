// What KtTraverser refuses.
#pragma once

#include <stdexcept>

#include "ktscene/export.h"

// A plug-in that cannot be loaded, or a walk that cannot be made. what() is one sentence in UTF-8,
// which names the offender and what to do.
class KT_SCENE_API KtTraverserError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  ~KtTraverserError() override;
};
