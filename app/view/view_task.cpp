#include "app/view/view_task.h"

#include <filesystem>
#include <string>

#include "app/cli/failure.h"
#include "app/cli/file_path.h"
#include "app/drawing/drawing_units.h"
#include "app/drawing/dxf_reader.h"
#include "app/model/length_unit.h"
#include "app/output/work_output.h"
#include "app/page/page_output.h"
#include "app/process/confinement.h"
#include "app/view/view_command.h"

namespace dxf2d {

namespace {

page::PageStyle styleOf(const std::string& drawing, const ExportOptions& options) {
  page::PageStyle style;
  style.title = drawing == "-" ? "Drawing" : filePath(drawing).filename().string();
  if (options.picture.sheet && options.picture.sheet->title) {
    style.title = *options.picture.sheet->title;
  }
  style.codePage = options.codePage;
  if (options.plan.sourceUnits) {
    style.units = parseUnits(unitName(*options.plan.sourceUnits)).value_or(0);
  }
  style.name = drawing;
  return style;
}

int view(std::span<const std::string> words) {
  const std::string& drawing = words[0];
  ExportOptions options;
  takeOptions(viewOptions(options), words.subspan(1 + WorkOutput::kWords));
  const WorkOutput output = WorkOutput::Of(words.subspan(1));
  const std::string file = drawing == "-" ? "/dev/stdin" : drawing;
  Confinement rules{systemFiles(), {output.file}};
  rules.readable.push_back(file);
  confine(rules);
  const Drawing read = readDrawing(file);
  noteSkipped(drawing, read);
  return page::writePage(read, styleOf(drawing, options), output);
}

}  // namespace

WorkerTask viewTask() { return {kViewTask, &view}; }

}  // namespace dxf2d
