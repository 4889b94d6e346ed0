// Why a model cannot be drawn.
#pragma once

#include "app/failure.h"

// The code is kExitInput, kExitNothingToDraw or kExitLimit.
class ModelError : public Failure {
 public:
  using Failure::Failure;
};
