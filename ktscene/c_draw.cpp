// The C API: what is done with a scene.
#include <string>

#include "ktscene/c_call.h"
#include "ktscene/c_scene.h"
#include "ktscene/default_plugin.h"
#include "ktscene/kt_output_file.h"
#include "ktscene/kt_scene_check.h"
#include "ktscene/kt_scene_writer.h"
#include "ktscene/kt_traverser.h"
#include "platform/cfile_exception.h"
#include "platform/path_text.h"

using dxf2d::cCall;
using dxf2d::require;

namespace {

// Walks `scene` into the file under construction. Returns false when progress did.
bool walkInto(const KtOutputFile& output, const std::string& path, const KtTraverser& traverser,
              const KtScene& scene, const std::string& plugin, const KtCDrawOptions& options) {
  bool isCanceled = false;
  KtWalkOptions walk;
  if (options.progress != nullptr) {
    walk.progress = [&](std::size_t nodes) {
      isCanceled = options.progress(options.context, nodes) == 0;
      return !isCanceled;
    };
  }
  try {
    if (!traverser.Walk(scene, pathFromBytes(output.Path()), walk) && !isCanceled) {
      throw dxf2d::PluginFailure(plugin + ": the plug-in could not draw " + path +
                                 "; use another plug-in, or report this to its author");
    }
  } catch (const CFileException& error) {
    throw dxf2d::WriteFailure(path + ": cannot be written: " + error.what());
  } catch (const KtTraverserError&) {
    throw;
  } catch (const dxf2d::PluginFailure&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    throw dxf2d::PluginFailure(plugin + ": the plug-in failed to draw " + path + ": " +
                               error.what());
  }
  return !isCanceled;
}

void draw(const KtCScene& scene, const std::string& path, const KtCDrawOptions& options) {
  const std::string plugin = options.plugin == nullptr ? dxf2d::defaultPlugin() : options.plugin;
  KtLoadOptions load;
  load.isPrivate = true;
  KtTraverser traverser;
  traverser.Load(plugin, load);
  KtOutputFile output(path);
  if (!walkInto(output, path, traverser, dxf2d::treeOf(scene), plugin, options)) {
    throw dxf2d::Canceled(path + ": the export was canceled; nothing was written");
  }
  if (*traverser.Description().extension != '\0') {
    output.Commit();
  }
}

}  // namespace

int KtCCheckScene(const KtCScene* scene, KtCFinding finding, void* context) {
  return cCall([&] {
    require(scene, "KtCCheckScene", "scene");
    require(reinterpret_cast<const void*>(finding), "KtCCheckScene", "function");
    for (const KtSceneFinding& found : KtCheckScene(dxf2d::treeOf(*scene))) {
      finding(context, found.severity == KtSeverity::kError ? 1 : 0, found.node.c_str(),
              found.problem.c_str(), found.remedy.c_str());
    }
  });
}

int KtCWriteSceneFile(const KtCScene* scene, const char* path) {
  return cCall([&] {
    require(scene, "KtCWriteSceneFile", "scene");
    require(path, "KtCWriteSceneFile", "path");
    WriteSceneFile(dxf2d::treeOf(*scene), path);
  });
}

int KtCDraw(const KtCScene* scene, const char* path, const KtCDrawOptions* options) {
  return cCall([&] {
    require(scene, "KtCDraw", "scene");
    require(path, "KtCDraw", "path");
    KtCDrawOptions copy{};
    if (options != nullptr) {
      copy = dxf2d::copyStruct(options, "KtCDraw", "options");
    }
    draw(*scene, path, copy);
  });
}
