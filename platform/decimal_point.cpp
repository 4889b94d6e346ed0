#include "platform/decimal_point.h"

#include <algorithm>
#include <cstring>

namespace dxf2d {

std::size_t writeDecimalPoint(char* text) {
  const char* point = decimalPoint();
  const std::size_t size = strnlen(point, kDecimalPointSize);
  std::memcpy(text, point, size);
  return size;
}

std::size_t widenNumber(std::string_view printed, char16_t* wide) {
  const auto widen = [](char byte) {
    return static_cast<char16_t>(static_cast<unsigned char>(byte));
  };
  const std::string_view point = decimalPoint();
  const std::size_t at = printed.find(point);
  if (point.empty() || at == std::string_view::npos) {
    std::transform(printed.begin(), printed.end(), wide, widen);
    return printed.size();
  }
  const std::string_view before = printed.substr(0, at);
  const std::string_view after = printed.substr(at + point.size());
  char16_t* end = std::transform(before.begin(), before.end(), wide, widen);
  end += writeDecimalPoint(end);
  end = std::transform(after.begin(), after.end(), end, widen);
  return static_cast<std::size_t>(end - wide);
}

}  // namespace dxf2d
