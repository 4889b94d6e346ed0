#include "app/inspect/inspected_plugin.h"

#include <fcntl.h>

#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "app/cli/file_path.h"
#include "app/cli/translation.h"
#include "app/host/plugin_module.h"
#include "app/process/confinement.h"
#include "platform/path_text.h"

namespace dxf2d {

namespace {

std::string thrown(const std::exception& error) { return tr("throws \"%1\"", {error.what()}); }

}  // namespace

InspectedPlugin::InspectedPlugin(const std::string& plugin, const std::string& directory)
    : directory_(directory), before_(threads_) {
  enterPlugin(plugin, traverser_);
  captureErrorBoxes();
  ConfineTo(directory);
  loaded_.emplace(threads_);
}

// Files in the directory may be written, and the disk that is full.
void InspectedPlugin::ConfineTo(const std::string& directory) {
  const Descriptor full(open("/dev/full", O_WRONLY));
  confine({systemFiles(),
           full.IsOpen() ? std::vector{full.Number()} : std::vector<int>{},
           {directory}});
}

std::string InspectedPlugin::PathOf(const std::string& stem) const {
  return directory_ + "/" + stem + (WritesFiles() ? traverser_.Description().extension : ".none");
}

std::string InspectedPlugin::FaultOfWalk(const KtTraverser& traverser, const KtScene& scene,
                                         const std::string& path) const {
  KtWalkOptions options;
  options.refusesCommas = false;
  try {
    if (!traverser.Walk(scene, pathFromBytes(path), options)) {
      const std::string box = lastErrorBox();
      return box.empty() ? tr("returns false from opening or closing the file")
                         : tr("returns false from opening or closing the file (%1)", {box});
    }
  } catch (const std::exception& error) {
    return thrown(error);
  } catch (...) {
    return tr("throws an object that is not a std::exception");
  }
  return WritesFiles() && bytesOf(path).empty() ? tr("returns true and writes nothing") : "";
}

std::string InspectedPlugin::FaultOfImpossibleWalk(const KtScene& scene,
                                                   const std::string& path) const {
  if (!WritesFiles()) {
    return "";
  }
  try {
    if (traverser_.Walk(scene, pathFromBytes(path))) {
      return tr("returns true for a file that cannot be written");
    }
    return "";
  } catch (const std::exception&) {
  } catch (...) {
    return tr("throws an object that is not a std::exception");
  }
  // The session is still open.
  try {
    if (traverser_.Callbacks().closeFile != nullptr) {
      traverser_.Callbacks().closeFile();
    }
  } catch (const std::exception&) {
    // Its last bytes cannot be written, either.
  }
  return "";
}

std::string InspectedPlugin::TracesLeft() const {
  const ProcessState now(threads_);
  const std::string setting = before_.SettingChangedIn(now);
  return setting.empty() ? loaded_->ChangeIn(now) : setting;
}

std::string bytesOf(const std::string& path) {
  std::ifstream file(filePath(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace dxf2d
