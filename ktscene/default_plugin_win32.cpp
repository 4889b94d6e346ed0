#include <filesystem>

#include "ktscene/default_plugin.h"
#include "ktscene/kt_traverser_error.h"
#include "ktscene/library_folder.h"
#include "platform/path_text.h"

namespace dxf2d {

std::string defaultPlugin() {
  const std::string folder = libraryFolder();
  // The last one is that of an installed tree.
  for (const char* place :
       {"/dxf2d_plugin.dll", "/dxf2d/dxf2d_plugin.dll", "/../lib/dxf2d/dxf2d_plugin.dll"}) {
    const std::string plugin = folder + place;
    std::error_code error;
    if (std::filesystem::is_regular_file(pathFromBytes(plugin), error)) {
      return plugin;
    }
  }
  throw KtTraverserError(folder +
                         ": there is no plug-in beside the library; install it, or pass the path "
                         "of one");
}

}  // namespace dxf2d
