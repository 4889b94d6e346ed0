#include "ktscene/default_plugin.h"

#include <dlfcn.h>

#include <filesystem>

#include "ktscene/kt_traverser_error.h"
#include "ktscene/kt_version.h"

namespace dxf2d {

std::string defaultPlugin() {
  namespace fs = std::filesystem;
  Dl_info library{};
  fs::path folder;
  if (dladdr(reinterpret_cast<const void*>(&defaultPlugin), &library) != 0 &&
      library.dli_fname != nullptr) {
    std::error_code error;
    folder = fs::canonical(library.dli_fname, error).parent_path();
  }
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
