// Text for people's terminals and logs.
#pragma once

#include <string>

// `text` (UTF-8, or any bytes) with a question mark for each byte of a control character, so that a
// file's name neither breaks a line nor gives the terminal an order.
inline std::string printable(std::string text) {
  bool followsC2 = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    // U+0080 to U+009F are two bytes.
    if (followsC2 && byte >= 0x80 && byte < 0xa0) text[i - 1] = text[i] = '?';
    if (byte < 0x20 || byte == 0x7f) text[i] = '?';
    followsC2 = byte == 0xc2;
  }
  return text;
}
