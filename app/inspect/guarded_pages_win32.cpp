#include "app/inspect/guarded_pages.h"

#include <new>

#include "platform/windows_api.h"

namespace dxf2d {

std::size_t pageSize() {
  SYSTEM_INFO system{};
  GetSystemInfo(&system);
  return system.dwPageSize;
}

void* reservePages(std::size_t count) {
  void* const memory =
      VirtualAlloc(nullptr, pageSize() * count, MEM_RESERVE | MEM_COMMIT, PAGE_NOACCESS);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return memory;
}

void openPage(void* page) {
  DWORD before = 0;
  VirtualProtect(page, pageSize(), PAGE_READWRITE, &before);
}

void closePage(void* page) {
  DWORD before = 0;
  VirtualProtect(page, pageSize(), PAGE_NOACCESS, &before);
}

}  // namespace dxf2d
