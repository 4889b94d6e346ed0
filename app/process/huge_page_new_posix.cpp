// The program's operator new: models are read into large arrays, by libraries of others, and the
// plug-in makes more; all of them come in huge pages this way.
#include <cstdlib>
#include <new>

#include "app/process/refused_memory.h"
#include "platform/large_memory.h"

namespace {

using dxf2d::adviseHugePages;
using dxf2d::kHugePage;
using dxf2d::kLargeBytes;

void* allocate(std::size_t bytes) {
  if (bytes < kLargeBytes) {
    return std::malloc(bytes != 0 ? bytes : 1);
  }
  const std::size_t whole = (bytes + kHugePage - 1) / kHugePage * kHugePage;
  void* memory = whole < bytes ? nullptr : std::aligned_alloc(kHugePage, whole);
  if (memory != nullptr) {
    adviseHugePages(memory, whole);
  }
  return memory;
}

}  // namespace

// The matching operators delete are the library's own, which call std::free.

// Whoever calls this one, as the algorithms of the C++ library do, can do without the memory.
void* operator new(std::size_t bytes, const std::nothrow_t& /*tag*/) noexcept {
  dxf2d::isRefusalExpected = true;
  void* const memory = allocate(bytes);
  dxf2d::isRefusalExpected = false;
  return memory;
}

void* operator new(std::size_t bytes) {
  for (;;) {
    if (void* memory = allocate(bytes); memory != nullptr) {
      return memory;
    }
    const std::new_handler handler = std::get_new_handler();
    if (handler == nullptr) {
      if (dxf2d::noteRefusedMemory != nullptr) {
        dxf2d::noteRefusedMemory();
      }
      throw std::bad_alloc();
    }
    handler();
  }
}
