#include "app/inspect/guarded_pages.h"

#include <sys/mman.h>
#include <unistd.h>

#include <new>

namespace dxf2d {

std::size_t pageSize() { return static_cast<std::size_t>(sysconf(_SC_PAGESIZE)); }

void* reservePages(std::size_t count) {
  void* const memory =
      mmap(nullptr, pageSize() * count, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) {
    throw std::bad_alloc();
  }
  return memory;
}

void openPage(void* page) { mprotect(page, pageSize(), PROT_READ | PROT_WRITE); }

void closePage(void* page) { mprotect(page, pageSize(), PROT_NONE); }

}  // namespace dxf2d
