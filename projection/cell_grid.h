// Sorts a scene's triangles and candidate edges into blocks of the plan.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "projection/candidate_edges.h"
#include "projection/plan_cell.h"
#include "projection/scene.h"

namespace dxf2d::projection {

// A grid of blocks over the plan, each divided further on demand. The grid holds each block's
// triangles and edges as numbers only; `CellWalk` works on one block at a time. Blocks are
// independent of each other, so that threads can share them out; a block's result does not depend
// on who computes it.
class CellGrid {
 public:
  // Takes the triangles `triangles` of the scene and all edges; both outlive the grid. Triangles
  // narrower in plan than `tolerances.edgeOn` hide nothing and are left out.
  // `threads` share the work.
  CellGrid(const Scene& scene, std::span<const Index> triangles,
           std::span<const CandidateEdge> edges, const Tolerances& tolerances,
           std::size_t threads = 1);

  std::size_t BlockCount() const { return columns_ * rows_; }

 private:
  friend class CellWalk;

  void ChooseSize(std::span<const Index> triangles);
  void SortTriangles(std::span<const Index> triangles, std::size_t threads);
  void SortEdges(std::size_t threads);
  Rectangle BlockRectangle(std::size_t column, std::size_t row) const;
  std::size_t ColumnOf(double x) const;
  std::size_t RowOf(double y) const;
  template <class Visit>
  void ForEachBlockOfTriangle(Index triangle, Visit visit) const;
  PlanSegment SegmentOf(Index edge) const;

  const Scene& scene_;
  std::span<const CandidateEdge> edges_;
  Tolerances tolerances_;
  // The middle of the scene, from which plan coordinates are counted.
  double middleX_ = 0;
  double middleY_ = 0;
  Rectangle extent_ = {0, 0, 0, 0};
  std::size_t columns_ = 1;
  std::size_t rows_ = 1;
  std::vector<std::size_t> triangleStarts_;
  std::vector<Index> triangleItems_;
  std::vector<std::size_t> edgeStarts_;
  std::vector<Index> edgeItems_;
};

}  // namespace dxf2d::projection
