#include "bench/measure/counted_memory.h"

#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> live = 0;
std::atomic<std::size_t> peak = 0;

void* counted(void* memory) {
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  const std::size_t bytes = malloc_usable_size(memory);
  const std::size_t now = live += bytes;
  std::size_t before = peak;
  while (before < now && !peak.compare_exchange_weak(before, now)) {
  }
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
void forgetPeak() { peak = live.load(); }

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
