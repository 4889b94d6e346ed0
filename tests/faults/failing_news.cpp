#include "tests/faults/failing_news.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::uint64_t kNever = std::numeric_limits<std::uint64_t>::max();

struct ThreadNews {
  std::uint64_t made = 0;
  std::uint64_t aligned = 0;
  // The first and the last that fail, as numbers of `made`.
  std::uint64_t firstFailing = kNever;
  std::uint64_t lastFailing = kNever;
};

thread_local constinit ThreadNews news;
// Of all threads: what one makes, another may free.
constinit std::atomic<std::int64_t> live = 0;

bool isToFail() {
  ++news.made;
  return news.made >= news.firstFailing && news.made <= news.lastFailing;
}

void* counted(void* memory) {
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  ++live;
  return memory;
}

void* allocate(std::size_t size) {
  return counted(isToFail() ? nullptr : std::malloc(std::max<std::size_t>(size, 1)));
}

void* allocate(std::size_t size, std::align_val_t alignment) {
  const auto unit = static_cast<std::size_t>(alignment);
  ++news.aligned;
  const std::size_t whole = std::max<std::size_t>((size + unit - 1) / unit, 1) * unit;
  return counted(isToFail() ? nullptr : std::aligned_alloc(unit, whole));
}

template <typename... Arguments>
void* allocateOrNull(Arguments... arguments) noexcept {
  try {
    return allocate(arguments...);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void release(void* memory) noexcept {
  if (memory != nullptr) {
    --live;
    std::free(memory);
  }
}

}  // namespace

FailingNews::FailingNews(std::uint64_t nth, Kind kind) {
  news.firstFailing = news.made + nth;
  news.lastFailing = kind == Kind::kOnce ? news.firstFailing : kNever;
}

FailingNews::~FailingNews() { news.firstFailing = news.lastFailing = kNever; }

bool FailingNews::Failed() const { return news.made >= news.firstFailing; }

std::int64_t liveAllocations() { return live; }
std::uint64_t allocationsMade() { return news.made; }
std::uint64_t alignedAllocationsMade() { return news.aligned; }

// Every form, so that none is left to a sanitizer or to a library, and visible to the shared
// libraries and the module.
#define DXF2D_REPLACES __attribute__((visibility("default")))

using Tag = const std::nothrow_t&;
using Alignment = std::align_val_t;

DXF2D_REPLACES void* operator new(std::size_t size) { return allocate(size); }
DXF2D_REPLACES void* operator new[](std::size_t size) { return allocate(size); }
DXF2D_REPLACES void* operator new(std::size_t size, Tag) noexcept { return allocateOrNull(size); }
DXF2D_REPLACES void* operator new[](std::size_t size, Tag) noexcept { return allocateOrNull(size); }
DXF2D_REPLACES void* operator new(std::size_t size, Alignment unit) { return allocate(size, unit); }
DXF2D_REPLACES void* operator new[](std::size_t size, Alignment unit) {
  return allocate(size, unit);
}
DXF2D_REPLACES void* operator new(std::size_t size, Alignment unit, Tag) noexcept {
  return allocateOrNull(size, unit);
}
DXF2D_REPLACES void* operator new[](std::size_t size, Alignment unit, Tag) noexcept {
  return allocateOrNull(size, unit);
}

DXF2D_REPLACES void operator delete(void* memory) noexcept { release(memory); }
DXF2D_REPLACES void operator delete[](void* memory) noexcept { release(memory); }
DXF2D_REPLACES void operator delete(void* memory, std::size_t) noexcept { release(memory); }
DXF2D_REPLACES void operator delete[](void* memory, std::size_t) noexcept { release(memory); }
DXF2D_REPLACES void operator delete(void* memory, Tag) noexcept { release(memory); }
DXF2D_REPLACES void operator delete[](void* memory, Tag) noexcept { release(memory); }
DXF2D_REPLACES void operator delete(void* memory, Alignment) noexcept { release(memory); }
DXF2D_REPLACES void operator delete[](void* memory, Alignment) noexcept { release(memory); }
DXF2D_REPLACES void operator delete(void* memory, std::size_t, Alignment) noexcept {
  release(memory);
}
DXF2D_REPLACES void operator delete[](void* memory, std::size_t, Alignment) noexcept {
  release(memory);
}
DXF2D_REPLACES void operator delete(void* memory, Alignment, Tag) noexcept { release(memory); }
DXF2D_REPLACES void operator delete[](void* memory, Alignment, Tag) noexcept { release(memory); }
