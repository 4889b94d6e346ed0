#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

#include "platform/large_memory.h"

void AdviseHugePages(void* memory, std::size_t bytes) noexcept {
  // The advice is about pages; a block of malloc's begins a few bytes into one.
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const auto begin = (reinterpret_cast<std::uintptr_t>(memory) + page - 1) / page * page;
  const auto end = (reinterpret_cast<std::uintptr_t>(memory) + bytes) / page * page;
  if (begin < end) {
    static_cast<void>(madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE));
  }
}
