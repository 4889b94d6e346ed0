#include "platform/locale.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "platform/path_text.h"

inline namespace kt_platform {

namespace {

// Longer than any name but that of a locale mixed from many; most are ten letters long.
constexpr std::size_t kUsualSize = 256;

// Copies `name` to `copy` as it is when it is of the usual kind: ASCII, and shorter than
// kUsualSize. Such a name needs no allocation, so a locale can be restored when memory has run out.
template <typename From, typename To>
bool copyUsual(std::basic_string_view<From> name, std::array<To, kUsualSize>& copy) {
  const auto isAscii = [](From c) { return static_cast<char16_t>(c) < 0x80; };
  if (name.size() >= kUsualSize || !std::ranges::all_of(name, isAscii)) {
    return false;
  }
  *std::ranges::transform(name, copy.begin(), [](From c) { return static_cast<To>(c); }).out = 0;
  return true;
}

const char* setNarrowLocale(int category, const char16_t* locale) {
  if (locale == nullptr) {
    return std::setlocale(category, nullptr);
  }
  std::array<char, kUsualSize> usual;
  if (copyUsual(std::u16string_view(locale), usual)) {
    return std::setlocale(category, usual.data());
  }
  return std::setlocale(category, pathToBytes(locale).c_str());
}

}  // namespace

// NOLINTNEXTLINE(bugprone-reserved-identifier): the C runtime's own name.
const char16_t* _wsetlocale(int category, const char16_t* locale) {
  thread_local std::array<char16_t, kUsualSize> usual;
  thread_local std::u16string other;
  const char* inForce = setNarrowLocale(category, locale);
  if (inForce == nullptr) {
    return nullptr;
  }
  if (copyUsual(std::string_view(inForce), usual)) {
    return usual.data();
  }
  other = pathFromBytes(inForce);
  // NOLINTNEXTLINE(clang-analyzer-cplusplus.InnerPointer): the thread's text outlives the call.
  return other.c_str();
}

}  // namespace kt_platform
