// A drawing as arrays of numbers, as a page holds it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "app/drawing/drawing.h"
#include "app/drawing/plan_extents.h"
#include "app/page/page_style.h"

namespace dxf2d::page {

// Layer, color, true color, line type, line weight.
using StyleKey = std::tuple<std::uint32_t, int, std::int32_t, LineType, std::int16_t>;

// Lists are those of all blocks in turn; the first block is the drawing itself. `...Ends` have for
// each block or line the number of entries up to its end.
struct PageNumbers {
  // Of each block: its lowest x and y and the length of a step, which its vertices count in, and
  // its base point.
  std::vector<double> frames;
  // Center and radius.
  std::vector<double> circles;
  // Point, height, width factor and rotation in degrees.
  std::vector<double> texts;
  // Point and rotation in degrees.
  std::vector<double> inserts;

  // x and y, in steps.
  std::vector<std::uint32_t> vertices;
  std::vector<std::uint32_t> lineEnds;
  // Twice the number of the style, and 1 for closed lines.
  std::vector<std::uint32_t> lineStyles;
  std::vector<std::uint32_t> circleStyles;
  std::vector<std::uint32_t> textStyles;
  // Where a text stands against its point: across, and four times up.
  std::vector<std::uint32_t> textAnchors;
  std::vector<std::uint32_t> insertBlocks;
  std::vector<std::uint32_t> insertLayers;
  // Numbers in `names`, and where the name of an INSERT is its block's, kNoName.
  std::vector<std::uint32_t> insertNames;
  std::vector<std::uint32_t> blockNames;
  // Lines, circles, texts and INSERTs.
  std::vector<std::uint32_t> blockEnds;

  static constexpr std::uint32_t kNoName = 0xFFFFFFFF;
  std::vector<std::string> names;
  // UTF-8.
  std::vector<std::string> strings;
  std::vector<StyleKey> styles;

  // Of what the drawing shows.
  PlanExtents extents;
  std::size_t leftOut = 0;

  // All arrays in the order above, each in the byte order of browsers.
  std::string Bytes() const;
};

// Throws LimitError beyond kMaxPageStrokes.
PageNumbers pageNumbers(const Drawing& drawing, const PageStyle& style);

}  // namespace dxf2d::page
