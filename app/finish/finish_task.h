// The part of dxf2d finish that is done in a worker process.
#pragma once

#include "app/process/worker_program.h"

namespace dxf2d {

// Finishes a drawing into a work file.
WorkerTask finishTask();

}  // namespace dxf2d
