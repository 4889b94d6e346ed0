// An owned file descriptor.
#pragma once

#include <unistd.h>

#include <utility>

namespace dxf2d {

class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() { Close(); }

  bool IsOpen() const { return number_ >= 0; }
  int Number() const { return number_; }
  // Returns the number and leaves the descriptor to the caller.
  int Release() { return std::exchange(number_, -1); }
  // Returns 0, or -1 with errno; the descriptor is closed in either case.
  int Close() { return IsOpen() ? close(std::exchange(number_, -1)) : 0; }

 private:
  int number_ = -1;
};

}  // namespace dxf2d
