// UTF-16 as Windows takes it. Internal to the files for Windows.
#pragma once

#include <string>
#include <string_view>

namespace dxf2d {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

// The same units under the type that Windows has for them.
inline const wchar_t* windowsText(const char16_t* text) {
  return reinterpret_cast<const wchar_t*>(text);
}
inline const char16_t* frameworkText(const wchar_t* text) {
  return reinterpret_cast<const char16_t*>(text);
}

inline std::wstring windowsString(std::u16string_view text) { return {text.begin(), text.end()}; }
inline std::u16string frameworkString(std::wstring_view text) { return {text.begin(), text.end()}; }

}  // namespace dxf2d
