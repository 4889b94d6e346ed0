// The part of dxf2d view that is done in a worker process, for the worker program alone.
#pragma once

#include "app/process/worker_program.h"

namespace dxf2d {

// Makes the page of a drawing in a work file.
WorkerTask viewTask();

}  // namespace dxf2d
