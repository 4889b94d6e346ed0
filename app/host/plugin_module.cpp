#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <vector>

#include "app/cli/file_path.h"
#include "app/cli/own_program.h"
#include "app/cli/translation.h"
#include "app/host/plugin_module.h"
#include "ktscene/kt_host.h"
#include "ktscene/zu_message.h"
#include "platform/path_text.h"

namespace dxf2d {

namespace {

namespace fs = std::filesystem;

constexpr const char* kFileName = DXF2D_PLUGIN_FILE;

// Where the plug-in stands from the directory of the program: once installed, and in the build
// tree.
std::vector<fs::path> ownPlaces() {
  const fs::path program = ownProgram();
  if (program.empty()) {
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
    throw PluginError({"", tr("the plug-in cannot be found"), tr("name it with --plugin")});
  }
  throw PluginError({places.front().string(), tr("the plug-in is missing"),
                     tr("install it there or name another with --plugin")});
}

// The callbacks carry no context.
std::string& boxText() {
  static std::string text;
  return text;
}

void keepBoxText(void*, const char16_t*, const char16_t* text, int) {
  boxText() = text == nullptr ? "" : pathToBytes(text);
}

std::string& drawingName() {
  static std::string name;
  return name;
}

void writeLog(const KtHost* /*host*/, int severity, const char* sentence) {
  const char* const kind = severity >= KT_LOG_ERROR     ? marked("error of the plug-in: %1")
                           : severity == KT_LOG_WARNING ? marked("warning of the plug-in: %1")
                                                        : marked("the plug-in: %1");
  note(tr(kind, {sentence == nullptr ? "" : sentence}));
}

const char* finalName(const KtHost* /*host*/) {
  return drawingName().empty() ? nullptr : drawingName().c_str();
}

// A worker may write the one file that its parent has made.
int companionPath(const KtHost* /*host*/, const char* /*suffix*/, char* /*path*/, size_t /*size*/) {
  return 0;
}

const void* extensionOf(const KtHost* /*host*/, const char* id) {
  static constexpr KtHostLog kLog{sizeof(KtHostLog), &writeLog};
  static constexpr KtHostFiles kFiles{sizeof(KtHostFiles), &finalName, &companionPath};
  if (std::strcmp(id, KT_HOST_LOG) == 0) {
    return &kLog;
  }
  return std::strcmp(id, KT_HOST_FILES) == 0 ? &kFiles : nullptr;
}

constexpr KtHost kHost{sizeof(KtHost), KTSCENE_VERSION, "dxf2d", nullptr, &extensionOf};

// The traverser's message about `file`, with the name that the user gave.
PluginError pluginError(const std::string& file, const std::string& name, std::string problem) {
  if (const std::string prefix = file + ": "; problem.starts_with(prefix)) {
    problem.erase(0, prefix.size());
  }
  problem.resize(std::min(problem.rfind("; "), problem.size()));
  return PluginError({name, problem, tr("name another plug-in with --plugin")});
}

}  // namespace

std::string pluginFile(const std::string& path) {
  if (path.empty()) {
    return findOwn().string();
  }
  // A name without a slash would be looked for among the system's libraries.
  std::error_code error;
  const fs::path file = fs::absolute(filePath(path), error);
  if (error) {
    throw PluginError({path, tr("cannot be found: the current directory is not there"),
                       tr("change to another, or name the plug-in by its whole path")});
  }
  return file.string();
}

void enterPlugin(const std::string& path, KtTraverser& traverser) {
  const std::string file = pluginFile(path);
  KtLoadOptions options;
  options.host = &kHost;
  try {
    traverser.Load(file, options);
  } catch (const KtTraverserError& error) {
    throw pluginError(file, path.empty() ? file : path, error.what());
  }
}

void setDrawingName(const std::string& name) { drawingName() = name; }

void captureErrorBoxes() {
  boxText().clear();
  ZuSetErrorBoxHandler(&keepBoxText);
}

std::string lastErrorBox() { return boxText(); }

}  // namespace dxf2d
