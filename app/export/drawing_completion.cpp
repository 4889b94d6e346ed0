#include "app/export/drawing_completion.h"

#include <utility>

#include "app/cli/exit_code.h"
#include "app/drawing/dxf_reader.h"
#include "app/finish/left_out.h"
#include "app/output/mapped_file.h"
#include "app/page/page_output.h"
#include "app/preview/picture_output.h"
#include "app/release/release_writer.h"

namespace dxf2d {

namespace {

page::ObjectNames namesOf(const finish::SideTable& sources) {
  page::ObjectNames names;
  for (const auto& [block, source] : sources.blocks) {
    if (!source.object.name.empty()) {
      names.blocks.emplace(block, source.object.name);
    }
  }
  for (const finish::InsertSource& insert : sources.inserts) {
    names.inserts.push_back({insert.block, insert.object.name});
  }
  return names;
}

}  // namespace

int completeDrawing(const Completion& completion, const finish::SideTable& sources,
                    const std::string& name, const WorkOutput& output,
                    const std::optional<WorkOutput>& preview, CompletionReport& report) {
  Drawing drawing = parseDrawing(MappedFile(output.path, output.name).Bytes(), name);
  if (completion.finishing) {
    finish::FinishedDrawing finished =
        finish::finishDrawing(std::move(drawing), sources, *completion.finishing);
    drawing = std::move(finished.drawing);
    report.finishing = finished.summary;
    finish::noteLeftOut(name, drawing, report.finishing);
  }
  report.counts = countDrawing(drawing);
  if (completion.picture) {
    output.Clear();
    if (const int code = writePicture(drawing, *completion.picture, output); code != kExitDone) {
      return code;
    }
  } else if (completion.page) {
    output.Clear();
    page::PageStyle style = *completion.page;
    style.names = namesOf(sources);
    if (const int code = page::writePage(drawing, style, output); code != kExitDone) {
      return code;
    }
  } else if (completion.finishing) {
    output.Clear();
    release::writeDrawing(drawing, [&](std::string_view bytes) { output.Write(bytes); });
  }
  return completion.preview ? writePicture(drawing, *completion.preview, *preview)
                            : static_cast<int>(kExitDone);
}

}  // namespace dxf2d
