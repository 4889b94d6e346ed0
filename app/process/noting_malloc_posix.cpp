// The program's malloc: that of the C library, with a note of what it refuses. Libraries written in
// C do not throw, and some take a refusal for a fault of the file or crash.
#include <dlfcn.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>

#include "app/process/refused_memory.h"

namespace {

// A function of the C library, which the one of the same name in this program hides. Looked up
// without a lock at the first call: every thread finds the same.
template <typename Function>
class Hidden {
 public:
  explicit constexpr Hidden(const char* name) : name_(name) {}

  template <typename... Arguments>
  auto operator()(Arguments... arguments) {
    if (function_ == nullptr) {
      function_ = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name_));
    }
    return function_(arguments...);
  }

 private:
  const char* name_;
  Function* function_ = nullptr;
};

constinit Hidden<void*(std::size_t)> hiddenMalloc("malloc");
constinit Hidden<void*(std::size_t, std::size_t)> hiddenCalloc("calloc");
constinit Hidden<void*(void*, std::size_t)> hiddenRealloc("realloc");
constinit Hidden<void*(std::size_t, std::size_t)> hiddenAlignedAlloc("aligned_alloc");
constinit Hidden<int(void**, std::size_t, std::size_t)> hiddenPosixMemalign("posix_memalign");

// No limit could be raised enough for more than this: the number came from a malformed file.
constexpr std::size_t kMostBytes = PTRDIFF_MAX;

void note(std::size_t bytes) {
  if (bytes != 0 && bytes <= kMostBytes && !dxf2d::isRefusalExpected &&
      dxf2d::noteRefusedMemory != nullptr) {
    dxf2d::noteRefusedMemory();
  }
}

void* noted(void* memory, std::size_t bytes) {
  if (memory == nullptr) {
    const int error = errno;
    note(bytes);
    errno = error;
  }
  return memory;
}

}  // namespace

// The memory of all of these is the C library's, and so is free.
#define DXF2D_VISIBLE __attribute__((visibility("default")))
extern "C" {
// NOLINTBEGIN(readability-identifier-naming): these are the names.

DXF2D_VISIBLE void* malloc(std::size_t bytes) { return noted(hiddenMalloc(bytes), bytes); }

DXF2D_VISIBLE void* calloc(std::size_t count, std::size_t size) {
  std::size_t bytes = 0;
  const bool overflows = __builtin_mul_overflow(count, size, &bytes);
  return noted(hiddenCalloc(count, size), overflows ? SIZE_MAX : bytes);
}

DXF2D_VISIBLE void* realloc(void* memory, std::size_t bytes) {
  return noted(hiddenRealloc(memory, bytes), bytes);
}

DXF2D_VISIBLE void* aligned_alloc(std::size_t alignment, std::size_t bytes) {
  return noted(hiddenAlignedAlloc(alignment, bytes), bytes);
}

DXF2D_VISIBLE int posix_memalign(void** memory, std::size_t alignment, std::size_t bytes) {
  const int error = hiddenPosixMemalign(memory, alignment, bytes);
  if (error == ENOMEM) {
    note(bytes);
  }
  return error;
}

// NOLINTEND(readability-identifier-naming)
}  // extern "C"
