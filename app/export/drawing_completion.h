// From the plug-in's drawing to what the user wants: a finished drawing, a picture, a page.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "app/export/drawing_counts.h"
#include "app/finish/finishing.h"
#include "app/output/work_output.h"
#include "app/page/page.h"
#include "app/preview/picture.h"

namespace dxf2d {

// What becomes of the drawing in the file that the plug-in wrote.
struct Completion {
  // Nothing: the drawing stays as the plug-in made it.
  std::optional<finish::Options> finishing;
  // The picture in place of the drawing, if any.
  std::optional<PictureStyle> picture;
  // The page in place of the drawing, if any; the names are those of the side table.
  std::optional<page::PageStyle> page;
  // The picture beside it, if any.
  std::optional<PictureStyle> preview;

  bool IsNeeded() const { return finishing || picture || page || preview; }
};

// What the summary says of it.
struct CompletionReport {
  finish::Summary finishing;
  DrawingCounts counts;
};

// Replaces the plug-in's drawing in `output` by what `completion` asks for, and writes the preview,
// if it asks for one. `name` is what messages call the drawing. Returns an exit code, after a
// message unless that is kExitDone. Throws Failures.
int completeDrawing(const Completion& completion, const finish::SideTable& sources,
                    const std::string& name, const WorkOutput& output,
                    const std::optional<WorkOutput>& preview, CompletionReport& report);

}  // namespace dxf2d
