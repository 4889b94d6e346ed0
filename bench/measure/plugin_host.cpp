#include "bench/measure/plugin_host.h"

#include <dlfcn.h>

#include <cstdio>
#include <stdexcept>
#include <utility>

namespace {

KtCallbacks loadPlugin() {
  void* module = dlopen(DXF2D_BENCH_PLUGIN, RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) {
    throw std::runtime_error(dlerror());
  }
  using Entry = bool (*)(KtTraverser*, void*);
  const auto entry = reinterpret_cast<Entry>(dlsym(module, "InitializeTraverser"));
  KtTraverser traverser;
  if (entry == nullptr || !entry(&traverser, nullptr)) {
    throw std::runtime_error("the plug-in has no entry");
  }
  return traverser.Callbacks();
}

}  // namespace

const KtCallbacks& pluginCallbacks() {
  static const KtCallbacks callbacks = loadPlugin();
  return callbacks;
}

ScratchExport::ScratchExport(std::string path) : path_(std::move(path)) {
  if (!pluginCallbacks().openFile(std::u16string(path_.begin(), path_.end()))) {
    throw std::runtime_error("cannot open '" + path_ + "'");
  }
}

ScratchExport::~ScratchExport() {
  Close();
  std::remove(path_.c_str());
}

void ScratchExport::Close() {
  if (isOpen_) {
    isOpen_ = false;
    pluginCallbacks().closeFile();
  }
}
