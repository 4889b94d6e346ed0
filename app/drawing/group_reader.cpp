#include "app/drawing/group_reader.h"

#include <charconv>
#include <cmath>
#include <system_error>

namespace dxf2d {

namespace {

// Codes are padded to three characters, and so are some values.
std::string_view withoutBlanks(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) {
    text.remove_prefix(1);
  }
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) {
    text.remove_suffix(1);
  }
  return text;
}

template <typename Number>
bool parseNumber(std::string_view text, Number& number) {
  text = withoutBlanks(text);
  const char* end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && last == end && !text.empty();
}

constexpr int kCommentCode = 999;

}  // namespace

void GroupReader::Advance() {
  do {
    const std::string_view code = NextLine();
    if (!parseNumber(code, group_.code)) {
      FailAt(line_, quoted(code) + " is not a group code", "check that it is a DXF drawing");
    }
    group_.value = NextLine();
    group_.line = line_;
  } while (group_.code == kCommentCode);
}

double GroupReader::Real() const {
  double value = 0.0;
  if (!parseNumber(group_.value, value) || !std::isfinite(value)) {
    Fail(quoted(group_.value) + " in group " + std::to_string(group_.code) +
             " is not a finite number",
         "fix the line or export the drawing again");
  }
  return value;
}

int GroupReader::Integer() const {
  int value = 0;
  if (!parseNumber(group_.value, value)) {
    Fail(quoted(group_.value) + " in group " + std::to_string(group_.code) +
             " is not a whole number",
         "fix the line or export the drawing again");
  }
  return value;
}

void GroupReader::FailAt(std::size_t line, const std::string& problem,
                         const std::string& remedy) const {
  throw DxfError({name_ + ":" + std::to_string(line), problem, remedy});
}

std::string_view GroupReader::NextLine() {
  if (rest_.empty()) {
    FailAt(line_ + 1, "the drawing ends without EOF", "export it again");
  }
  ++line_;
  const std::size_t end = rest_.find('\n');
  std::string_view line = rest_.substr(0, end);
  rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
  if (!line.empty() && line.back() == '\r') {
    line.remove_suffix(1);
  }
  return line;
}

std::string quoted(std::string_view text) {
  constexpr std::size_t kShown = 40;
  std::string shown = "'";
  for (const char byte : text.substr(0, kShown)) {
    shown += byte >= ' ' && byte <= '~' ? byte : '?';
  }
  if (text.size() > kShown) {
    shown += "...";
  }
  return shown + "'";
}

}  // namespace dxf2d
