// Memory for large arrays.
#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace dxf2d {

// Faulting memory in page by page takes longer than most work on it. From this size on, huge pages
// are requested, where the system has them.
inline constexpr std::size_t kLargeBytes = std::size_t{4} << 20U;
// The size of a huge page: large memory is aligned to it and should be a multiple of it.
inline constexpr std::size_t kHugePage = std::size_t{2} << 20U;

// Asks for `memory`, `bytes` of it not yet touched, in huge pages, as far as it holds whole pages.
// Where the system has none, the memory is left as it is.
void adviseHugePages(void* memory, std::size_t bytes) noexcept;

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
    adviseHugePages(memory, count * sizeof(T));
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

// Reserves room for `count` elements in an ordinary vector, for interfaces that require one.
template <class T>
void reserveLarge(std::vector<T>& list, std::size_t count) {
  if (count <= list.capacity()) {
    return;
  }
  std::vector<T> larger;
  larger.reserve(count);
  if (larger.capacity() >= kLargeBytes / sizeof(T)) {
    adviseHugePages(larger.data(), larger.capacity() * sizeof(T));
  }
  larger.insert(larger.end(), std::make_move_iterator(list.begin()),
                std::make_move_iterator(list.end()));
  list.swap(larger);
}

// push_back for a list that may grow large.
template <class T>
void appendLarge(std::vector<T>& list, const T& element) {
  if (list.size() == list.capacity()) {
    reserveLarge(list, list.size() * 2 + 1);
  }
  list.push_back(element);
}

}  // namespace dxf2d
