#include "app/finish/finish_task.h"

#include <utility>

#include "app/cli/failure.h"
#include "app/cli/translation.h"
#include "app/drawing/drawing_units.h"
#include "app/drawing/dxf_reader.h"
#include "app/finish/finish_command.h"
#include "app/finish/left_out.h"
#include "app/output/work_output.h"
#include "app/process/confinement.h"
#include "app/release/release_writer.h"

namespace dxf2d {

namespace {

// The options with the release, the units and the scale that follow from the drawing's own.
finish::Options completed(const FinishOptions& options, const Drawing& drawing) {
  finish::Options finishing = options.finishing;
  if (drawing.units != 0 && options.sourceUnits && *options.sourceUnits != drawing.units) {
    throw UsageError({options.drawing, tr("is in %1", {unitsName(drawing.units)}),
                      tr("leave out --source-units or give those")});
  }
  const bool isFinished = drawing.release != Release::kR10;
  finishing.release = options.release.value_or(isFinished ? drawing.release : Release::kR2000);
  const int source = options.sourceUnits.value_or(drawing.units);
  finishing.units = options.units.value_or(source);
  if (!options.units || *options.units == source) {
    return finishing;
  }
  if (!parseUnits(unitsName(source))) {
    throw UsageError(
        {options.drawing, tr("does not say its units"), tr("give its units with --source-units")});
  }
  finishing.scale = unitsRatio(source, *options.units);
  return finishing;
}

// Finishes the drawing, in the worker process. Returns an exit code.
int finishInto(const WorkOutput& output, const FinishOptions& options) {
  Drawing drawing = readDrawing(options.drawing);
  const finish::Options finishing = completed(options, drawing);
  const finish::FinishedDrawing finished = finish::finishDrawing(std::move(drawing), {}, finishing);
  finish::noteLeftOut(options.drawing, finished.drawing, finished.summary);
  release::writeDrawing(finished.drawing, [&](std::string_view bytes) { output.Write(bytes); });
  return kExitDone;
}

int finishFor(std::span<const std::string> words) {
  FinishOptions options;
  options.drawing = words[0];
  takeOptions(finishOptions(options), words.subspan(1 + WorkOutput::kWords));
  const WorkOutput output = WorkOutput::Of(words.subspan(1));
  Confinement rules{systemFiles(), {output.file}};
  rules.readable.push_back(options.drawing);
  confine(rules);
  return finishInto(output, options);
}

}  // namespace

WorkerTask finishTask() { return {kFinishTask, &finishFor}; }

}  // namespace dxf2d
