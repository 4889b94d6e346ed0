#include <sys/mman.h>

#include <cstdlib>

#include "platform/large_memory.h"

void* AllocateLarge(std::size_t bytes) noexcept {
  constexpr std::size_t kHugePage = std::size_t{2} << 20U;
  const std::size_t whole = (bytes + kHugePage - 1) / kHugePage * kHugePage;
  void* memory = whole < bytes ? nullptr : std::aligned_alloc(kHugePage, whole);
  if (memory != nullptr) {
    // A system without huge pages says no, and the memory serves as it is.
    static_cast<void>(madvise(memory, whole, MADV_HUGEPAGE));
  }
  return memory;
}
