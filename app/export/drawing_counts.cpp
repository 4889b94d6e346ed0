#include "app/export/drawing_counts.h"

#include <algorithm>
#include <cstring>

namespace {

// The first line of an entity, from the line end before it.
struct EntityLine {
  std::string_view text;
  // A letter of it that little else in a drawing has; the C library looks for one byte in strides.
  char rare;
};

constexpr EntityLine kPolyline{"\n  0\nPOLYLINE\n", 'P'};
constexpr EntityLine kVertex{"\n  0\nVERTEX\n", 'V'};
constexpr EntityLine kText{"\n  0\nTEXT\n", 'X'};
constexpr EntityLine kInsert{"\n  0\nINSERT\n", 'I'};

// How many of `line` have their rare letter from `begin` to before `end` of `drawing`.
std::size_t countIn(std::string_view drawing, std::size_t begin, std::size_t end,
                    const EntityLine& line) {
  const std::size_t offset = line.text.find(line.rare);
  const char* const last = drawing.data() + end;
  std::size_t count = 0;
  const char* at = drawing.data() + begin;
  while (at != last) {
    const void* const found = std::memchr(at, line.rare, static_cast<std::size_t>(last - at));
    if (found == nullptr) break;
    at = static_cast<const char*>(found) + 1;
    const auto place = static_cast<std::size_t>(at - drawing.data()) - 1;
    if (place >= offset && drawing.substr(place - offset).starts_with(line.text)) ++count;
  }
  return count;
}

}  // namespace

DrawingCounts countDrawing(std::string_view drawing) {
  // Every entity begins with a group 0, in this form in the whole file; a text cannot look like
  // one, since it cannot hold a line end.
  DrawingCounts counts;
  const std::size_t entities = std::min(drawing.rfind("\n  2\nENTITIES\n"), drawing.size());
  // In pieces, so that what one search brings into the near cache is there for the others.
  constexpr std::size_t kPiece = std::size_t{1} << 17;
  for (std::size_t begin = 0; begin < drawing.size(); begin += kPiece) {
    const std::size_t end = std::min(begin + kPiece, drawing.size());
    counts.polylines += countIn(drawing, begin, end, kPolyline);
    counts.vertices += countIn(drawing, begin, end, kVertex);
    counts.texts += countIn(drawing, begin, end, kText);
    counts.placed += countIn(drawing, std::min(std::max(begin, entities), end), end, kInsert);
  }
  return counts;
}
