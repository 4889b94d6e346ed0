// The group stream of a drawing: pairs of lines, a code and its value.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "app/cli/failure.h"
#include "app/cli/translation.h"

namespace dxf2d {

// The drawing is unreadable or malformed. The subject is "FILE:LINE", or FILE where no single line
// is wrong.
class DxfError : public Failure {
 public:
  explicit DxfError(Message message) : Failure(kExitInput, std::move(message)) {}
};

// The drawing is valid as far as it was read, and larger than the program supports.
class LimitError : public Failure {
 public:
  LimitError(const std::string& name, const std::string& problem)
      : Failure(kExitLimit, {name, problem, tr("take a part of it")}) {}
};

// One group. `value` points into the drawing's text, without its line end.
struct DxfGroup {
  int code = 0;
  std::string_view value;
  // Number of the value's line, from 1.
  std::size_t line = 0;

  bool Opens(std::string_view kind) const { return code == 0 && value == kind; }
};

// Walks the groups of a text that outlives it. Lines end in "\n" or "\r\n"; comments (group 999)
// are passed over.
class GroupReader {
 public:
  // `name` is what errors call the drawing. Reads no group yet.
  GroupReader(std::string_view text, std::string_view name) : rest_(text), name_(name) {}

  // The group last read.
  const DxfGroup& Current() const { return group_; }
  // Reads the next group. Throws DxfError when there is none, or when the code is not a number.
  void Advance();

  // The current value as a number. Throws DxfError for what is none, or is not finite.
  double Real() const;
  int Integer() const;

  // Throws DxfError for the current line, or for another.
  [[noreturn]] void Fail(const std::string& problem, const std::string& remedy) const {
    FailAt(group_.line, problem, remedy);
  }
  [[noreturn]] void FailAt(std::size_t line, const std::string& problem,
                           const std::string& remedy) const;
  const std::string& Name() const { return name_; }

 private:
  int NextCode();
  std::string_view NextLine();

  std::string_view rest_;
  std::string name_;
  std::size_t line_ = 0;
  DxfGroup group_;
};

// A text of the drawing as a message shows it: in quotes, cut when long, unprintable bytes as '?'.
std::string quoted(std::string_view text);

}  // namespace dxf2d
