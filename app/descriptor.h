// Owns an open file of the system.
#pragma once

#include <unistd.h>

#include <utility>

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
  // 0, or -1 with errno; closed it is in any case.
  int Close() { return IsOpen() ? close(std::exchange(number_, -1)) : 0; }

 private:
  int number_ = -1;
};
