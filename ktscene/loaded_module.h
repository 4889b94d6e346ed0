// A plug-in's module in memory.
#pragma once

#include <cstdint>
#include <string>

#include "ktscene/kt_traverser_error.h"

namespace dxf2d {

// A loaded module, or a copy of one that nothing else shares.
class LoadedModule {
 public:
  // Loads the module at `path`, which has a slash in it. A shared one stays loaded to the end of
  // the process, since callbacks are its code; a private one is unloaded with this object. Throws
  // KtTraverserError.
  LoadedModule(const std::string& path, bool isPrivate);
  ~LoadedModule();
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;

  // The exported function or object of that name; null when there is none.
  void* Find(const char* name) const;

 private:
  void* handle_ = nullptr;
  // Of a private copy: its file, a descriptor or a handle. It stays open: on POSIX the loader knows
  // modules by their names, and this one's is that of the descriptor; on Windows the file is gone
  // once it is closed.
  std::intptr_t file_ = -1;
};

}  // namespace dxf2d
