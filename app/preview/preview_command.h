// dxf2d preview: pictures of drawings.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/cli/command.h"
#include "app/output/output_file.h"
#include "app/preview/picture.h"
#include "app/process/input_task.h"

namespace dxf2d {

struct PreviewOptions {
  // At least one; "-" is standard input.
  std::vector<std::string> drawings;
  // The picture of a single drawing, "-" for standard output; or, for several and with a slash at
  // its end, the directory for pictures that are named after their drawings.
  std::string output;
  // Nothing: what the end of the picture's name says, .png, .svg or .pdf, and PNG in a directory.
  std::optional<PictureFormat> format{};
  // Its format is that above. The size is kMinPictureSize to kMaxPictureSize: pixels of PNG and
  // SVG pictures, points of PDF.
  PictureStyle style{};
  // Of drawings that do not say theirs, as parseUnits numbers them; 0: unknown.
  int sourceUnits = 0;
  Existing existing = Existing::kKeep;
  ResourceLimits limits{};
  // All of the above but the drawings, for worker processes.
  OptionWords words{};
  Verbosity verbosity{};
};

inline constexpr const char* kPreviewTask = "preview";

// The file of a drawing: standard input for "-".
std::string drawingFile(const std::string& drawing);

// The options of the command line, which store into `options`.
std::vector<Option> previewOptions(PreviewOptions& options);

// The command with its options.
Command previewCommand();

// Has a worker process read each drawing and draw its picture, and writes it. Returns an ExitCode;
// unless that is kExitDone, there is one message on stderr for each drawing that failed, and no new
// file for it. What a picture leaves out is noted on stderr, too, and is not a failure. Throws
// nothing.
int runPreview(const PreviewOptions& options);

}  // namespace dxf2d
