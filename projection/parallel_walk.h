// Cells of a grid, shared by threads.
#pragma once

#include <cstddef>
#include <vector>

#include "platform/parallel.h"
#include "projection/cell_walk.h"

namespace dxf2d::projection {

// Calls makeVisitor() for each of several stretches of the grid's blocks and the visitor's
// Run(cell) for every leaf cell of the stretch, as CellWalk does; stretches in several threads at a
// time, each by one. Returns the visitors in order of the stretches, so that what they gathered is,
// one after the other, what a single one would have gathered.
template <class MakeVisitor>
auto walkInParallel(const CellGrid& grid, Culling culling, std::size_t threads,
                    MakeVisitor makeVisitor) {
  const Blocks stretches(grid.BlockCount(), threads);
  std::vector<decltype(makeVisitor())> visitors;
  visitors.reserve(stretches.Count());
  for (std::size_t i = 0; i < stretches.Count(); ++i) {
    visitors.push_back(makeVisitor());
  }
  stretches.Run([&](std::size_t number, const Block& stretch) {
    CellWalk walk(grid, culling);
    for (std::size_t block = stretch.begin; block < stretch.end; ++block) {
      walk.Run(block, [&](const PlanCell& cell) { visitors[number].Run(cell); });
    }
  });
  return visitors;
}

}  // namespace dxf2d::projection
