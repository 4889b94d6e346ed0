// The parts of dxf2d export that are done in worker processes, for the worker program alone: what
// reads models is linked with it. See export_call.h.
#pragma once

#include "app/process/worker_program.h"

namespace dxf2d {

// Draws one model or scene into a work file and tells an ExportReport.
WorkerTask exportTask();

// Tells the list of a model, as text or as JSON.
WorkerTask listTask();

// Tells how the files of a plug-in end and, on a line of its own, what they hold.
WorkerTask describeTask();

// Tells which models are read here: a line for each reader with its name and, after a tab, the ends
// of its files' names, as ".3ds .prj".
WorkerTask formatsTask();

}  // namespace dxf2d
