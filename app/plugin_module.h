// The plug-in that draws, loaded at run time.
#pragma once

#include <string>

#include "app/failure.h"
#include "ktscene/kt_traverser.h"

class PluginError : public Failure {
 public:
  explicit PluginError(const std::string& sentence) : Failure(kExitPlugin, sentence) {}
};

// Loads the plug-in at `path`, or, when that is empty, the one that belongs to this program, and
// lets it register its callbacks with `traverser`. It stays loaded to the end of the process: the
// callbacks are its code. Throws PluginError.
void enterPlugin(const std::string& path, KtTraverser& traverser);
