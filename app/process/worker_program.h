// The side of a worker process: a program that does one task for its parent (see runWorker) and
// ends.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dxf2d {

struct WorkerTask {
  const char* name;
  // Does the task for the words of a WorkerCall. Returns an exit code; unless that is kExitDone,
  // it has said why (`fail`), or throws. std::bad_alloc becomes a refused allocation, and so does a
  // Failure after one.
  std::function<int(std::span<const std::string>)> run;
};

// Does the task of the command line, which is of the form that runWorker starts workers with, and
// ends the process without destroying anything. Before that, closes all descriptors that the task
// does not need, sets the limits, and lets the process end with its parent. Its stack may grow to
// 120 MiB, since importers recurse with the depth of a model. What the task says (`note`, `fail`)
// goes to the parent. For the start of the program.
[[noreturn]] void runWorkerProgram(std::span<const WorkerTask> tasks, int argc, char** argv);

// Tells the parent what this process does next, such as "reading".
void beginStage(std::string_view name);

// Adds to what the parent gets as WorkerResult::text.
void tellParent(std::string_view text);

}  // namespace dxf2d
