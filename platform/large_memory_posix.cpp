#include <sys/mman.h>

#include "platform/large_memory.h"

void AdviseHugePages(void* memory, std::size_t bytes) noexcept {
  static_cast<void>(madvise(memory, bytes, MADV_HUGEPAGE));
}
