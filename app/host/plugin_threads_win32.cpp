#include <cstdlib>
#include <string>

#include "app/host/plugin_module.h"

namespace dxf2d {

// The plug-in has the same C library, which keeps the environment.
void setPluginThreads(std::size_t threads) {
  if (std::getenv("KT_THREADS") == nullptr) {
    static_cast<void>(_putenv(("KT_THREADS=" + std::to_string(threads)).c_str()));
  }
}

}  // namespace dxf2d
