#include "bench/measure/counted_memory.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

// Not atomic: what is measured runs on one thread.
std::size_t live = 0;
std::size_t peak = 0;

void* counted(void* memory) {
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  live += malloc_usable_size(memory);
  peak = std::max(peak, live);
  return memory;
}

void release(void* memory) {
  live -= malloc_usable_size(memory);
  std::free(memory);
}

std::size_t roundedUp(std::size_t size, std::size_t alignment) {
  return (size + alignment - 1) / alignment * alignment;
}

}  // namespace

std::size_t liveBytes() { return live; }
std::size_t peakBytes() { return peak; }
void forgetPeak() { peak = live; }

// The other forms call these.
__attribute__((visibility("default"))) void* operator new(std::size_t size) {
  return counted(std::malloc(std::max<std::size_t>(size, 1)));
}
__attribute__((visibility("default"))) void* operator new(std::size_t size,
                                                          std::align_val_t alignment) {
  const auto bytes = static_cast<std::size_t>(alignment);
  return counted(std::aligned_alloc(bytes, roundedUp(size, bytes)));
}
__attribute__((visibility("default"))) void operator delete(void* memory) noexcept {
  release(memory);
}
__attribute__((visibility("default"))) void operator delete(void* memory,
                                                            std::size_t /*size*/) noexcept {
  release(memory);
}
__attribute__((visibility("default"))) void operator delete(void* memory,
                                                            std::align_val_t) noexcept {
  release(memory);
}
__attribute__((visibility("default"))) void operator delete(void* memory, std::size_t /*size*/,
                                                            std::align_val_t) noexcept {
  release(memory);
}
