#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

#include "platform/large_memory.h"

namespace dxf2d {

void adviseHugePages(void* memory, std::size_t bytes) noexcept {
  // madvise takes whole pages; a block from malloc begins a few bytes into one.
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const auto address = reinterpret_cast<std::uintptr_t>(memory);
  const auto begin = (address + page - 1) / page * page;
  const auto end = (address + bytes) / page * page;
  if (begin < end) {
    static_cast<void>(
        madvise(static_cast<char*>(memory) + (begin - address), end - begin, MADV_HUGEPAGE));
  }
}

}  // namespace dxf2d
