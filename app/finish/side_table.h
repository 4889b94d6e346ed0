// What a drawing does not say of its blocks and whoever made it knows.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "app/drawing/part_source.h"

namespace dxf2d::finish {

// Of a block with lines or texts of its own.
struct BlockSource {
  SourceName object;
  SourceName group;
  PartSource part;
};

// Of an INSERT in the ENTITIES section.
struct InsertSource {
  // The name of its block.
  std::string block;
  SourceName object;
  SourceName group;
};

struct SideTable {
  // By the name of the block.
  std::unordered_map<std::string, BlockSource> blocks;
  // In the order of the drawing, which may lack some.
  std::vector<InsertSource> inserts;
};

}  // namespace dxf2d::finish
