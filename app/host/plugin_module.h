// The plug-in, loaded at run time, and its error boxes.
#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "app/cli/failure.h"
#include "ktscene/kt_traverser.h"

namespace dxf2d {

class PluginError : public Failure {
 public:
  explicit PluginError(Message message) : Failure(kExitPlugin, std::move(message)) {}
};

// Returns the file of the plug-in at `path`, or, when that is empty, of the one that belongs to
// this program. Throws PluginError, also when the current directory that a relative `path` needs is
// gone.
std::string pluginFile(const std::string& path);

// What is known of a plug-in before it draws.
struct PluginFacts {
  // Whether it is the one that belongs to this program.
  bool isOwn = true;
  // What its files hold and how their names end; no end where it writes none.
  std::string format = "DXF";
  std::string end = ".dxf";

  bool WritesDxf() const { return end == ".dxf"; }
};

// Has plug-ins loaded from now on work with up to this many threads on a large set, unless the user
// says otherwise (KT_THREADS).
void setPluginThreads(std::size_t threads);

// Loads the plug-in at `path`, or, when that is empty, the one that belongs to this program, and
// lets it register its callbacks with `traverser`. It stays loaded to the end of the process: the
// callbacks are its code. It is offered this program's log, and the name of the drawing. Throws
// PluginError.
void enterPlugin(const std::string& path, KtTraverser& traverser);

// How plug-ins may call the file that the user gets, in the operating system's bytes.
void setDrawingName(const std::string& name);

// Forgets earlier error boxes and keeps later ones from being shown.
void captureErrorBoxes();

// The text of the last error box since captureErrorBoxes; empty when there was none.
std::string lastErrorBox();

}  // namespace dxf2d
