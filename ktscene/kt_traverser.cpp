#include "ktscene/kt_traverser.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <optional>
#include <string_view>
#include <utility>

#include "ktscene/kt_locale.h"
#include "ktscene/label_commas.h"
#include "ktscene/loaded_module.h"
#include "ktscene/node_walk.h"
#include "ktscene/running_walks.h"

namespace {

constexpr const char* kEntryName = "InitializeTraverser";
constexpr const char* kAnother = "; name another plug-in";

// A point and 1 to 15 letters or digits, or nothing.
bool isExtension(std::string_view text) {
  constexpr std::size_t kMost = 16;
  const auto isPart = [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  };
  return text.empty() || (text.size() >= 2 && text.size() <= kMost && text.front() == '.' &&
                          std::ranges::all_of(text.substr(1), isPart));
}

// `member` of `description` where its version has it, else the default's.
const char* textOf(const KtPluginDescription& description,
                   const char* KtPluginDescription::*member) {
  static constexpr KtPluginDescription kDefault{};
  const auto* begin = reinterpret_cast<const char*>(&description);
  const auto* text = reinterpret_cast<const char*>(&(description.*member));
  const auto end = static_cast<std::size_t>(text - begin) + sizeof(const char*);
  return end <= description.size ? description.*member : kDefault.*member;
}

// Calls the entry. What it throws becomes an error that names the plug-in.
bool enter(const std::string& path, bool (*entry)(KtTraverser*, void*), KtTraverser& traverser,
           const KtHost* host) {
  const auto refuse = [&path](const std::string& thrown) {
    throw KtTraverserError(path + ": the plug-in throws " + thrown + " from its entry" + kAnother);
  };
  try {
    return entry(&traverser, const_cast<KtHost*>(host));
  } catch (const std::exception& error) {
    refuse(std::string("\"") + error.what() + '"');
  } catch (...) {
    refuse("an object that is not a std::exception");
  }
  return false;
}

}  // namespace

struct KtTraverser::State {
  std::shared_ptr<dxf2d::LoadedModule> module{};
  std::string name{};
  std::string version{};
  std::string extension = KtPluginDescription().extension;
  std::string format = KtPluginDescription().format;
};

KtTraverser::KtTraverser() = default;
KtTraverser::KtTraverser(const KtTraverser& other)
    : callbacks_(other.callbacks_),
      state_(other.state_ ? std::make_unique<State>(*other.state_) : nullptr) {}
KtTraverser::KtTraverser(KtTraverser&& other) noexcept = default;
KtTraverser& KtTraverser::operator=(const KtTraverser& other) {
  if (this != &other) {
    *this = KtTraverser(other);
  }
  return *this;
}
KtTraverser& KtTraverser::operator=(KtTraverser&& other) noexcept = default;
KtTraverser::~KtTraverser() = default;

void KtTraverser::Load(const std::string& path, const KtLoadOptions& options) {
  // A name without a slash would be looked for among the system's libraries.
  const std::string file = std::filesystem::path(path).has_parent_path() ? path : "./" + path;
  const auto module = std::make_shared<dxf2d::LoadedModule>(file, options.isPrivate);
  const auto entry = reinterpret_cast<bool (*)(KtTraverser*, void*)>(module->Find(kEntryName));
  if (entry == nullptr) {
    throw KtTraverserError(path + ": is not a plug-in: it has no " + kEntryName + kAnother);
  }
  KtTraverser loaded;
  if (!enter(path, entry, loaded, options.host)) {
    throw KtTraverserError(path + ": the plug-in refuses this program" + kAnother);
  }
  if (!loaded.state_) {
    loaded.state_ = std::make_unique<State>();
  }
  loaded.state_->module = module;
  *this = std::move(loaded);
}

KtPluginDescription KtTraverser::Description() const {
  if (!state_) {
    return {};
  }
  return {sizeof(KtPluginDescription), state_->name.c_str(), state_->version.c_str(),
          state_->extension.c_str(), state_->format.c_str()};
}

bool KtTraverser::Describe(const KtPluginDescription& description) {
  const char* const name = textOf(description, &KtPluginDescription::name);
  const char* const version = textOf(description, &KtPluginDescription::version);
  const char* const extension = textOf(description, &KtPluginDescription::extension);
  const char* const format = textOf(description, &KtPluginDescription::format);
  if (name == nullptr || version == nullptr || extension == nullptr || format == nullptr ||
      !isExtension(extension)) {
    return false;
  }
  auto state = std::make_unique<State>(State{{}, name, version, extension, format});
  if (state_) {
    state->module = std::move(state_->module);
  }
  state_ = std::move(state);
  return true;
}

void KtTraverser::Init(KtCallbacks::OpenNode openNode, KtCallbacks::CloseNode closeNode,
                       KtCallbacks::Reuse reuse, KtCallbacks::OpenLod openLod,
                       KtCallbacks::CloseLod closeLod, KtCallbacks::BoundingBox boundingBox,
                       KtCallbacks::Material material, KtCallbacks::Matrix matrix,
                       KtCallbacks::FaceGeometry faceGeometry, KtCallbacks::FaceSet faceSet,
                       KtCallbacks::LineSet lineSet, KtCallbacks::PointSet pointSet,
                       KtCallbacks::GraphicNode graphicNode,
                       KtCallbacks::SpecialGeometry specialGeometry, KtCallbacks::Text text,
                       KtCallbacks::Label label, KtCallbacks::Name beginFile,
                       KtCallbacks::Event endFile, KtCallbacks::OpenFile openFile,
                       KtCallbacks::CloseFile closeFile) {
  if (state_) {
    *state_ = State{.module = std::move(state_->module)};
  }
  callbacks_ = {.openNode = openNode,
                .closeNode = closeNode,
                .reuse = reuse,
                .openLod = openLod,
                .closeLod = closeLod,
                .boundingBox = boundingBox,
                .material = material,
                .matrix = matrix,
                .faceGeometry = faceGeometry,
                .faceSet = faceSet,
                .lineSet = lineSet,
                .pointSet = pointSet,
                .graphicNode = graphicNode,
                .specialGeometry = specialGeometry,
                .text = text,
                .label = label,
                .beginFile = beginFile,
                .endFile = endFile,
                .openFile = openFile,
                .closeFile = closeFile};
}

bool KtTraverser::Walk(const KtScene& scene, const std::u16string& path) const {
  return Walk(scene, path, {});
}

bool KtTraverser::Walk(const KtScene& scene, const std::u16string& path,
                       const KtWalkOptions& options) const {
  const dxf2d::RunningWalk running(callbacks_);
  std::optional<KtNumericLocale> point;
  if (options.usesPoint) {
    point.emplace();
  }
  if (options.refusesCommas && callbacks_.label != nullptr) {
    dxf2d::refuseLabelsWithCommas(scene);
  }
  if (callbacks_.openFile != nullptr && !callbacks_.openFile(path)) {
    return false;
  }
  dxf2d::NodeWalk walk(callbacks_, options.progress);
  bool goesOn = true;
  for (auto node = scene.nodes.begin(); goesOn && node != scene.nodes.end(); ++node) {
    goesOn = walk.Run(*node);
  }
  const bool isClosed = callbacks_.closeFile == nullptr || callbacks_.closeFile();
  return goesOn && isClosed;
}

void KtTraverser::WalkNode(const KtSceneNode& node) const {
  const dxf2d::RunningWalk running(callbacks_);
  const std::function<bool(std::size_t)> noProgress;
  dxf2d::NodeWalk(callbacks_, noProgress).Run(node);
}
