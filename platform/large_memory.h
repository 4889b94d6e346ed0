// Memory for large arrays.
#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "platform/export.h"

// Getting memory page by page takes longer than most of what is done with it: from this size on it
// is asked for in huge pages, where the system has them.
inline constexpr std::size_t kLargeBytes = std::size_t{4} << 20U;
// What large memory is aligned to, and best a multiple of: the size of a huge page.
inline constexpr std::size_t kHugePage = std::size_t{2} << 20U;

// Asks for `memory`, `bytes` of it not yet touched, in huge pages, as far as it holds whole pages.
// A system without them says no, and the memory serves as it is.
KT_PLATFORM_API void AdviseHugePages(void* memory, std::size_t bytes) noexcept;

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
    if (count > static_cast<std::size_t>(-1) / 2 / sizeof(T)) {
      throw std::bad_alloc();
    }
    void* memory = ::operator new (count * sizeof(T), std::align_val_t{kHugePage});
    AdviseHugePages(memory, count * sizeof(T));
    return static_cast<T*>(memory);
  }
  void deallocate(T* memory, std::size_t count) {
    if (count < kLargeBytes / sizeof(T)) {
      std::allocator<T>::deallocate(memory, count);
    } else {
      ::operator delete (memory, std::align_val_t{kHugePage});
    }
  }

  friend bool operator==(const LargeAllocator&, const LargeAllocator&) { return true; }
};

// Makes room for `count` elements in a list of the ordinary kind, as interfaces want it.
template <class T>
void ReserveLarge(std::vector<T>& list, std::size_t count) {
  if (count <= list.capacity()) {
    return;
  }
  std::vector<T> larger;
  larger.reserve(count);
  if (larger.capacity() >= kLargeBytes / sizeof(T)) {
    AdviseHugePages(larger.data(), larger.capacity() * sizeof(T));
  }
  larger.insert(larger.end(), std::make_move_iterator(list.begin()),
                std::make_move_iterator(list.end()));
  list.swap(larger);
}

// push_back for a list that may grow large.
template <class T>
void AppendLarge(std::vector<T>& list, const T& element) {
  if (list.size() == list.capacity()) {
    ReserveLarge(list, list.size() * 2 + 1);
  }
  list.push_back(element);
}
