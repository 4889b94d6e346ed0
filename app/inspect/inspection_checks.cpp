#include "app/inspect/inspection_checks.h"

#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <utility>

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
    if (std::string_view(kind.name) == "deep nesting") {
      continue;
    }
    if (std::string_view(kind.name) == "everything at once") {
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
  std::string FaultOfAnother(const KtTraverser& traverser, const std::string& when) const {
    // The same one, since a drawing may have its name in it; empty, so that it is written again.
    const std::string path = plugin_.PathOf("drawing");
    if (plugin_.WritesFiles()) {
      std::ofstream(path, std::ios::trunc).close();
    }
    const std::string fault = plugin_.FaultOfWalk(traverser, scene_, path);
    if (!fault.empty()) {
      return fault + " " + when;
    }
    return bytesOf(path) == bytes_ ? "" : "draws something else " + when;
  }
  std::string FaultOfAnother(const std::string& when) const {
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
  return first.Fault().empty() ? first.FaultOfAnother("in its second walk") : first.Fault();
}

// A file that cannot be created, and then one that can.
std::string failToCreate(const InspectedPlugin& plugin) {
  const FirstDrawing first(plugin);
  const std::string fault =
      plugin.FaultOfImpossibleWalk(first.Scene(), plugin.PathOf("no such directory/drawing"));
  return fault.empty() ? first.FaultOfAnother("after a file that could not be created") : fault;
}

std::string fillTheDisk(const InspectedPlugin& plugin) {
  if (!std::filesystem::exists("/dev/full")) {
    return "";
  }
  const FirstDrawing first(plugin);
  const std::string fault = plugin.FaultOfImpossibleWalk(first.Scene(), "/dev/full");
  return fault.empty() ? first.FaultOfAnother("after a full disk") : fault;
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
    return std::string("throws \"") + error.what() + '"';
  } catch (...) {
    return "throws an object that is not a std::exception";
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
    return fault + " when a walk ends with nodes open";
  }
  fault = first.FaultOfAnother("after a walk that ended with nodes open");
  if (!fault.empty()) {
    return fault;
  }
  fault = thrownBy([&] { beginAndStop(callbacks, path); });
  return fault.empty() ? first.FaultOfAnother("after a walk without an end") : fault;
}

std::string takeBackWhatWasLent(const InspectedPlugin& plugin) {
  const FirstDrawing first(plugin);
  if (!first.Fault().empty()) {
    return first.Fault();
  }
  return first.FaultOfAnother(lendingTraverser(plugin.Traverser()),
                              "when what it was lent is gone");
}

std::string callAtRandomBefore(const InspectedPlugin& plugin, std::uint32_t seed) {
  const FirstDrawing first(plugin);
  const std::string fault = thrownBy([&] {
    callAtRandom(plugin.Traverser().Callbacks(), pathFromBytes(plugin.PathOf("random")), seed);
  });
  return fault.empty() ? first.FaultOfAnother("after calls at random") : fault;
}

}  // namespace

std::vector<InspectionCheck> inspectionChecks(std::uint32_t seeds) {
  std::vector<InspectionCheck> checks;
  for (const InspectionScene& kind : inspectionScenes()) {
    checks.push_back(
        {kind.name, [&kind](const InspectedPlugin& plugin) { return walkScene(plugin, kind); }});
  }
  checks.push_back({"second walk", &walkTwice});
  checks.push_back({"file not to be created", &failToCreate});
  checks.push_back({"full disk", &fillTheDisk});
  checks.push_back({"abandoned walk", &abandonWalk});
  checks.push_back({"objects taken back", &takeBackWhatWasLent});
  for (std::uint32_t seed = 1; seed <= seeds; ++seed) {
    checks.push_back(
        {"random calls, seed " + std::to_string(seed),
         [seed](const InspectedPlugin& plugin) { return callAtRandomBefore(plugin, seed); }});
  }
  return checks;
}

}  // namespace dxf2d
