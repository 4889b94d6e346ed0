// The groups of a drawing as text: the one place that knows the syntax of its lines.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "app/drawing/drawing.h"

namespace dxf2d::release {

// Takes bytes of the drawing, in order.
using ByteSink = std::function<void(std::string_view)>;

// Names an object of the drawing, from 1; 0 stands for none.
using Handle = std::uint64_t;

// Writes groups: a code, right-aligned in three characters as other programs write it, a value, and
// a line feed after each. Gathers them in memory and hands them on in large pieces.
class TagWriter {
 public:
  explicit TagWriter(ByteSink sink);

  // `value` holds no line end.
  void Text(int code, std::string_view value);
  void Integer(int code, std::int64_t value);
  // `value` is finite.
  void Real(int code, double value);
  void Reference(int code, Handle value);
  // Groups `code` and `code` + 10.
  void FlatPoint(int code, PlanPoint point);
  // The same and group `code` + 20, which is 0.
  void Point(int code, PlanPoint point);

  // "0 kind", "5 handle", "330 owner": what every object begins with.
  void Open(std::string_view kind, Handle handle, Handle owner);
  // Group 100, which says the class that the groups after it belong to.
  void Subclass(std::string_view name) { Text(100, name); }

  // Hands on what is gathered.
  void Flush();

 private:
  char* Reserve(std::size_t size);
  static char* WriteCode(int code, char* text);
  void Commit(const char* end);

  ByteSink sink_;
  std::vector<char> buffer_;
  std::size_t size_ = 0;
};

}  // namespace dxf2d::release
