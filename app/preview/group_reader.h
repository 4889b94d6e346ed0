// The group stream of a drawing: pairs of lines, a code and its value.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

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
  // Reads the next group. Throws DxfError when there is none, or when the code is no number.
  void Advance();

  // The current value as a number. Throws DxfError for what is none, or is not finite.
  double Real() const;
  int Integer() const;

  // Throws DxfError for the current line, or for another.
  [[noreturn]] void Fail(const std::string& reason) const { FailAt(group_.line, reason); }
  [[noreturn]] void FailAt(std::size_t line, const std::string& reason) const;
  const std::string& Name() const { return name_; }

 private:
  std::string_view NextLine();

  std::string_view rest_;
  std::string name_;
  std::size_t line_ = 0;
  DxfGroup group_;
};

// A text of the drawing as a message shows it: in quotes, cut when long, unprintable bytes as '?'.
std::string quoted(std::string_view text);
