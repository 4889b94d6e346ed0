#include "ktscene/kt_label.h"

#include <charconv>
#include <cmath>
#include <iterator>
#include <stdexcept>

namespace {

constexpr const char16_t* kTag = u"T:";

bool isControl(char16_t unit) { return unit <= 0x1F || (unit >= 0x7F && unit <= 0x9F); }

void appendNumber(std::u16string& text, double number) {
  constexpr double kLargest = 1e15;
  if (!(std::abs(number) <= kLargest)) {
    throw std::invalid_argument(
        "a label's number is not finite or beyond 1e15; correct it before the label is made");
  }
  char digits[32];
  const char* end = std::to_chars(digits, std::end(digits), number).ptr;
  text.append(static_cast<const char*>(digits), end);
  text += u' ';
}

void appendLine(std::u16string& text, const std::u16string& line) {
  text += u" \"";
  for (const char16_t unit : line) {
    if (unit == u'"' || unit == u'\\') {
      text += u'\\';
    }
    text += isControl(unit) ? u' ' : unit;
  }
  text += u'"';
}

}  // namespace

std::u16string KtMakeLabel(const KtLabelContent& content) {
  if (content.align == u' ' || isControl(content.align)) {
    throw std::invalid_argument("a label's alignment is a space; use a letter, such as L");
  }
  std::u16string text = kTag;
  for (const double number : {content.width, content.height, content.depth, content.x, content.y,
                              content.z, content.angle}) {
    appendNumber(text, number);
  }
  text += content.align;
  text += content.frame ? u" 1 " : u" 0 ";
  for (const double component : {content.red, content.green, content.blue}) {
    appendNumber(text, component);
  }
  const std::string flags = std::to_string(content.flags);
  text.append(flags.begin(), flags.end());
  for (const std::u16string& line : content.lines) {
    appendLine(text, line);
  }
  return text;
}
