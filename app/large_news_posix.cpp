// The program's operator new: models are read into large arrays, by libraries of others, and the plug-in
// makes more; all of them come in huge pages this way.
#include <cstdlib>
#include <new>

#include "platform/large_memory.h"

// The matching operator delete is the library's own, which calls std::free.
void* operator new(std::size_t bytes) {
  for (;;) {
    void* memory = bytes < kLargeBytes ? std::malloc(bytes != 0 ? bytes : 1) : AllocateLarge(bytes);
    if (memory != nullptr) {
      return memory;
    }
    const std::new_handler handler = std::get_new_handler();
    if (handler == nullptr) {
      throw std::bad_alloc();
    }
    handler();
  }
}
