// The part of dxf2d preview that is done in a worker process, for the worker program alone: what
// draws is linked with it.
#pragma once

#include "app/process/worker_program.h"

namespace dxf2d {

// Draws a picture of a drawing into a work file.
WorkerTask previewTask();

}  // namespace dxf2d
