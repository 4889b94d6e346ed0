// The plug-in that draws, loaded at run time.
#pragma once

#include <stdexcept>
#include <string>

#include "ktscene/kt_traverser.h"

// what() is one sentence that names the file and the way out.
class PluginError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Loads the plug-in at `path`, or, when that is empty, the one that belongs to this program, and
// lets it register its callbacks with `traverser`. It stays loaded to the end of the process: the
// callbacks are its code. Throws PluginError.
void enterPlugin(const std::string& path, KtTraverser& traverser);
