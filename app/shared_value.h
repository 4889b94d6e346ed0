// A value that a process and those that it forks share.
#pragma once

#include <sys/mman.h>

#include <new>
#include <type_traits>

// Starts as T{}. Whoever has ended has written what it wrote; there is no other order.
template <typename T>
class SharedValue {
  static_assert(std::is_trivially_copyable_v<T>, "pointers mean nothing in another process");

 public:
  SharedValue()
      : memory_(
            mmap(nullptr, sizeof(T), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {
    if (memory_ == MAP_FAILED) throw std::bad_alloc();
    value_ = new (memory_) T{};
  }
  ~SharedValue() { munmap(memory_, sizeof(T)); }
  SharedValue(const SharedValue&) = delete;
  SharedValue& operator=(const SharedValue&) = delete;

  T& operator*() { return *value_; }
  T* operator->() { return value_; }

 private:
  void* memory_;
  T* value_ = nullptr;
};
