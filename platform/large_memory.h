// Memory for large arrays.
#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <new>
#include <type_traits>
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

// An array whose elements hold anything until they are written: by several threads, say, each of
// which then faults in the pages of its own part.
template <class T>
class LargeArray {
  static_assert(std::is_trivially_destructible_v<T> && std::is_trivially_copyable_v<T>);

 public:
  LargeArray() = default;
  explicit LargeArray(std::size_t size) : data_(LargeAllocator<T>().allocate(size)), size_(size) {}
  LargeArray(LargeArray&& other) noexcept
      : data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0)) {}
  LargeArray& operator=(LargeArray&& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    return *this;
  }
  ~LargeArray() {
    if (data_ != nullptr) {
      LargeAllocator<T>().deallocate(data_, size_);
    }
  }

  T* data() { return data_; }
  const T* data() const { return data_; }
  std::size_t size() const { return size_; }
  T& operator[](std::size_t i) { return data_[i]; }
  const T& operator[](std::size_t i) const { return data_[i]; }
  T* begin() { return data_; }
  T* end() { return data_ + size_; }
  const T* begin() const { return data_; }
  const T* end() const { return data_ + size_; }

 private:
  T* data_ = nullptr;
  std::size_t size_ = 0;
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
