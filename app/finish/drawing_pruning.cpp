#include "app/finish/drawing_pruning.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <utility>
#include <variant>
#include <vector>

namespace dxf2d::finish {

namespace {

void dropEmpty(const Drawing& drawing, std::vector<DrawingEntity>& entities,
               PruningCounts& counts) {
  counts.emptyInserts += std::erase_if(entities, [&](const DrawingEntity& entity) {
    const auto* insert = std::get_if<InsertEntity>(&entity);
    return insert != nullptr && !drawing.blocks[insert->block].defined;
  });
  counts.shortPolylines += std::erase_if(entities, [](const DrawingEntity& entity) {
    const auto* polyline = std::get_if<PolylineEntity>(&entity);
    return polyline != nullptr && polyline->vertices.size() < 2;
  });
}

// Marks the blocks that `entities` show, however deep.
std::vector<std::uint8_t> findShown(const Drawing& drawing) {
  std::vector<std::uint8_t> shown(drawing.blocks.size(), 0);
  std::vector<const std::vector<DrawingEntity>*> open{&drawing.entities};
  while (!open.empty()) {
    const std::vector<DrawingEntity>& entities = *open.back();
    open.pop_back();
    for (const DrawingEntity& entity : entities) {
      const auto* insert = std::get_if<InsertEntity>(&entity);
      if (insert != nullptr && shown[insert->block] == 0) {
        shown[insert->block] = 1;
        open.push_back(&drawing.blocks[insert->block].entities);
      }
    }
  }
  return shown;
}

bool areFinite(std::initializer_list<PlanPoint> points) {
  return std::ranges::all_of(
      points, [](PlanPoint point) { return std::isfinite(point.x) && std::isfinite(point.y); });
}

struct FiniteCheck {
  const Drawing& drawing;

  bool operator()(const LineEntity& line) const { return areFinite({line.start, line.end}); }
  bool operator()(const PolylineEntity& polyline) const {
    return std::ranges::all_of(polyline.vertices,
                               [](PlanPoint vertex) { return areFinite({vertex}); });
  }
  bool operator()(const FaceEntity& face) const {
    return std::ranges::all_of(face.corners, [](PlanPoint corner) { return areFinite({corner}); });
  }
  bool operator()(const CircleEntity& circle) const {
    return areFinite({circle.center, {circle.radius, 0.0}});
  }
  bool operator()(const TextEntity& text) const { return areFinite({text.at, {text.height, 0.0}}); }
  bool operator()(const InsertEntity& insert) const {
    return areFinite({insert.at, drawing.blocks[insert.block].base});
  }
};

void renumber(std::vector<DrawingEntity>& entities, const std::vector<std::size_t>& numbers) {
  for (DrawingEntity& entity : entities) {
    if (auto* insert = std::get_if<InsertEntity>(&entity)) {
      insert->block = numbers[insert->block];
    }
  }
}

}  // namespace

PruningCounts pruneDrawing(Drawing& drawing) {
  PruningCounts counts;
  dropEmpty(drawing, drawing.entities, counts);
  for (DrawingBlock& block : drawing.blocks) {
    dropEmpty(drawing, block.entities, counts);
  }
  const std::vector<std::uint8_t> shown = findShown(drawing);
  std::vector<std::size_t> numbers(drawing.blocks.size());
  std::vector<DrawingBlock> kept;
  drawing.blockNumbers.clear();
  for (std::size_t i = 0; i < drawing.blocks.size(); ++i) {
    DrawingBlock& block = drawing.blocks[i];
    if (shown[i] == 0) {
      counts.unusedBlocks += block.defined && !block.name.starts_with('*') ? 1 : 0;
      continue;
    }
    numbers[i] = kept.size();
    drawing.blockNumbers.emplace(block.name, kept.size());
    kept.push_back(std::move(block));
  }
  drawing.blocks = std::move(kept);
  renumber(drawing.entities, numbers);
  for (DrawingBlock& block : drawing.blocks) {
    renumber(block.entities, numbers);
  }
  return counts;
}

std::size_t dropOutOfRange(Drawing& drawing) {
  const FiniteCheck check{drawing};
  const auto isOutOfRange = [&](const DrawingEntity& entity) { return !std::visit(check, entity); };
  std::size_t count = std::erase_if(drawing.entities, isOutOfRange);
  for (DrawingBlock& block : drawing.blocks) {
    count += std::erase_if(block.entities, isOutOfRange);
  }
  for (DrawingBlock& block : drawing.blocks) {
    // Nothing inserts it any more.
    block.base = areFinite({block.base}) ? block.base : PlanPoint{};
  }
  return count;
}

}  // namespace dxf2d::finish
