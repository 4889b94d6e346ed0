// The parts of dxf2d export that are done in worker processes, for the worker program alone: what
// reads models is linked with it. See export_call.h.
#pragma once

#include "app/process/worker_program.h"

namespace dxf2d {

// Draws one model or scene into a work file and tells an ExportReport.
WorkerTask exportTask();

// Tells the list of a model, as text or as JSON.
WorkerTask listTask();

// Tells the ends of the names of models, as "*.obj;*.stl".
WorkerTask formatsTask();

}  // namespace dxf2d
