// KtV::ParseLabelString: what it takes keeps the rules, and says the same when written anew.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/require.h"
#include "ktscene/kt_v.h"
#include "platform/path_text.h"

namespace {

struct Label {
  double numbers[7] = {};
  unsigned short align = 0;
  bool frame = false;
  double colors[3] = {};
  unsigned int flags = 0;
  std::vector<std::u16string> lines;

  friend bool operator==(const Label&, const Label&) = default;
};

bool parse(const std::u16string& text, Label& label) {
  double(&n)[7] = label.numbers;
  double(&c)[3] = label.colors;
  return KtV::ParseLabelString(text, n[0], n[1], n[2], n[3], n[4], n[5], n[6], label.align,
                               label.frame, c[0], c[1], c[2], label.flags, label.lines);
}

void appendAscii(std::u16string& text, std::string_view ascii) {
  text.append(ascii.begin(), ascii.end());
  text += u' ';
}

void appendReal(std::u16string& text, double value) {
  char printed[32];
  const int length = std::snprintf(printed, sizeof printed, "%.17g", value);
  appendAscii(text, {printed, static_cast<std::size_t>(length)});
}

std::u16string writeLabel(const Label& label) {
  std::u16string text;
  for (const double number : label.numbers) {
    appendReal(text, number);
  }
  text += static_cast<char16_t>(label.align);
  text += label.frame ? u" 1 " : u" 0 ";
  for (const double color : label.colors) {
    appendReal(text, color);
  }
  appendAscii(text, std::to_string(label.flags));
  for (const std::u16string& line : label.lines) {
    text += u'"';
    for (const char16_t unit : line) {
      text += unit == u'"' || unit == u'\\' ? u"\\" : u"";
      text += unit;
    }
    text += u"\" ";
  }
  return text;
}

bool isControl(char16_t unit) { return unit < 0x20 || (unit >= 0x7F && unit <= 0x9F); }

void checkRules(const Label& label) {
  constexpr double kLargest = 1e15;
  const auto inRange = [](double value) { return std::fabs(value) <= kLargest; };
  require(std::ranges::all_of(label.numbers, inRange), "sizes and places are at most 1e15");
  require(std::ranges::all_of(label.colors, inRange), "colors are at most 1e15");
  for (const std::u16string& line : label.lines) {
    require(std::ranges::none_of(line, isControl), "no line holds a control character");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  // UTF-8, and any byte that is none as a lone surrogate.
  const std::u16string text = pathFromBytes({reinterpret_cast<const char*>(bytes), size});
  Label label;
  label.lines = {u"left over"};
  if (!parse(text, label)) {
    return 0;
  }
  checkRules(label);
  Label again;
  require(parse(writeLabel(label), again), "a label written anew is a label");
  require(again == label, "a label written anew says the same");
  return 0;
}
