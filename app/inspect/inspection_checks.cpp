#include "app/inspect/inspection_checks.h"

#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <utility>

#include "app/cli/file_path.h"
#include "app/cli/translation.h"
#include "app/inspect/inspection_scenes.h"
#include "app/inspect/lending.h"
#include "app/inspect/random_calls.h"
#include "platform/path_text.h"

namespace dxf2d {

namespace {

// Everything at once but what nests deeper than such a test needs.
KtScene sampleScene() {
  KtScene sample;
  for (const InspectionScene& kind : inspectionScenes()) {
    if (std::string_view(kind.name) == kDeepNesting) {
      continue;
    }
    if (std::string_view(kind.name) == kEverything) {
      break;
    }
    KtScene scene = kind.make();
    std::move(scene.nodes.begin(), scene.nodes.end(), std::back_inserter(sample.nodes));
  }
  return sample;
}

std::string walkScene(const InspectedPlugin& plugin, const InspectionScene& kind) {
  return plugin.FaultOfWalk(kind.make(), plugin.PathOf("drawing"));
}

// The sample's first drawing, which later ones must be like.
class FirstDrawing {
 public:
  explicit FirstDrawing(const InspectedPlugin& plugin)
      : plugin_(plugin),
        scene_(sampleScene()),
        fault_(plugin.FaultOfWalk(scene_, plugin.PathOf("drawing"))),
        bytes_(bytesOf(plugin.PathOf("drawing"))) {}

  const KtScene& Scene() const { return scene_; }
  // Of the walk that made it.
  const std::string& Fault() const { return fault_; }
  // Of another walk, which must make the same; `when` ends the sentence about one that does not.
  std::string FaultOfAnother(const KtTraverser& traverser, const char* when) const {
    // The same one, since a drawing may have its name in it; empty, so that it is written again.
    const std::string path = plugin_.PathOf("drawing");
    if (plugin_.WritesFiles()) {
      std::ofstream(filePath(path), std::ios::trunc).close();
    }
    const std::string fault = plugin_.FaultOfWalk(traverser, scene_, path);
    if (!fault.empty()) {
      return tr("%1 %2", {fault, tr(when)});
    }
    return bytesOf(path) == bytes_ ? "" : tr("draws something else %1", {tr(when)});
  }
  std::string FaultOfAnother(const char* when) const {
    return FaultOfAnother(plugin_.Traverser(), when);
  }

 private:
  const InspectedPlugin& plugin_;
  KtScene scene_;
  std::string fault_;
  std::string bytes_;
};

std::string walkTwice(const InspectedPlugin& plugin) {
  const FirstDrawing first(plugin);
  return first.Fault().empty() ? first.FaultOfAnother(marked("in its second walk")) : first.Fault();
}

// A file that cannot be created, and then one that can.
std::string failToCreate(const InspectedPlugin& plugin) {
  const FirstDrawing first(plugin);
  const std::string fault =
      plugin.FaultOfImpossibleWalk(first.Scene(), plugin.PathOf("missing/drawing"));
  return fault.empty() ? first.FaultOfAnother(marked("after a file that could not be created"))
                       : fault;
}

std::string fillTheDisk(const InspectedPlugin& plugin) {
  if (!std::filesystem::exists("/dev/full")) {
    return "";
  }
  const FirstDrawing first(plugin);
  const std::string fault = plugin.FaultOfImpossibleWalk(first.Scene(), "/dev/full");
  return fault.empty() ? first.FaultOfAnother(marked("after a full disk")) : fault;
}

// Begins an export, opens some nodes and shows some lines.
void beginAndStop(const KtCallbacks& callbacks, const std::u16string& path) {
  if (callbacks.openFile != nullptr && !callbacks.openFile(path)) {
    return;
  }
  const std::vector<double> coords{0, 0, 0, 1, 1, 0};
  const std::vector<int> indices{0, 1, -1};
  KtSceneNode node;
  node.graphicName = node.objectId = node.realObjectId = u"abandoned";
  KtGraphicAttribute attribute(node);
  for (int depth = 0; depth < 3; ++depth) {
    if (callbacks.openNode != nullptr) {
      callbacks.openNode(&attribute);
    }
    if (callbacks.lineSet != nullptr) {
      callbacks.lineSet(coords, indices);
    }
  }
}

// What `act` throws, as "throws …"; empty for nothing.
template <typename Act>
std::string thrownBy(const Act& act) {
  try {
    act();
    return "";
  } catch (const std::exception& error) {
    return tr("throws \"%1\"", {error.what()});
  } catch (...) {
    return tr("throws an object that is not a std::exception");
  }
}

std::string abandonWalk(const InspectedPlugin& plugin) {
  const FirstDrawing first(plugin);
  const KtCallbacks& callbacks = plugin.Traverser().Callbacks();
  const std::u16string path = pathFromBytes(plugin.PathOf("abandoned"));
  std::string fault = thrownBy([&] {
    beginAndStop(callbacks, path);
    if (callbacks.closeFile != nullptr) {
      callbacks.closeFile();
    }
  });
  if (!fault.empty()) {
    return tr("%1 %2", {fault, tr("when a walk ends with nodes open")});
  }
  fault = first.FaultOfAnother(marked("after a walk that ended with nodes open"));
  if (!fault.empty()) {
    return fault;
  }
  fault = thrownBy([&] { beginAndStop(callbacks, path); });
  return fault.empty() ? first.FaultOfAnother(marked("after a walk without an end")) : fault;
}

std::string takeBackWhatWasLent(const InspectedPlugin& plugin) {
  const FirstDrawing first(plugin);
  if (!first.Fault().empty()) {
    return first.Fault();
  }
  return first.FaultOfAnother(lendingTraverser(plugin.Traverser()),
                              marked("when what it was lent is gone"));
}

std::string callAtRandomBefore(const InspectedPlugin& plugin, std::uint32_t seed) {
  const FirstDrawing first(plugin);
  const std::string fault = thrownBy([&] {
    callAtRandom(plugin.Traverser().Callbacks(), pathFromBytes(plugin.PathOf("random")), seed);
  });
  return fault.empty() ? first.FaultOfAnother(marked("after calls at random")) : fault;
}

}  // namespace

std::vector<InspectionCheck> inspectionChecks(std::uint32_t seeds) {
  using Run = std::function<std::string(const InspectedPlugin&)>;
  std::vector<InspectionCheck> checks;
  const auto add = [&](const std::string& title, Run run) {
    checks.push_back({inEnglish(title), title, std::move(run)});
  };
  for (const InspectionScene& kind : inspectionScenes()) {
    add(tr(kind.name), [&kind](const InspectedPlugin& plugin) { return walkScene(plugin, kind); });
  }
  add(tr("second walk"), &walkTwice);
  add(tr("file not to be created"), &failToCreate);
  add(tr("full disk"), &fillTheDisk);
  add(tr("abandoned walk"), &abandonWalk);
  add(tr("objects taken back"), &takeBackWhatWasLent);
  for (std::uint32_t seed = 1; seed <= seeds; ++seed) {
    add(tr("random calls, seed %1", {std::to_string(seed)}),
        [seed](const InspectedPlugin& plugin) { return callAtRandomBefore(plugin, seed); });
  }
  return checks;
}

}  // namespace dxf2d
