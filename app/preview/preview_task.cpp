#include "app/preview/preview_task.h"

#include <string>

#include "app/cli/failure.h"
#include "app/drawing/dxf_reader.h"
#include "app/output/work_output.h"
#include "app/preview/picture_output.h"
#include "app/preview/preview_command.h"
#include "app/preview/text_shaper.h"
#include "app/process/confinement.h"

namespace dxf2d {

namespace {

// Makes the picture, in the worker process. Returns an exit code.
int drawInto(const WorkOutput& output, const PictureStyle& style) {
  const Drawing drawing = readDrawing(drawingFile(style.name));
  noteSkipped(style.name, drawing);
  return writePicture(drawing, style, output);
}

int preview(std::span<const std::string> words) {
  constexpr std::size_t kJobWords = 2;
  PreviewOptions options;
  takeOptions(previewOptions(options), words.subspan(kJobWords + WorkOutput::kWords));
  PictureStyle style = options.style;
  style.name = words[0];
  style.format = *pictureFormat(words[1]);
  if (style.sheet) {
    style.sheet->units = options.sourceUnits;
  }
  const WorkOutput output = WorkOutput::Of(words.subspan(kJobWords));
  // The fonts that the user has are opened here, wherever they are.
  static_cast<void>(TextShaper(style.codePage));
  Confinement rules{systemFiles(), {output.file}};
  rules.readable.push_back(drawingFile(style.name));
  confine(rules);
  return drawInto(output, style);
}

}  // namespace

WorkerTask previewTask() { return {kPreviewTask, &preview}; }

}  // namespace dxf2d
