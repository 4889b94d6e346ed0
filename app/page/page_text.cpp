#include "app/page/page_text.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "app/output/sha256.h"

namespace dxf2d::page {

std::string htmlText(std::string_view text) {
  std::string html;
  for (const char character : text) {
    switch (character) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '"':
        html += "&quot;";
        break;
      case '\'':
        html += "&#39;";
        break;
      default:
        html += character;
    }
  }
  return html;
}

std::string scriptText(std::string_view json) {
  std::string text;
  for (const char character : json) {
    switch (character) {
      case '<':
        text += "\\u003c";
        break;
      case '>':
        text += "\\u003e";
        break;
      case '&':
        text += "\\u0026";
        break;
      default:
        text += character;
    }
  }
  return text;
}

// RFC 4648, section 4.
std::string base64Of(std::string_view bytes) {
  constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  constexpr std::size_t kGroup = 3;
  std::string text;
  text.reserve((bytes.size() + kGroup - 1) / kGroup * 4);
  for (; !bytes.empty(); bytes.remove_prefix(std::min(bytes.size(), kGroup))) {
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < kGroup; ++i) {
      bits = bits << 8U | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U);
    }
    for (std::size_t i = 0; i <= kGroup; ++i) {
      text += i <= bytes.size() ? kDigits[bits >> (18U - 6U * i) & 0x3FU] : '=';
    }
  }
  return text;
}

std::string policySource(std::string_view text) {
  Sha256 hash;
  hash.Add(text);
  const std::array<std::uint8_t, 32> digest = hash.Digest();
  return "'sha256-" + base64Of({reinterpret_cast<const char*>(digest.data()), digest.size()}) + "'";
}

}  // namespace dxf2d::page
