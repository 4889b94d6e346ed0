// The handles of a drawing's objects: numbers that name each of them once.
#pragma once

#include <cstddef>

#include "app/drawing/drawing.h"
#include "app/release/tag_writer.h"

namespace dxf2d::release {

// Handles of what every drawing has. The format leaves all but 0 free; these are near those that
// other programs give.
enum FixedHandle : Handle {
  kBlockRecordTable = 0x1,
  kLayerTable = 0x2,
  kStyleTable = 0x3,
  kLineTypeTable = 0x5,
  kViewTable = 0x6,
  kUcsTable = 0x7,
  kViewportTable = 0x8,
  kAppIdTable = 0x9,
  kDimStyleTable = 0xA,
  kRootDictionary = 0xC,
  kGroupDictionary = 0xD,
  kPlotStyleDictionary = 0xE,
  kPlotStyle = 0xF,
  kTextStyle = 0x11,
  kAppId = 0x12,
  kByBlockLineType = 0x14,
  kByLayerLineType = 0x15,
  kContinuousLineType = 0x16,
  kMlineStyleDictionary = 0x17,
  kMlineStyle = 0x18,
  kLayoutDictionary = 0x1A,
  kPaperSpaceRecord = 0x1B,
  kPaperSpaceBegin = 0x1C,
  kPaperSpaceEnd = 0x1D,
  kPaperLayout = 0x1E,
  kModelSpaceRecord = 0x1F,
  kModelSpaceBegin = 0x20,
  kModelSpaceEnd = 0x21,
  kModelLayout = 0x22,
  kDimStyle = 0x27,
  kViewport = 0x29,
  kDashedLineType = 0x2A,
  kFirstFreeHandle = 0x40,
};

// Handles of the layers, then three for each block (its record, begin and end), then the entities
// in the order in which they are written.
class DrawingHandles {
 public:
  // Refers to nothing in the drawing.
  explicit DrawingHandles(const Drawing& drawing);

  Handle Layer(std::size_t number) const { return kFirstFreeHandle + number; }
  Handle BlockRecord(std::size_t number) const { return firstBlock_ + 3 * number; }
  Handle BlockBegin(std::size_t number) const { return BlockRecord(number) + 1; }
  Handle BlockEnd(std::size_t number) const { return BlockRecord(number) + 2; }
  Handle FirstEntity() const { return firstEntity_; }
  // Above all others.
  Handle Seed() const { return seed_; }

 private:
  Handle firstBlock_;
  Handle firstEntity_;
  Handle seed_;
};

}  // namespace dxf2d::release
