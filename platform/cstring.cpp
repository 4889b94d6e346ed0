#include "platform/cstring.h"

#include <algorithm>
#include <charconv>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/decimal_point.h"
#include "platform/number_format.h"

inline namespace kt_platform {

namespace {

// The text under construction. It stays on the stack while it is short, and apart from the text it
// is going to replace, which may be one of the arguments.
class Output {
 public:
  // A place for `count` units, at most kRoom; Took says how many of them are text.
  char16_t* Room(std::size_t count) {
    if (count > kRoom - size_) {
      Spill();
    }
    return units_ + size_;
  }
  void Took(std::size_t count) { size_ += count; }

  void Append(std::u16string_view text) {
    if (text.size() > kRoom) {
      Spill();
      long_ += text;
      return;
    }
    std::memcpy(Room(text.size()), text.data(), text.size() * sizeof(char16_t));
    Took(text.size());
  }
  void Append(std::size_t count, char16_t unit) {
    if (count > kRoom) {
      Spill();
      long_.append(count, unit);
      return;
    }
    std::fill_n(Room(count), count, unit);
    Took(count);
  }
  // What printf wrote for a number.
  void AppendNumber(std::string_view printed) {
    if (printed.size() > kRoom) {
      std::u16string wide(printed.size(), u'\0');
      wide.resize(dxf2d::widenNumber(printed, wide.data()));
      Append(wide);
      return;
    }
    Took(dxf2d::widenNumber(printed, Room(printed.size())));
  }
  void MoveInto(std::u16string& text) {
    if (long_.empty()) {
      text.assign(units_, size_);
      return;
    }
    Spill();
    text = std::move(long_);
  }

 private:
  static constexpr std::size_t kRoom = 512;

  void Spill() {
    long_.append(units_, size_);
    size_ = 0;
  }

  char16_t units_[kRoom];
  std::size_t size_ = 0;
  std::u16string long_;
};

// In a struct, so that a function can take arguments off the caller's list.
struct Arguments {
  std::va_list list;
};

struct Conversion {
  // As it stands in the format.
  std::u16string_view text;
  std::string flags;
  int width = 0;
  int precision = -1;
  bool widthArgument = false;
  bool precisionArgument = false;
  int longs = 0;
  char16_t type = u'\0';

  bool IsPlain() const {
    return flags.empty() && width == 0 && !widthArgument && !precisionArgument;
  }
};

bool isOneOf(std::u16string_view set, char16_t unit) {
  return unit != u'\0' && set.find(unit) != std::u16string_view::npos;
}

// The largest width or precision; beyond it a slip in a format would fill the memory.
constexpr int kCountLimit = 65535;

int parseCount(const char16_t*& at) {
  int number = 0;
  for (; *at >= u'0' && *at <= u'9'; ++at) {
    number = std::min(number * 10 + (*at - u'0'), kCountLimit);
  }
  return number;
}

// Reads the conversion whose percent sign is at `at` and moves `at` past it.
Conversion parseConversion(const char16_t*& at) {
  Conversion conversion;
  const char16_t* const start = at++;
  for (; isOneOf(u"-+ #0", *at); ++at) {
    conversion.flags += static_cast<char>(*at);
  }
  if (*at == u'*') {
    conversion.widthArgument = true;
    ++at;
  } else {
    conversion.width = parseCount(at);
  }
  if (*at == u'.') {
    ++at;
    conversion.precisionArgument = *at == u'*';
    conversion.precision = conversion.precisionArgument ? -1 : parseCount(at);
    at += conversion.precisionArgument ? 1 : 0;
  }
  for (; *at == u'l' && conversion.longs < 2; ++at) {
    ++conversion.longs;
  }
  conversion.type = *at;
  at += *at != u'\0' ? 1 : 0;
  conversion.text = {start, static_cast<std::size_t>(at - start)};
  return conversion;
}

void takeCounts(Conversion& conversion, Arguments& arguments) {
  if (conversion.widthArgument) {
    const int width = std::clamp(va_arg(arguments.list, int), -kCountLimit, kCountLimit);
    conversion.flags += width < 0 ? "-" : "";
    conversion.width = std::abs(width);
  }
  if (conversion.precisionArgument) {
    conversion.precision = std::min(va_arg(arguments.list, int), kCountLimit);
  }
}

// The C library's text of one number; `size` is its length modifier.
template <typename Number>
void printNumber(const Conversion& conversion, const char* size, Number number, Output& output) {
  const std::string format =
      "%" + conversion.flags + "*.*" + size + static_cast<char>(conversion.type);
  char printed[400];
  const int length = std::snprintf(printed, sizeof printed, format.c_str(), conversion.width,
                                   conversion.precision, number);
  if (length < 0) {
    output.Append(conversion.text);
    return;
  }
  const auto needed = static_cast<std::size_t>(length);
  if (needed < sizeof printed) {
    output.AppendNumber({printed, needed});
    return;
  }
  std::string longer(needed + 1, '\0');
  std::snprintf(longer.data(), longer.size(), format.c_str(), conversion.width,
                conversion.precision, number);
  output.AppendNumber(std::string_view(longer).substr(0, needed));
}

void appendSigned(long long number, Output& output) {
  char digits[24];
  const auto result = std::to_chars(digits, digits + sizeof digits, number);
  const auto count = static_cast<std::size_t>(result.ptr - digits);
  std::copy_n(digits, count, output.Room(count));
  output.Took(count);
}

void appendReal(double number, Output& output) {
  output.Took(formatFixed6(number, output.Room(kFixed6Size)));
}

void formatSigned(const Conversion& conversion, Arguments& arguments, Output& output) {
  const long long number = conversion.longs == 0   ? va_arg(arguments.list, int)
                           : conversion.longs == 1 ? va_arg(arguments.list, long)
                                                   : va_arg(arguments.list, long long);
  if (!conversion.IsPlain() || conversion.precision >= 0) {
    printNumber(conversion, "ll", number, output);
    return;
  }
  appendSigned(number, output);
}

void formatUnsigned(const Conversion& conversion, Arguments& arguments, Output& output) {
  const unsigned long long number = conversion.longs == 0 ? va_arg(arguments.list, unsigned)
                                    : conversion.longs == 1
                                        ? va_arg(arguments.list, unsigned long)
                                        : va_arg(arguments.list, unsigned long long);
  printNumber(conversion, "ll", number, output);
}

void formatReal(const Conversion& conversion, Arguments& arguments, Output& output) {
  const double number = va_arg(arguments.list, double);
  const bool sixDigits = conversion.precision == -1 || conversion.precision == 6;
  if (conversion.type == u'f' && conversion.IsPlain() && sixDigits) {
    appendReal(number, output);
    return;
  }
  printNumber(conversion, "", number, output);
}

void appendPadded(const Conversion& conversion, std::u16string_view text, Output& output) {
  const auto width = static_cast<std::size_t>(conversion.width);
  const std::size_t padding = width > text.size() ? width - text.size() : 0;
  const bool left = conversion.flags.find('-') != std::string::npos;
  output.Append(left ? 0 : padding, u' ');
  output.Append(text);
  output.Append(left ? padding : 0, u' ');
}

void formatText(const Conversion& conversion, Arguments& arguments, Output& output) {
  const char16_t* text = va_arg(arguments.list, const char16_t*);
  text = text != nullptr ? text : u"(null)";
  if (conversion.precision < 0) {
    appendPadded(conversion, text, output);
    return;
  }
  // With a precision the text need not end in a null.
  const auto limit = static_cast<std::size_t>(conversion.precision);
  std::size_t length = 0;
  while (length < limit && text[length] != u'\0') {
    ++length;
  }
  appendPadded(conversion, {text, length}, output);
}

void formatConversion(Conversion& conversion, Arguments& arguments, Output& output) {
  if (conversion.text == u"%%") {
    output.Append(1, u'%');
    return;
  }
  if (!isOneOf(u"diuxXcsfFeEgG", conversion.type)) {
    output.Append(conversion.text);
    return;
  }
  takeCounts(conversion, arguments);
  switch (conversion.type) {
    case u'd':
    case u'i':
      return formatSigned(conversion, arguments, output);
    case u'u':
    case u'x':
    case u'X':
      return formatUnsigned(conversion, arguments, output);
    case u's':
      return formatText(conversion, arguments, output);
    case u'c': {
      const auto unit = static_cast<char16_t>(va_arg(arguments.list, int));
      return appendPadded(conversion, {&unit, 1}, output);
    }
    default:
      return formatReal(conversion, arguments, output);
  }
}

// Fills in the conversion whose percent sign is at `at`; returns what follows it. Bare %f and %d,
// nearly all there are, need no reading of flags.
const char16_t* formatNext(const char16_t* at, Arguments& arguments, Output& output) {
  if (at[1] == u'f') {
    appendReal(va_arg(arguments.list, double), output);
    return at + 2;
  }
  if (at[1] == u'd') {
    appendSigned(va_arg(arguments.list, int), output);
    return at + 2;
  }
  Conversion conversion = parseConversion(at);
  formatConversion(conversion, arguments, output);
  return at;
}

}  // namespace

void CString::Format(const char16_t* format, ...) {
  Arguments arguments;
  va_start(arguments.list, format);
  Output output;
  const char16_t* at = format != nullptr ? format : u"";
  while (*at != u'\0') {
    const char16_t* const start = at;
    while (*at != u'\0' && *at != u'%') {
      ++at;
    }
    output.Append({start, static_cast<std::size_t>(at - start)});
    if (*at == u'%') {
      at = formatNext(at, arguments, output);
    }
  }
  va_end(arguments.list);
  output.MoveInto(text_);
}

}  // namespace kt_platform
