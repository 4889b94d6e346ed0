// The plug-in under inspection, in a process of its own.
#pragma once

#include <optional>
#include <string>

#include "app/inspect/process_state.h"
#include "ktscene/kt_scene.h"
#include "ktscene/kt_traverser.h"

namespace dxf2d {

// Loads a plug-in, confines the process to a scratch directory, and makes walks.
class InspectedPlugin {
 public:
  // Throws PluginError.
  InspectedPlugin(const std::string& plugin, const std::string& directory);

  const KtTraverser& Traverser() const { return traverser_; }
  // Whether it writes a file at all.
  bool WritesFiles() const { return *traverser_.Description().extension != '\0'; }
  // A file in the scratch directory, with the end that the plug-in's files have.
  std::string PathOf(const std::string& stem) const;

  // Walks `scene` into the file at `path`, by the plug-in's own callbacks or by those of
  // `traverser`. Returns what is wrong, empty for nothing; that includes an empty file.
  std::string FaultOfWalk(const KtScene& scene, const std::string& path) const {
    return FaultOfWalk(traverser_, scene, path);
  }
  std::string FaultOfWalk(const KtTraverser& traverser, const KtScene& scene,
                          const std::string& path) const;
  // What the plug-in writes into a file that cannot hold it: what is wrong if it does not say so.
  std::string FaultOfImpossibleWalk(const KtScene& scene, const std::string& path) const;

  // What the plug-in has left behind in the process; empty for nothing.
  std::string TracesLeft() const;

 private:
  static void ConfineTo(const std::string& directory);

  KtTraverser traverser_;
  std::string directory_;
  ProcessState::ThreadCounter threads_;
  // Before the plug-in was loaded, and after.
  ProcessState before_;
  std::optional<ProcessState> loaded_;
};

// The bytes of a file; empty where there is none.
std::string bytesOf(const std::string& path);

}  // namespace dxf2d
