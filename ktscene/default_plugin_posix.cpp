#include <filesystem>

#include "ktscene/default_plugin.h"
#include "ktscene/kt_traverser_error.h"
#include "ktscene/library_folder.h"

namespace dxf2d {

std::string defaultPlugin() {
  namespace fs = std::filesystem;
  const fs::path folder = libraryFolder();
  for (const char* place : {"dxf2d/dxf2d_plugin.so", "dxf2d_plugin.so"}) {
    std::error_code error;
    if (fs::is_regular_file(folder / place, error)) {
      return (folder / place).string();
    }
  }
  throw KtTraverserError(folder.string() +
                         ": there is no plug-in beside the library; install it, or pass the path "
                         "of one");
}

}  // namespace dxf2d
