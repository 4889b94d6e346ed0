// The walks that are running in this process.
#pragma once

#include "ktscene/kt_callbacks.h"
#include "ktscene/kt_traverser_error.h"

namespace dxf2d {

// One of them, for as long as it lives. A plug-in keeps its session in module-wide state, since
// callbacks have no context: two walks that share a callback would share a session.
class RunningWalk {
 public:
  // Throws KtTraverserError when a walk with one of these callbacks is running, on any thread.
  explicit RunningWalk(const KtCallbacks& callbacks);
  ~RunningWalk();
  RunningWalk(const RunningWalk&) = delete;
  RunningWalk& operator=(const RunningWalk&) = delete;

 private:
  const KtCallbacks& callbacks_;
};

}  // namespace dxf2d
