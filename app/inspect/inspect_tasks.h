// The parts of dxf2d inspect that are done in worker processes.
#pragma once

#include "app/process/worker_program.h"

namespace dxf2d {

// Prints the slots and exports of a plug-in.
WorkerTask lookTask();

// Walks a plug-in over one kind of content, confined to a scratch directory, and prints the result.
WorkerTask walkTask();

}  // namespace dxf2d
