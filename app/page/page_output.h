// Pages as outputs of a worker process.
#pragma once

#include "app/drawing/drawing.h"
#include "app/output/work_output.h"
#include "app/page/page.h"

namespace dxf2d::page {

// Writes the page to `output`; notes on stderr what it leaves out. Returns an exit code, after a
// message unless that is kExitDone. Throws as makePage and WorkOutput::Write do.
int writePage(const Drawing& drawing, const PageStyle& style, const WorkOutput& output);

}  // namespace dxf2d::page
