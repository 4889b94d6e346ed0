#include "app/release/tag_writer.h"

#include <cassert>
#include <charconv>
#include <utility>

#include "app/release/real_text.h"

namespace dxf2d::release {

namespace {

// Bytes handed on at once.
constexpr std::size_t kPiece = std::size_t{1} << 16;

// Room for a code with its line feed.
constexpr std::size_t kCodeSize = 8;

}  // namespace

TagWriter::TagWriter(ByteSink sink) : sink_(std::move(sink)), buffer_(2 * kPiece) {}

void TagWriter::Text(int code, std::string_view value) {
  assert(value.find('\n') == value.npos);
  char* text = WriteCode(code, Reserve(kCodeSize + value.size() + 1));
  text += value.copy(text, value.size());
  *text++ = '\n';
  Commit(text);
}

void TagWriter::Integer(int code, std::int64_t value) {
  constexpr std::size_t kDigits = 20;
  char* text = WriteCode(code, Reserve(kCodeSize + kDigits + 1));
  text = std::to_chars(text, text + kDigits, value).ptr;
  *text++ = '\n';
  Commit(text);
}

void TagWriter::Real(int code, double value) {
  char* text = WriteCode(code, Reserve(kCodeSize + kRealTextSize + 1));
  text += formatReal(value, text);
  *text++ = '\n';
  Commit(text);
}

void TagWriter::Reference(int code, Handle value) {
  constexpr std::size_t kDigits = 16;
  char* text = WriteCode(code, Reserve(kCodeSize + kDigits + 1));
  char* const end = std::to_chars(text, text + kDigits, value, 16).ptr;
  // Handles have capital letters.
  for (; text != end; ++text) {
    if (*text >= 'a') {
      *text = static_cast<char>(*text - 'a' + 'A');
    }
  }
  *text++ = '\n';
  Commit(text);
}

void TagWriter::FlatPoint(int code, PlanPoint point) {
  Real(code, point.x);
  Real(code + 10, point.y);
}

void TagWriter::Point(int code, PlanPoint point) {
  FlatPoint(code, point);
  Real(code + 20, 0.0);
}

void TagWriter::Open(std::string_view kind, Handle handle, Handle owner) {
  Text(0, kind);
  Reference(5, handle);
  Reference(330, owner);
}

void TagWriter::Flush() {
  if (size_ != 0) {
    sink_({buffer_.data(), size_});
    size_ = 0;
  }
}

char* TagWriter::Reserve(std::size_t size) {
  if (size_ >= kPiece) {
    Flush();
  }
  if (buffer_.size() - size_ < size) {
    buffer_.resize(size_ + size);
  }
  return buffer_.data() + size_;
}

char* TagWriter::WriteCode(int code, char* text) {
  if (code < 100) {
    *text++ = ' ';
    if (code < 10) {
      *text++ = ' ';
    }
  }
  text = std::to_chars(text, text + kCodeSize, code).ptr;
  *text++ = '\n';
  return text;
}

void TagWriter::Commit(const char* end) { size_ = static_cast<std::size_t>(end - buffer_.data()); }

}  // namespace dxf2d::release
