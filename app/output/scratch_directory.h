// A temporary directory.
#pragma once

#include <string>

#include "app/process/termination_signals.h"

namespace dxf2d {

// For its owner alone; goes, with what is in it, when this object does. Termination signals are
// blocked as long as it lives (see ScopedSignalBlock).
class ScratchDirectory {
 public:
  // `name` begins its name, such as "dxf2d-inspect". Throws OutputError.
  explicit ScratchDirectory(const std::string& name);
  ~ScratchDirectory();
  ScratchDirectory(const ScratchDirectory&) = delete;
  ScratchDirectory& operator=(const ScratchDirectory&) = delete;

  const std::string& Path() const { return path_; }

 private:
  // Longer than the directory.
  ScopedSignalBlock deferred_;
  std::string path_;
};

}  // namespace dxf2d
