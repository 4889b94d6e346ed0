#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

#include "ktscene/kt_v.h"
#include "ktscene/number_text.h"

namespace {

bool isControl(char16_t c) { return c <= 0x1F || (c >= 0x7F && c <= 0x9F); }

// Reads a label from left to right. Each operation returns false when the text there does not fit.
class LabelReader {
 public:
  explicit LabelReader(std::u16string_view text) : rest_(text) { SkipSpaces(); }

  bool AtEnd() const { return rest_.empty(); }

  bool ReadNumber(double& value) {
    constexpr double kLargest = 1e15;
    return TakeAsciiWord() && dxf2d::parseReal(ascii_, value) && std::abs(value) <= kLargest;
  }

  bool ReadAlign(unsigned short& align) {
    const std::u16string_view word = TakeWord();
    if (word.size() != 1) {
      return false;
    }
    align = word.front();
    return true;
  }

  bool ReadFrame(bool& frame) {
    const std::u16string_view word = TakeWord();
    frame = word == u"1";
    return frame || word == u"0";
  }

  bool ReadFlags(unsigned int& flags) {
    constexpr std::size_t kMostDigits = 10;
    if (!TakeAsciiWord() || ascii_.empty() || ascii_.size() > kMostDigits) {
      return false;
    }
    const char* end = ascii_.data() + ascii_.size();
    const auto [read, error] = std::from_chars(ascii_.data(), end, flags);
    return error == std::errc() && read == end;
  }

  bool ReadLine(std::u16string& line) {
    if (!rest_.starts_with(u'"')) {
      return false;
    }
    for (std::size_t i = 1; i < rest_.size(); ++i) {
      if (rest_[i] == u'"') {
        return EndLine(i + 1);
      }
      if (rest_[i] == u'\\') {
        ++i;
        if (i == rest_.size() || (rest_[i] != u'"' && rest_[i] != u'\\')) {
          return false;
        }
      }
      line += rest_[i];
    }
    return false;
  }

 private:
  void SkipSpaces() { rest_.remove_prefix(std::min(rest_.find_first_not_of(u' '), rest_.size())); }

  bool EndLine(std::size_t size) {
    rest_.remove_prefix(size);
    if (!rest_.empty() && rest_.front() != u' ') {
      return false;
    }
    SkipSpaces();
    return true;
  }

  std::u16string_view TakeWord() {
    const std::u16string_view word = rest_.substr(0, rest_.find(u' '));
    rest_.remove_prefix(word.size());
    SkipSpaces();
    return word;
  }

  bool TakeAsciiWord() {
    const std::u16string_view word = TakeWord();
    if (std::ranges::any_of(word, [](char16_t c) { return c > 0x7F; })) {
      return false;
    }
    ascii_.resize(word.size());
    std::ranges::transform(word, ascii_.begin(), [](char16_t c) { return static_cast<char>(c); });
    return true;
  }

  std::u16string_view rest_;
  std::string ascii_;
};

}  // namespace

bool KtV::ParseLabelString(const std::u16string& text, double& width, double& height, double& depth,
                           double& x, double& y, double& z, double& angle, unsigned short& align,
                           bool& frame, double& red, double& green, double& blue,
                           unsigned int& flags, std::vector<std::u16string>& lines) {
  std::u16string plain = text;
  std::ranges::replace_if(plain, isControl, u' ');
  LabelReader reader(plain);
  for (double* number : {&width, &height, &depth, &x, &y, &z, &angle}) {
    if (!reader.ReadNumber(*number)) {
      return false;
    }
  }
  if (!reader.ReadAlign(align) || !reader.ReadFrame(frame)) {
    return false;
  }
  for (double* number : {&red, &green, &blue}) {
    if (!reader.ReadNumber(*number)) {
      return false;
    }
  }
  if (!reader.ReadFlags(flags)) {
    return false;
  }
  lines.clear();
  while (!reader.AtEnd()) {
    if (!reader.ReadLine(lines.emplace_back())) {
      return false;
    }
  }
  return true;
}
