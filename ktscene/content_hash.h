// A number that stands for what a node draws.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace dxf2d {

// FNV-1a over what is added, in order.
class ContentHash {
 public:
  template <typename Number>
  void Add(const Number& number) {
    AddBytes(&number, sizeof number);
  }
  template <typename Number>
  void AddList(const std::vector<Number>& list) {
    Add(list.size());
    AddBytes(list.data(), list.size() * sizeof(Number));
  }
  void AddText(std::u16string_view text) {
    Add(text.size());
    AddBytes(text.data(), text.size() * sizeof(char16_t));
  }
  std::uint64_t Value() const { return value_; }

 private:
  void AddBytes(const void* data, std::size_t count) {
    const auto* bytes = static_cast<const unsigned char*>(data);
    for (std::size_t i = 0; i < count; ++i) {
      value_ = (value_ ^ bytes[i]) * 1099511628211U;
    }
  }

  std::uint64_t value_ = 14695981039346656037U;
};

}  // namespace dxf2d
