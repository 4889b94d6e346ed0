#include "platform/code_page.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>

inline namespace kt_platform {

namespace {

constexpr unsigned kUtf8 = 65001;
constexpr const char* kUtf16 = std::endian::native == std::endian::little ? "UTF-16LE" : "UTF-16BE";

struct Page {
  unsigned number;
  const char* name;
};

// iconv's names; its "CP" tables are Microsoft's.
constexpr std::array kPages = {Page{1252, "CP1252"}, Page{1250, "CP1250"}, Page{1251, "CP1251"},
                               Page{1253, "CP1253"}, Page{1254, "CP1254"}, Page{1255, "CP1255"},
                               Page{1256, "CP1256"}, Page{1257, "CP1257"}, Page{1258, "CP1258"},
                               Page{874, "CP874"},   Page{932, "CP932"},   Page{936, "CP936"},
                               Page{949, "CP949"},   Page{950, "CP950"},   Page{kUtf8, "UTF-8"}};

thread_local unsigned threadCodePage = 1252;

const Page* findPage(unsigned codePage) {
  const unsigned number = codePage == CP_THREAD_ACP ? threadCodePage : codePage;
  const auto* found = std::find_if(kPages.begin(), kPages.end(),
                                   [&](const Page& page) { return page.number == number; });
  return found != kPages.end() ? found : nullptr;
}

// The thread's open conversion. Opening one takes longer than converting a line, and a thread
// rarely changes its page.
class Encoder {
 public:
  Encoder() = default;
  ~Encoder() { Close(); }
  Encoder(const Encoder&) = delete;
  Encoder& operator=(const Encoder&) = delete;

  // Null when iconv lacks the page.
  iconv_t For(const Page& page) {
    if (page_ != &page) {
      Close();
      iconv_t opened = iconv_open(page.name, kUtf16);
      if (std::bit_cast<std::intptr_t>(opened) == -1) {
        return nullptr;
      }
      descriptor_ = opened;
      page_ = &page;
    }
    iconv(descriptor_, nullptr, nullptr, nullptr, nullptr);
    return descriptor_;
  }

 private:
  void Close() {
    if (std::exchange(page_, nullptr) != nullptr) {
      iconv_close(descriptor_);
    }
  }

  const Page* page_ = nullptr;
  iconv_t descriptor_ = nullptr;
};

// Copies the leading units below 0x80, at most `count`, as bytes and returns how many there were.
// Every page holds ASCII as it is. Four units make one word; the shifts keep their order on either
// endianness.
std::size_t narrowAscii(const char16_t* wide, std::size_t count, char* bytes) {
  constexpr std::uint64_t kBeyondAscii = 0xFF80FF80FF80FF80;
  std::size_t done = 0;
  for (; count - done >= 4; done += 4) {
    std::uint64_t word = 0;
    std::memcpy(&word, wide + done, sizeof word);
    if ((word & kBeyondAscii) != 0) {
      break;
    }
    word = (word | word >> 8) & 0x0000FFFF0000FFFF;
    const auto four = static_cast<std::uint32_t>(word | word >> 16);
    std::memcpy(bytes + done, &four, sizeof four);
  }
  for (; done < count && wide[done] < 0x80; ++done) {
    bytes[done] = static_cast<char>(wide[done]);
  }
  return done;
}

std::size_t countAscii(const char16_t* wide, std::size_t count) {
  const auto* end = std::find_if(wide, wide + count, [](char16_t unit) { return unit >= 0x80; });
  return static_cast<std::size_t>(end - wide);
}

bool isPair(const char16_t* wide, std::size_t count) {
  return count >= 2 && wide[0] >= 0xD800 && wide[0] <= 0xDBFF && wide[1] >= 0xDC00 &&
         wide[1] <= 0xDFFF;
}

// U+E0000 to U+E007F, which glibc silently drops where a page lacks them.
bool isTag(const char16_t* wide, std::size_t count) {
  return count >= 2 && wide[0] == 0xDB40 && wide[1] >= 0xDC00 && wide[1] <= 0xDC7F;
}

// Where converted bytes go: a caller's buffer or, to count them, a scratch one.
class Output {
 public:
  Output(char* bytes, std::size_t size) : bytes_(bytes), room_(size) {}

  bool Put(char byte, std::size_t times) {
    if (bytes_ != nullptr) {
      if (times > room_) {
        return false;
      }
      bytes_ = std::fill_n(bytes_, times, byte);
      room_ -= times;
    }
    written_ += times;
    return true;
  }

  // Converts what it can and moves `in` past it. False when the room is used up.
  bool Convert(iconv_t descriptor, const char16_t*& in, const char16_t* end) {
    auto* source = reinterpret_cast<char*>(const_cast<char16_t*>(in));
    auto left = static_cast<std::size_t>(end - in) * sizeof(char16_t);
    bool fits = true;
    for (bool again = true; again;) {
      std::array<char, 4096> scratch;
      char* out = bytes_ != nullptr ? bytes_ : scratch.data();
      const std::size_t room = bytes_ != nullptr ? room_ : scratch.size();
      std::size_t outLeft = room;
      const std::size_t result = iconv(descriptor, &source, &left, &out, &outLeft);
      const bool full = result == static_cast<std::size_t>(-1) && errno == E2BIG;
      written_ += room - outLeft;
      if (bytes_ != nullptr) {
        bytes_ = out;
        room_ = outLeft;
        fits = !full;
      }
      again = full && bytes_ == nullptr;
    }
    in = end - left / sizeof(char16_t);
    return fits;
  }

  std::size_t Written() const { return written_; }

 private:
  // Null when bytes are only counted.
  char* bytes_;
  std::size_t room_;
  std::size_t written_ = 0;
};

struct Fallback {
  char character;
  bool used = false;
};

// Where to end one call of iconv: before the next tag character, which only UTF-8 can encode, and
// after kRun units, since iconv converts ahead and that work is lost when it meets a unit that the
// page lacks. Never inside a surrogate pair.
const char16_t* runEnd(const char16_t* in, const char16_t* end, const Page& page) {
  constexpr std::ptrdiff_t kRun = 128;
  const char16_t* stop = end - in > kRun ? in + kRun : end;
  if (stop != end && isPair(stop - 1, 2)) {
    --stop;
  }
  if (page.number == kUtf8) {
    return stop;
  }
  const char16_t* at = in;
  while (at != stop && !isTag(at, static_cast<std::size_t>(stop - at))) {
    ++at;
  }
  return at;
}

// Converts [`in`, `end`); false when the output lacks room or iconv the page.
bool encode(const Page& page, const char16_t* in, const char16_t* end, Output& output,
            Fallback& fallback) {
  thread_local Encoder encoder;
  iconv_t descriptor = encoder.For(page);
  if (descriptor == nullptr) {
    return false;
  }
  while (in != end) {
    const char16_t* const stop = runEnd(in, end, page);
    if (in != stop) {
      if (!output.Convert(descriptor, in, stop)) {
        return false;
      }
      if (in == stop) {
        continue;
      }
    }
    const std::size_t units = isPair(in, static_cast<std::size_t>(end - in)) ? 2 : 1;
    fallback.used = true;
    if (!output.Put(fallback.character, units)) {
      return false;
    }
    in += units;
  }
  return true;
}

int countOrZero(std::size_t bytes) { return bytes <= INT_MAX ? static_cast<int>(bytes) : 0; }

}  // namespace

bool SetThreadCodePage(unsigned codePage) {
  if (codePage == CP_THREAD_ACP || findPage(codePage) == nullptr) {
    return false;
  }
  threadCodePage = codePage;
  return true;
}

unsigned GetThreadCodePage() { return threadCodePage; }

int lstrlenW(const char16_t* text) {
  return text != nullptr ? countOrZero(std::char_traits<char16_t>::length(text)) : 0;
}

int WideCharToMultiByte(unsigned codePage, unsigned long /*flags*/, const char16_t* wide,
                        int wideLength, char* bytes, int size, const char* defaultChar,
                        bool* usedDefault) {
  if (usedDefault != nullptr) {
    *usedDefault = false;
  }
  const bool counting = size == 0;
  const bool known = codePage == CP_THREAD_ACP || findPage(codePage) != nullptr;
  if (!known || wide == nullptr || wideLength == 0 || wideLength < -1 || size < 0 ||
      (bytes == nullptr && !counting)) {
    return 0;
  }
  const std::size_t length = wideLength == -1 ? std::char_traits<char16_t>::length(wide) + 1
                                              : static_cast<std::size_t>(wideLength);
  const auto room = static_cast<std::size_t>(size);
  const std::size_t ascii =
      counting ? countAscii(wide, length) : narrowAscii(wide, std::min(length, room), bytes);
  if (ascii == length) {
    return countOrZero(ascii);
  }
  Output output(counting ? nullptr : bytes + ascii, counting ? 0 : room - ascii);
  Fallback fallback{defaultChar != nullptr ? *defaultChar : '?'};
  if (!encode(*findPage(codePage), wide + ascii, wide + length, output, fallback)) {
    return 0;
  }
  if (usedDefault != nullptr) {
    *usedDefault = fallback.used;
  }
  return countOrZero(ascii + output.Written());
}

}  // namespace kt_platform
