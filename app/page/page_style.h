// What a page says that its drawing does not.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

namespace dxf2d::page {

// Points and letters after which a drawing, with every INSERT expanded, has no page: browsers would
// take seconds for each picture.
inline constexpr std::size_t kMaxPageStrokes = 5'000'000;

// Of an INSERT in the ENTITIES section.
struct InsertName {
  std::string block;
  // What it is of; UTF-8.
  std::string name;
};

// What blocks and INSERTs are of, where somebody knows; they go by the names of blocks otherwise.
struct ObjectNames {
  // By the name of the block; UTF-8.
  std::unordered_map<std::string, std::string> blocks;
  // In the order of the drawing, which may lack some.
  std::vector<InsertName> inserts;
};

struct PageStyle {
  // Above the drawing, and of the page; UTF-8.
  std::string title;
  // Of the drawing's texts and names; one that isTextCodePage knows.
  unsigned codePage = 1252;
  // As $INSUNITS numbers them, of drawings that do not say theirs; 0: unknown.
  int units = 0;
  ObjectNames names{};
  // What errors call the drawing.
  std::string name{};
};

}  // namespace dxf2d::page
