#include "platform/path_text.h"

#include <iconv.h>

#include <bit>
#include <cerrno>
#include <cstdint>
#include <system_error>

namespace {

constexpr const char* kUtf16 = std::endian::native == std::endian::little ? "UTF-16LE" : "UTF-16BE";
constexpr char16_t kEscapeBase = 0xDC00;

class Converter {
 public:
  Converter(const char* to, const char* from) : descriptor_(iconv_open(to, from)) {
    if (!IsOpen()) {
      throw std::system_error(errno, std::generic_category(), "iconv_open");
    }
  }
  ~Converter() { iconv_close(descriptor_); }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  // Converts as much of [`in`, `in` + `inSize`) as is valid, moving the four past what was read and
  // written. `out` must have room for all of it. Returns true when nothing is left.
  bool Convert(char*& in, std::size_t& inSize, char*& out, std::size_t& outSize) {
    iconv(descriptor_, nullptr, nullptr, nullptr, nullptr);
    return iconv(descriptor_, &in, &inSize, &out, &outSize) != static_cast<std::size_t>(-1);
  }

 private:
  bool IsOpen() const { return std::bit_cast<std::intptr_t>(descriptor_) != -1; }

  iconv_t descriptor_;
};

bool isEscape(char16_t unit) { return unit >= kEscapeBase + 0x80 && unit <= kEscapeBase + 0xFF; }

}  // namespace

std::u16string PathFromBytes(std::string_view bytes) {
  Converter converter(kUtf16, "UTF-8");
  // Never more units than bytes.
  std::u16string wide(bytes.size(), u'\0');
  std::string source(bytes);
  char* in = source.data();
  std::size_t inSize = source.size();
  auto* out = reinterpret_cast<char*>(wide.data());
  std::size_t outSize = wide.size() * sizeof(char16_t);
  while (inSize > 0 && !converter.Convert(in, inSize, out, outSize)) {
    const auto escape = static_cast<char16_t>(kEscapeBase + static_cast<unsigned char>(*in));
    out = std::char_traits<char>::copy(out, reinterpret_cast<const char*>(&escape), sizeof escape) +
          sizeof escape;
    outSize -= sizeof escape;
    ++in;
    --inSize;
  }
  wide.resize(wide.size() - outSize / sizeof(char16_t));
  return wide;
}

std::string PathToBytes(std::u16string_view path) {
  Converter converter("UTF-8", kUtf16);
  // At most three bytes come of a unit.
  std::string bytes(path.size() * 3, '\0');
  std::u16string source(path);
  auto* in = reinterpret_cast<char*>(source.data());
  std::size_t inSize = source.size() * sizeof(char16_t);
  char* out = bytes.data();
  std::size_t outSize = bytes.size();
  while (inSize > 0 && !converter.Convert(in, inSize, out, outSize)) {
    const char16_t unit = source[source.size() - inSize / sizeof(char16_t)];
    *out++ = isEscape(unit) ? static_cast<char>(unit - kEscapeBase) : '?';
    --outSize;
    in += sizeof unit;
    inSize -= sizeof unit;
  }
  bytes.resize(bytes.size() - outSize);
  return bytes;
}
