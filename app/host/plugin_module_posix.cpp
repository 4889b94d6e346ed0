#include <dlfcn.h>

#include <filesystem>
#include <vector>

#include "app/host/plugin_module.h"
#include "ktscene/zu_message.h"
#include "platform/path_text.h"

namespace dxf2d {

namespace {

namespace fs = std::filesystem;

using Entry = bool (*)(KtTraverser*, void*);

constexpr const char* kFileName = "dxf2d_plugin.so";
constexpr const char* kEntryName = "InitializeTraverser";

// Where the plug-in stands from the directory of the program: once installed, and in the build
// tree.
std::vector<fs::path> ownPlaces() {
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  if (error) {
    return {};
  }
  const fs::path libraries = program.parent_path().parent_path() / DXF2D_LIBRARY_DIRECTORY;
  return {libraries / "dxf2d" / kFileName, libraries / kFileName};
}

fs::path findOwn() {
  const std::vector<fs::path> places = ownPlaces();
  for (const fs::path& place : places) {
    std::error_code error;
    if (fs::is_regular_file(place, error)) {
      return place;
    }
  }
  if (places.empty()) {
    throw PluginError({"", "the plug-in cannot be found", "name it with --plugin"});
  }
  throw PluginError({places.front().string(), "the plug-in is missing",
                     "install it there or name another with --plugin"});
}

// The callbacks carry no context.
std::string& boxText() {
  static std::string text;
  return text;
}

void keepBoxText(void*, const char16_t*, const char16_t* text, int) {
  boxText() = text == nullptr ? "" : pathToBytes(text);
}

// The loader's message, without the path that our message begins with.
std::string loaderReason(const std::string& path) {
  const char* message = dlerror();
  std::string reason = message == nullptr ? "unknown error" : message;
  const std::string prefix = path + ": ";
  if (reason.rfind(prefix, 0) == 0) {
    reason.erase(0, prefix.size());
  }
  return reason;
}

}  // namespace

std::string pluginFile(const std::string& path) {
  if (path.empty()) {
    return findOwn().string();
  }
  // A name without a slash would be looked for among the system's libraries.
  std::error_code error;
  const fs::path file = fs::absolute(path, error);
  if (error) {
    throw PluginError({path, "cannot be found: the current directory is not there",
                       "change to another, or name the plug-in by its whole path"});
  }
  return file.string();
}

void enterPlugin(const std::string& path, KtTraverser& traverser) {
  const std::string file = pluginFile(path);
  const std::string name = path.empty() ? file : path;
  const std::string remedy = "name another plug-in with --plugin";
  void* module = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) {
    throw PluginError({name, "cannot be loaded as a plug-in: " + loaderReason(file), remedy});
  }
  const auto entry = reinterpret_cast<Entry>(dlsym(module, kEntryName));
  if (entry == nullptr) {
    throw PluginError({name, std::string("is not a plug-in: it has no ") + kEntryName, remedy});
  }
  if (!entry(&traverser, nullptr)) {
    throw PluginError({name, "the plug-in refuses this program", remedy});
  }
}

void captureErrorBoxes() {
  boxText().clear();
  ZuSetErrorBoxHandler(&keepBoxText);
}

std::string lastErrorBox() { return boxText(); }

}  // namespace dxf2d
