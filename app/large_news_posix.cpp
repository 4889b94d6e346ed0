// The program's operator new: models are read into large arrays, by libraries of others, and the
// plug-in makes more; all of them come in huge pages this way.
#include <cstdlib>
#include <new>

#include "platform/large_memory.h"

namespace {

void* allocate(std::size_t bytes) {
  if (bytes < kLargeBytes) {
    return std::malloc(bytes != 0 ? bytes : 1);
  }
  const std::size_t whole = (bytes + kHugePage - 1) / kHugePage * kHugePage;
  void* memory = whole < bytes ? nullptr : std::aligned_alloc(kHugePage, whole);
  if (memory != nullptr) {
    AdviseHugePages(memory, whole);
  }
  return memory;
}

}  // namespace

// The matching operator delete is the library's own, which calls std::free.
void* operator new(std::size_t bytes) {
  for (;;) {
    if (void* memory = allocate(bytes); memory != nullptr) {
      return memory;
    }
    const std::new_handler handler = std::get_new_handler();
    if (handler == nullptr) {
      throw std::bad_alloc();
    }
    handler();
  }
}
