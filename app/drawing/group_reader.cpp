#include "app/drawing/group_reader.h"

#include <cmath>
#include <optional>

#include "app/cli/translation.h"
#include "app/drawing/number_text.h"

namespace dxf2d {

namespace {

constexpr int kCommentCode = 999;

// The code on a line as most programs write it, right-aligned in three characters; nothing of
// others.
std::optional<int> parsePaddedCode(std::string_view line) {
  const auto isDigit = [&](std::size_t i) { return line[i] >= '0' && line[i] <= '9'; };
  const auto valueOf = [&](std::size_t i) { return line[i] - '0'; };
  if (!isDigit(2)) {
    return std::nullopt;
  }
  if (line[0] == ' ' && line[1] == ' ') {
    return valueOf(2);
  }
  if (line[0] == ' ' && isDigit(1)) {
    return 10 * valueOf(1) + valueOf(2);
  }
  return isDigit(0) && isDigit(1) ? std::optional(100 * valueOf(0) + 10 * valueOf(1) + valueOf(2))
                                  : std::nullopt;
}

}  // namespace

void GroupReader::Advance() {
  do {
    group_.code = NextCode();
    group_.value = NextLine();
    group_.line = line_;
  } while (group_.code == kCommentCode);
}

double GroupReader::Real() const {
  const std::optional<double> value = parseReal(group_.value);
  if (!value || !std::isfinite(*value)) {
    Fail(tr("%1 in group %2 is not a finite number",
            {quoted(group_.value), std::to_string(group_.code)}),
         tr("fix the line or export the drawing again"));
  }
  return *value;
}

int GroupReader::Integer() const {
  const std::optional<int> value = parseInteger(group_.value);
  if (!value) {
    Fail(tr("%1 in group %2 is not a whole number",
            {quoted(group_.value), std::to_string(group_.code)}),
         tr("fix the line or export the drawing again"));
  }
  return *value;
}

void GroupReader::FailAt(std::size_t line, const std::string& problem,
                         const std::string& remedy) const {
  throw DxfError({name_ + ":" + std::to_string(line), problem, remedy});
}

int GroupReader::NextCode() {
  constexpr std::size_t kWidth = 3;
  if (rest_.size() > kWidth && rest_[kWidth] == '\n') {
    if (const std::optional<int> code = parsePaddedCode(rest_)) {
      rest_.remove_prefix(kWidth + 1);
      ++line_;
      return *code;
    }
  }
  const std::string_view line = NextLine();
  const std::optional<int> code = parseInteger(line);
  if (!code) {
    FailAt(line_, tr("%1 is not a group code", {quoted(line)}),
           tr("check that it is a DXF drawing"));
  }
  return *code;
}

std::string_view GroupReader::NextLine() {
  if (rest_.empty()) {
    FailAt(line_ + 1, tr("the drawing ends without EOF"), tr("export it again"));
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
