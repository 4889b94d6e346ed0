// Worker processes that are forked from one that is ready, and not started one by one.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/process/worker_call.h"

namespace dxf2d {

// The worker program, started once and waiting: for each call it forks a worker, which takes a
// fraction of the time that starting the program takes. Such a worker is in nothing else different
// from one that was started: it is a child of this process, which limits, watches and reaps it; it
// sets its own limits, has no descriptors but those of its call, and ends with this process.
//
// Belongs to the thread of its first call, with which the system ends it and its workers. No two
// threads may use it at a time.
class WorkerTemplate {
 public:
  // `program` is that of the calls (see WorkerCall); others are not forked. `libraries`, by their
  // paths, are what its tasks load; they are trusted, since nothing confines the template. Starts
  // nothing yet.
  explicit WorkerTemplate(std::string program = {}, std::vector<std::string> libraries = {});
  ~WorkerTemplate();
  WorkerTemplate(const WorkerTemplate&) = delete;
  WorkerTemplate& operator=(const WorkerTemplate&) = delete;

  // Forks a worker for `call`, which reports to the descriptor `report`, and returns its process.
  // Starts the template if there is none or it was ended. Returns nothing where no worker can be
  // forked, or once `signals` is readable: the program is to be started for this call. For
  // runWorker.
  std::optional<long> Fork(const WorkerCall& call, const WorkerLimits& limits, int report,
                           int signals);

  // The process that waits; 0 when there is none.
  long Process() const;

 private:
  class Child;

  std::string program_;
  std::vector<std::string> libraries_;
  std::unique_ptr<Child> child_;
  // Whether the system cannot fork such workers.
  bool isRefused_ = false;
};

}  // namespace dxf2d
