// Memory for large arrays.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>

#include "platform/export.h"

// Getting memory page by page takes longer than most of what is done with it: from this size on it
// is asked for in huge pages, where the system has them.
inline constexpr std::size_t kLargeBytes = std::size_t{4} << 20U;

// `bytes` of memory, at least kLargeBytes, in huge pages where the system grants them. Ends with
// std::free. Null when there is none.
KT_PLATFORM_API void* AllocateLarge(std::size_t bytes) noexcept;

// For containers that may grow large.
template <class T>
struct LargeAllocator : std::allocator<T> {
  template <class U>
  struct rebind {
    using other = LargeAllocator<U>;
  };

  LargeAllocator() = default;
  template <class U>
  LargeAllocator(const LargeAllocator<U>& /*other*/) {}

  T* allocate(std::size_t count) {
    if (count < kLargeBytes / sizeof(T)) {
      return std::allocator<T>::allocate(count);
    }
    if (count <= static_cast<std::size_t>(-1) / 2 / sizeof(T)) {
      if (void* memory = AllocateLarge(count * sizeof(T)); memory != nullptr) {
        return static_cast<T*>(memory);
      }
    }
    throw std::bad_alloc();
  }
  void deallocate(T* memory, std::size_t count) {
    if (count < kLargeBytes / sizeof(T)) {
      std::allocator<T>::deallocate(memory, count);
    } else {
      std::free(memory);
    }
  }

  friend bool operator==(const LargeAllocator&, const LargeAllocator&) { return true; }
};
