// Text in a code page.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>

#include "platform/code_page.h"

inline constexpr unsigned kUtf8 = 65001;
inline constexpr std::array kPages = {1250U, 1251U, 1252U, 1253U, 1254U, 1255U, 1256U, 1257U,
                                      1258U, 874U,  932U,  936U,  949U,  950U,  kUtf8};

// Converted into a buffer of exactly the size that the call without a buffer announces.
inline std::string encode(unsigned page, std::u16string_view text, bool* usedDefault = nullptr,
                          const char* defaultChar = nullptr) {
  const int length = static_cast<int>(text.size());
  const int size = WideCharToMultiByte(page, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  const int written = WideCharToMultiByte(page, 0, text.data(), length, bytes.data(), size,
                                          defaultChar, usedDefault);
  EXPECT_EQ(written, size);
  return bytes;
}
