#include "app/export/drawing_counts.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <variant>
#include <vector>

#include "platform/parallel.h"

namespace dxf2d {

namespace {

// The first line of an entity, from the line end before it.
struct EntityLine {
  std::string_view text;
  // A letter of it that little else in a drawing has; the C library looks for one byte in strides.
  char rare;
};

constexpr EntityLine kPolyline{"\n  0\nPOLYLINE\n", 'P'};
constexpr EntityLine kLightPolyline{"\n  0\nLWPOLYLINE\n", 'W'};
constexpr EntityLine kVertex{"\n  0\nVERTEX\n", 'V'};
constexpr EntityLine kText{"\n  0\nTEXT\n", 'X'};
constexpr EntityLine kInsert{"\n  0\nINSERT\n", 'I'};

// Calls visit(place after the line) for each `line` whose rare letter is from `begin` to before
// `end` of `drawing`.
template <typename Visit>
void forEachIn(std::string_view drawing, std::size_t begin, std::size_t end, const EntityLine& line,
               const Visit& visit) {
  const std::size_t offset = line.text.find(line.rare);
  const char* const last = drawing.data() + end;
  const char* at = drawing.data() + begin;
  while (at != last) {
    const void* const found = std::memchr(at, line.rare, static_cast<std::size_t>(last - at));
    if (found == nullptr) {
      break;
    }
    at = static_cast<const char*>(found) + 1;
    const auto place = static_cast<std::size_t>(at - drawing.data()) - 1;
    if (place >= offset && drawing.substr(place - offset).starts_with(line.text)) {
      visit(place - offset + line.text.size());
    }
  }
}

std::size_t countIn(std::string_view drawing, std::size_t begin, std::size_t end,
                    const EntityLine& line) {
  std::size_t count = 0;
  forEachIn(drawing, begin, end, line, [&count](std::size_t) { ++count; });
  return count;
}

// The number in group 90 of the light polyline whose groups begin at `place`.
std::size_t lightVertices(std::string_view drawing, std::size_t place) {
  constexpr std::string_view kCountCode = "\n 90\n";
  const std::size_t found = drawing.find(kCountCode, place);
  std::size_t count = 0;
  if (found != std::string_view::npos) {
    std::from_chars(drawing.data() + found + kCountCode.size(), drawing.data() + drawing.size(),
                    count);
  }
  return count;
}

// Adds what begins from `begin` to before `end`; the ENTITIES section begins at `entities`.
void addPiece(std::string_view drawing, std::size_t begin, std::size_t end, std::size_t entities,
              DrawingCounts& counts) {
  counts.polylines += countIn(drawing, begin, end, kPolyline);
  counts.vertices += countIn(drawing, begin, end, kVertex);
  forEachIn(drawing, begin, end, kLightPolyline, [&](std::size_t place) {
    ++counts.polylines;
    counts.vertices += lightVertices(drawing, place);
  });
  counts.texts += countIn(drawing, begin, end, kText);
  counts.placed += countIn(drawing, std::min(std::max(begin, entities), end), end, kInsert);
}

class EntityCounter {
 public:
  explicit EntityCounter(DrawingCounts& counts) : counts_(counts) {}

  void operator()(const PolylineEntity& polyline) const {
    ++counts_.polylines;
    counts_.closed += polyline.closed ? 1 : 0;
    counts_.vertices += polyline.vertices.size();
  }
  void operator()(const TextEntity&) const { ++counts_.texts; }
  template <typename Entity>
  void operator()(const Entity&) const {}

 private:
  DrawingCounts& counts_;
};

}  // namespace

DrawingCounts countDrawing(std::string_view drawing, std::size_t threads) {
  // Every entity begins with a group 0, in this form in the whole file; a text cannot look like
  // one, since it cannot hold a line end.
  const std::size_t entities = std::min(drawing.rfind("\n  2\nENTITIES\n"), drawing.size());
  // In pieces, so that what one search brings into the near cache is there for the others.
  constexpr std::size_t kPiece = std::size_t{1} << 17;
  const Blocks blocks((drawing.size() + kPiece - 1) / kPiece, threads);
  std::vector<DrawingCounts> counts(blocks.Count());
  blocks.Run([&](std::size_t number, const Block& pieces) {
    DrawingCounts own;
    for (std::size_t piece = pieces.begin; piece < pieces.end; ++piece) {
      const std::size_t begin = piece * kPiece;
      addPiece(drawing, begin, std::min(begin + kPiece, drawing.size()), entities, own);
    }
    counts[number] = own;
  });
  DrawingCounts all;
  for (const DrawingCounts& some : counts) {
    all.polylines += some.polylines;
    all.vertices += some.vertices;
    all.texts += some.texts;
    all.placed += some.placed;
  }
  return all;
}

DrawingCounts countDrawing(const Drawing& drawing) {
  DrawingCounts counts;
  const EntityCounter counter(counts);
  for (const DrawingEntity& entity : drawing.entities) {
    std::visit(counter, entity);
    counts.placed += std::holds_alternative<InsertEntity>(entity) ? 1 : 0;
  }
  for (const DrawingBlock& block : drawing.blocks) {
    for (const DrawingEntity& entity : block.entities) {
      std::visit(counter, entity);
    }
  }
  return counts;
}

}  // namespace dxf2d
