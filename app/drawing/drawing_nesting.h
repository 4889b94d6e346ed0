// INSERTs in one another: whether they end, and where they put what they insert.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "app/drawing/drawing.h"

namespace dxf2d {

// Blocks inside one another, and strokes of the whole picture (points and letters, with every
// INSERT expanded) up to which a drawing is taken on: minutes of drawing, not hours.
inline constexpr std::size_t kMaxNesting = 100'000;
inline constexpr std::size_t kMaxStrokes = 20'000'000;

// Letters of one text that a picture shows; no page has room for more.
inline constexpr std::size_t kMaxTextBytes = 4096;

// What one entity costs to draw; an INSERT itself counts, or empty blocks would cost nothing.
std::size_t strokesOf(const DrawingEntity& entity);

// Throws DxfError when a block that the drawing shows inserts itself, directly or through others;
// LimitError when kMaxNesting or kMaxStrokes is exceeded. `name` is what errors call the drawing.
void checkNesting(const Drawing& drawing, const std::string& name);

// Where a block stands: turned about its base point, then moved.
struct Placement {
  double cosine = 1.0;
  double sine = 0.0;
  PlanPoint origin;
  // What stands on layer "0" of the block is on this one: that of the INSERT, or of the INSERT
  // around it, and so on.
  std::uint32_t layer = 0;

  // The point of the plan for a point of the block.
  PlanPoint Apply(PlanPoint point) const {
    return {cosine * point.x - sine * point.y + origin.x,
            sine * point.x + cosine * point.y + origin.y};
  }
  // The placement of what `insert` inserts, itself standing in a block placed so; `base` is the
  // inserted block's base point.
  Placement Insert(const InsertEntity& insert, PlanPoint base) const;
};

// Calls visit(entity, placement) for everything that the drawing shows, in the order of the file,
// each block's content where it is inserted; never for an INSERT. The drawing must have passed
// checkNesting.
template <typename Visit>
void forEachPlaced(const Drawing& drawing, const Visit& visit) {
  struct Level {
    const std::vector<DrawingEntity>* entities;
    std::size_t next;
    Placement placement;
  };
  std::vector<Level> levels{{&drawing.entities, 0, {}}};
  while (!levels.empty()) {
    Level& level = levels.back();
    if (level.next == level.entities->size()) {
      levels.pop_back();
      continue;
    }
    const DrawingEntity& entity = (*level.entities)[level.next++];
    if (const InsertEntity* insert = std::get_if<InsertEntity>(&entity)) {
      const DrawingBlock& block = drawing.blocks[insert->block];
      levels.push_back({&block.entities, 0, level.placement.Insert(*insert, block.base)});
    } else {
      visit(entity, std::as_const(level.placement));
    }
  }
}

}  // namespace dxf2d
