// A host that drives the plug-in by hand.
#pragma once

#include <string>

#include "ktscene/kt_traverser.h"

// The callbacks of the plug-in that was built with this program, loaded on first use. Throws
// std::runtime_error when it cannot be loaded.
const KtCallbacks& pluginCallbacks();

// An export for as long as it lives, into a file that goes with it.
class ScratchExport {
 public:
  // Opens the export; throws std::runtime_error when the plug-in cannot.
  explicit ScratchExport(std::string path);
  // Closes the export if Close did not.
  ~ScratchExport();
  ScratchExport(const ScratchExport&) = delete;
  ScratchExport& operator=(const ScratchExport&) = delete;

  // Calls slot 20.
  void Close();

 private:
  std::string path_;
  bool isOpen_ = true;
};
