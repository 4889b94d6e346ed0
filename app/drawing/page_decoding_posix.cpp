#include "app/drawing/page_decoding.h"

#include <iconv.h>

#include <bit>
#include <cerrno>
#include <cstdint>
#include <memory>
#include <stdexcept>

namespace dxf2d {

namespace {

struct CloseConversion {
  void operator()(void* conversion) const { iconv_close(conversion); }
};
using Conversion = std::unique_ptr<void, CloseConversion>;

Conversion openConversion(unsigned codePage) {
  const std::string page = codePage == kUtf8Page ? "UTF-8" : "CP" + std::to_string(codePage);
  const iconv_t opened = iconv_open("UTF-32LE", page.c_str());
  if (opened == std::bit_cast<iconv_t>(std::intptr_t{-1})) {
    throw std::invalid_argument("the system has no code page " + std::to_string(codePage));
  }
  return Conversion(opened);
}

}  // namespace

std::u32string decodeBytes(std::string_view bytes, unsigned codePage) {
  const Conversion conversion = openConversion(codePage);
  std::string input(bytes);
  char* in = input.data();
  std::size_t inLeft = input.size();
  // No page makes two characters of one byte.
  std::u32string text(input.size(), U'\0');
  char* out = reinterpret_cast<char*>(text.data());
  std::size_t outLeft = text.size() * sizeof(char32_t);
  // The Hebrew and the Vietnamese page hold a letter back until they see whether a mark follows.
  const auto releaseLetter = [&] { iconv(conversion.get(), nullptr, nullptr, &out, &outLeft); };
  while (inLeft > 0) {
    if (iconv(conversion.get(), &in, &inLeft, &out, &outLeft) != static_cast<std::size_t>(-1)) {
      break;
    }
    if (inLeft == 0 || outLeft < sizeof(char32_t) || errno == E2BIG) {
      break;
    }
    releaseLetter();
    *reinterpret_cast<char32_t*>(out) = kReplacement;
    out += sizeof(char32_t);
    outLeft -= sizeof(char32_t);
    ++in;
    --inLeft;
  }
  releaseLetter();
  text.resize(text.size() - outLeft / sizeof(char32_t));
  return text;
}

}  // namespace dxf2d
