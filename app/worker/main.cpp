// dxf2d-worker: what dxf2d does with files that nobody has looked at, one task to a process.
#include "app/cli/program_arguments.h"
#include "app/export/worker_tasks.h"
#include "app/finish/finish_task.h"
#include "app/importer/program_run.h"
#include "app/inspect/inspect_tasks.h"
#include "app/inspect/scene_findings.h"
#include "app/preview/preview_task.h"
#include "app/process/worker_program.h"
#include "app/view/view_task.h"

int main(int argc, char** argv) {
  const dxf2d::WorkerTask tasks[] = {
      dxf2d::exportTask(),  dxf2d::listTask(),   dxf2d::formatsTask(), dxf2d::describeTask(),
      dxf2d::previewTask(), dxf2d::finishTask(), dxf2d::importTask(),  dxf2d::lookTask(),
      dxf2d::checkTask(),   dxf2d::sceneTask(),  dxf2d::viewTask()};
  dxf2d::ProgramArguments arguments(argc, argv);
  dxf2d::runWorkerProgram(tasks, arguments.Count(), arguments.Words());
}
