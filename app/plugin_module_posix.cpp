#include <dlfcn.h>

#include <filesystem>
#include <vector>

#include "app/plugin_module.h"

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
  if (error) return {};
  const fs::path libraries = program.parent_path().parent_path() / DXF2D_LIBRARY_DIRECTORY;
  return {libraries / "dxf2d" / kFileName, libraries / kFileName};
}

fs::path findOwn() {
  const std::vector<fs::path> places = ownPlaces();
  for (const fs::path& place : places) {
    std::error_code error;
    if (fs::is_regular_file(place, error)) return place;
  }
  const std::string where =
      places.empty() ? std::string("beside this program") : "at '" + places.front().string() + "'";
  throw PluginError("cannot find the plug-in " + where +
                    "; install it there or name it with --plugin");
}

// What the loader says, without the path that our sentence names already.
std::string loaderReason(const std::string& path) {
  const char* message = dlerror();
  std::string reason = message == nullptr ? "no reason is given" : message;
  const std::string prefix = path + ": ";
  if (reason.rfind(prefix, 0) == 0) reason.erase(0, prefix.size());
  return reason;
}

}  // namespace

void enterPlugin(const std::string& path, KtTraverser& traverser) {
  // A name without a slash would be looked for among the system's libraries.
  const std::string file = fs::absolute(path.empty() ? findOwn() : fs::path(path)).string();
  const std::string named = "the plug-in '" + (path.empty() ? file : path) + "'";
  void* module = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) throw PluginError("cannot load " + named + ": " + loaderReason(file));
  const auto entry = reinterpret_cast<Entry>(dlsym(module, kEntryName));
  if (entry == nullptr) {
    throw PluginError(named + " has no entry " + kEntryName + "; name another with --plugin");
  }
  if (!entry(&traverser, nullptr)) throw PluginError(named + " refuses this host");
}
