#include "app/export/drawing_counts.h"

#include <algorithm>
#include <functional>

namespace {

// How often `needle` stands in `text`, with jumps of about its length.
std::size_t countOf(std::string_view text, std::string_view needle) {
  const std::boyer_moore_horspool_searcher searcher(needle.begin(), needle.end());
  std::size_t count = 0;
  auto at = text.begin();
  while (true) {
    const auto [found, after] = searcher(at, text.end());
    if (found == text.end()) return count;
    ++count;
    // The line end that closes one needle may open the next.
    at = after - 1;
  }
}

}  // namespace

DrawingCounts countDrawing(std::string_view drawing) {
  // Every entity begins with a group 0, in this form in the whole file; a text cannot look like
  // one, since it cannot hold a line end.
  DrawingCounts counts;
  counts.polylines = countOf(drawing, "\n  0\nPOLYLINE\n");
  counts.vertices = countOf(drawing, "\n  0\nVERTEX\n");
  counts.texts = countOf(drawing, "\n  0\nTEXT\n");
  const std::size_t entities = drawing.rfind("\n  2\nENTITIES\n");
  if (entities != std::string_view::npos) {
    counts.placed = countOf(drawing.substr(entities), "\n  0\nINSERT\n");
  }
  return counts;
}
