// Wide text of the application framework: UTF-16 code units in memory, on every platform.
#pragma once

#include <compare>
#include <string>
#include <string_view>

#include "platform/export.h"

inline namespace kt_platform {

// A UTF-16 text. "Character" means one code unit; no operation looks at surrogate pairs.
// Value semantics; safe to use from several threads as long as each uses its own object.
class CString {
 public:
  CString() = default;
  // `text` may be null, which gives the empty text.
  CString(const char16_t* text) : text_(text != nullptr ? text : u"") {}
  CString(std::u16string_view text) : text_(text) {}
  CString(const std::u16string& text) : text_(text) {}

  // Length in UTF-16 code units, without the terminating null.
  int GetLength() const { return static_cast<int>(text_.size()); }
  bool IsEmpty() const { return text_.empty(); }
  // The null-terminated text; valid until the object changes.
  const char16_t* GetString() const { return text_.c_str(); }
  std::u16string_view View() const { return text_; }
  operator const char16_t*() const { return text_.c_str(); }

  // Makes this the empty text.
  void Empty() { text_.clear(); }
  // Replaces the text with `format`, its conversions filled in as by printf:
  // %d %i %u %x %X %c %f %F %e %E %g %G with flags, width, precision and the sizes l and ll, %s (a
  // null-terminated UTF-16 text) and %%. Reals take the decimal separator of the process's
  // LC_NUMERIC locale. A conversion outside this list is copied unchanged; a width or precision
  // beyond 65535 counts as 65535.
  KT_PLATFORM_API void Format(const char16_t* format, ...);

  // Joining texts, and comparing them unit by unit.
  CString& operator+=(const CString& other) {
    text_ += other.text_;
    return *this;
  }
  friend CString operator+(CString left, const CString& right) { return left += right; }
  friend bool operator==(const CString& left, const CString& right) {
    return left.text_ == right.text_;
  }
  friend auto operator<=>(const CString& left, const CString& right) {
    return left.text_ <=> right.text_;
  }

 private:
  std::u16string text_;
};

}  // namespace kt_platform
