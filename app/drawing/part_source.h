// What the parts of a drawing are of, which the drawing itself does not say.
#pragma once

#include <cstdint>
#include <string>

#include "app/drawing/drawing.h"

namespace dxf2d {

// What the lines of a part are. Silhouettes, outlines and what is given as lines are borders.
enum class PartKind : std::uint8_t { kBorder, kCrease, kCut, kHidden, kLabel };

// A name in UTF-8 and a number that tells those of one name apart; 0 where there is nothing to
// name.
struct SourceName {
  std::string name;
  std::uint64_t key = 0;
};

struct PartSource {
  // Name in UTF-8, empty where there is no material.
  std::string material;
  // 0xRRGGBB, or kNoTrueColor for the default pen.
  std::int32_t trueColor = kNoTrueColor;
  PartKind kind = PartKind::kBorder;
};

}  // namespace dxf2d
