// Divides the blocks of a grid into cells that are small enough to compare everything in them with
// everything else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "projection/cell_grid.h"
#include "projection/plan_cell.h"

namespace dxf2d::projection {

// What a cell may leave out.
enum class Culling : std::uint8_t {
  kHidden,  // what lies below a triangle that covers the whole cell
  kInside,  // everything, if a triangle covers the whole cell
};

// Divides blocks into leaf cells; keeps its memory from block to block. One for each thread.
class CellWalk {
 public:
  CellWalk(const CellGrid& grid, Culling culling) : grid_(grid), culling_(culling) {}

  // Calls visit(cell) for every leaf cell of the block that can show something.
  void Run(std::size_t block, const std::function<void(const PlanCell&)>& visit);

 private:
  // A cell's lists are stretches of the two stacks below.
  struct Task {
    Rectangle rectangle;
    // What lies lower than this in the rectangle cannot be seen.
    double cover;
    std::size_t triangleBegin;
    std::size_t triangleEnd;
    std::size_t partBegin;
    std::size_t partEnd;
    int level;
  };
  struct Division;

  void LoadBlock(std::size_t block);
  void Process(Task task);
  bool IsSeenIn(const PlanTriangle& triangle, const Rectangle& rectangle, double& cover) const;
  void Cull(Task& task);
  bool Divide(const Task& task);
  void ShareOutTriangles(const Task& task, Division& division);
  void ShareOutParts(const Task& task, Division& division);
  void Visit(const Task& task);

  const CellGrid& grid_;
  Culling culling_;
  const std::function<void(const PlanCell&)>* visit_ = nullptr;
  std::vector<PlanTriangle> triangles_;
  std::vector<PlanSegment> segments_;
  std::vector<Index> triangleStack_;
  std::vector<SegmentPart> partStack_;
};

}  // namespace dxf2d::projection
