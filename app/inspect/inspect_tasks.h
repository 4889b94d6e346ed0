// The parts of dxf2d inspect that are done in worker processes.
#pragma once

#include "app/process/worker_program.h"

namespace dxf2d {

// Tells the description, slots and exports of a plug-in as JSON.
WorkerTask lookTask();

// Makes one of inspectionChecks, confined to a scratch directory, and tells what is wrong, or
// nothing.
WorkerTask checkTask();

}  // namespace dxf2d
