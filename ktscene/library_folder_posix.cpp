#include <dlfcn.h>

#include <filesystem>

#include "ktscene/library_folder.h"

namespace dxf2d {

std::string libraryFolder() {
  Dl_info library{};
  if (dladdr(reinterpret_cast<const void*>(&libraryFolder), &library) == 0 ||
      library.dli_fname == nullptr) {
    return {};
  }
  std::error_code error;
  return std::filesystem::canonical(library.dli_fname, error).parent_path().string();
}

}  // namespace dxf2d
