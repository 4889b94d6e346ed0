#include "app/page/page_text.h"

#include <nettle/base64.h>
#include <nettle/sha2.h>

#include <array>
#include <cstdint>

namespace dxf2d::page {

namespace {

const std::uint8_t* octets(std::string_view bytes) {
  return reinterpret_cast<const std::uint8_t*>(bytes.data());
}

}  // namespace

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

std::string base64Of(std::string_view bytes) {
  std::string text(BASE64_ENCODE_RAW_LENGTH(bytes.size()), '\0');
  base64_encode_raw(text.data(), bytes.size(), octets(bytes));
  return text;
}

std::string policySource(std::string_view text) {
  sha256_ctx state;
  sha256_init(&state);
  sha256_update(&state, text.size(), octets(text));
  std::array<std::uint8_t, SHA256_DIGEST_SIZE> digest{};
  sha256_digest(&state, digest.size(), digest.data());
  return "'sha256-" + base64Of({reinterpret_cast<const char*>(digest.data()), digest.size()}) + "'";
}

}  // namespace dxf2d::page
