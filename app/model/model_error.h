// Why a model cannot be drawn.
#pragma once

#include "app/cli/failure.h"

namespace dxf2d {

// The code is kExitInput, kExitNothingToDraw or kExitLimit.
class ModelError : public Failure {
 public:
  using Failure::Failure;
};

}  // namespace dxf2d
