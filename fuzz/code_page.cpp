// Code pages, both ways: WideCharToMultiByte, as drawings are written, and decodeText, as they are
// read back.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "app/drawing/text_decoding.h"
#include "fuzz/require.h"
#include "platform/code_page.h"
#include "platform/path_text.h"

namespace {

using namespace dxf2d;

constexpr unsigned kUtf8 = 65001;
constexpr unsigned kPages[] = {1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257,
                               1258, 874,  932,  936,  949,  950,  kUtf8};

// Hebrew and Vietnamese have letters of several characters, which are written in parts and read as
// one.
bool composes(unsigned page) { return page == 1255 || page == 1258; }
bool isSingleByte(unsigned page) {
  return page == 874 || (page >= 1250 && page <= 1257 && !composes(page));
}

bool isHigh(char16_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isEscape(char16_t unit) { return unit >= 0xDC80 && unit <= 0xDCFF; }
bool isControl(char16_t unit) { return unit < 0x20 || (unit >= 0x7F && unit <= 0x9F); }

// Whether characters have one form each in the page. Those of Hebrew and Vietnamese letters with
// marks have two, and the Japanese page takes a yen sign for a backslash, among others.
bool isOneToOne(unsigned page) { return !composes(page) && page != 932; }

// Whether decodeText takes every character for itself.
bool isLiteral(std::string_view bytes) {
  return std::ranges::none_of(bytes, [](char byte) {
    return (byte >= 0 && byte < 0x20) || byte == 0x7F || byte == '\\' || byte == '%' || byte == '^';
  });
}

struct Encoded {
  std::string bytes;
  bool usedDefault = false;
};

Encoded encode(unsigned page, std::u16string_view text) {
  const int length = static_cast<int>(text.size());
  const int needed =
      WideCharToMultiByte(page, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  require((needed == 0) == text.empty(), "every text but the empty one converts");
  Encoded encoded;
  if (needed == 0) {
    return encoded;
  }
  constexpr char kUntouched = 'x';
  std::string bytes(static_cast<std::size_t>(needed) + 4, kUntouched);
  const auto convert = [&](int room) {
    return WideCharToMultiByte(page, 0, text.data(), length, bytes.data(), room, nullptr,
                               &encoded.usedDefault);
  };
  require(needed == 1 || convert(needed - 1) == 0, "too little room is a failure");
  require(bytes.ends_with(std::string(5, kUntouched)), "room that is not given stays untouched");
  require(convert(needed) == needed, "as many bytes are written as were announced");
  require(bytes.ends_with(std::string(4, kUntouched)), "nothing is written behind the room");
  encoded.bytes = bytes.substr(0, static_cast<std::size_t>(needed));
  return encoded;
}

std::u16string decode(unsigned page, std::string_view bytes) {
  std::u16string text = pathFromBytes(decodeText(bytes, page));
  for (std::size_t i = 0; i < text.size(); ++i) {
    require(!isEscape(text[i]) || (i > 0 && isHigh(text[i - 1])), "what is read is UTF-8");
  }
  require(std::ranges::none_of(text, isControl), "what is read holds no control character");
  return text;
}

void checkThereAndBack(unsigned page, const std::u16string& text) {
  const Encoded encoded = encode(page, text);
  require(!isSingleByte(page) || encoded.bytes.size() == text.size(), "a unit is a byte");
  const std::u16string back = decode(page, encoded.bytes);
  if (encoded.usedDefault || !isLiteral(encoded.bytes) || std::ranges::any_of(text, isControl)) {
    return;
  }
  require(back == text || !isOneToOne(page), "what was written is read");
  // A letter that came in parts is written as the one that it was read as.
  const std::string bytes = encode(page, back).bytes;
  require(bytes == encoded.bytes || (composes(page) && decode(page, bytes) == back),
          "what was read is written as it was, or is read as it was");
}

// No page but those that compose looks at what comes before.
void checkParts(unsigned page, std::u16string_view text) {
  const std::size_t cut = text.size() / 2;
  if (composes(page) || cut == 0 || isHigh(text[cut - 1])) {
    return;
  }
  require(encode(page, text.substr(0, cut)).bytes + encode(page, text.substr(cut)).bytes ==
              encode(page, text).bytes,
          "a text is its parts");
}

void checkBackAndThere(unsigned page, std::string_view bytes) {
  constexpr char16_t kReplacement = 0xFFFD;
  const std::u16string text = decode(page, bytes);
  // Notations are resolved and control characters dropped, which brings others together.
  if (!isLiteral(bytes) || text.find(kReplacement) != std::u16string::npos) {
    return;
  }
  const Encoded encoded = encode(page, text);
  require(!encoded.usedDefault, "what was read can be written");
  require(decode(page, encoded.bytes) == text, "what was read and written is read again");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  const unsigned page = data.PickValueInArray(kPages);
  const std::string raw = data.ConsumeRemainingBytesAsString();
  std::u16string text(raw.size() / sizeof(char16_t), u'\0');
  std::memcpy(text.data(), raw.data(), text.size() * sizeof(char16_t));
  checkThereAndBack(page, text);
  checkParts(page, text);
  checkBackAndThere(page, raw);
  return 0;
}
