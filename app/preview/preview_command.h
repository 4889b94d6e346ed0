// dxf2d preview: a picture of a drawing.
#pragma once

#include <string>

#include "app/limited_work.h"
#include "app/output_file.h"
#include "app/preview/picture.h"

struct PreviewOptions {
  std::string drawing;
  // Its end, .png, .svg or .pdf, says what it becomes.
  std::string picture;
  // Longer side of the picture: pixels for .png and .svg, points for .pdf. kMinPictureSize to
  // kMaxPictureSize.
  int size = kDefaultPictureSize;
  // Code page of the drawing's texts, as isTextCodePage takes it.
  unsigned codePage = 1252;
  Existing existing = Existing::kKeep;
  WorkLimits limits{};
};

// Reads the drawing and writes the picture. Returns an ExitCode; unless that is kExitDone, one
// sentence on stderr says why and there is no new file. What the picture leaves out is noted on
// stderr, too, and is no failure. Throws nothing.
int runPreview(const PreviewOptions& options);
