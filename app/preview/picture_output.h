// Pictures as outputs of a worker process.
#pragma once

#include "app/drawing/drawing.h"
#include "app/output/work_output.h"
#include "app/preview/picture.h"

namespace dxf2d {

// Draws the picture and writes it to `output`; notes on stderr what it leaves out. Returns an exit
// code, after a message unless that is kExitDone. Throws as drawPicture and WorkOutput::Write do.
int writePicture(const Drawing& drawing, const PictureStyle& style, const WorkOutput& output);

}  // namespace dxf2d
