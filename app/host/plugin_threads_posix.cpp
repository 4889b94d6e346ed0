#include <cstdlib>
#include <string>

#include "app/host/plugin_module.h"

namespace dxf2d {

void setPluginThreads(std::size_t threads) {
  // Without memory for it, the plug-in chooses for itself.
  constexpr int kKept = 0;
  static_cast<void>(setenv("KT_THREADS", std::to_string(threads).c_str(), kKept));
}

}  // namespace dxf2d
