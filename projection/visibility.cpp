#include "projection/visibility.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

#include "projection/edge_pieces.h"
#include "projection/parallel_walk.h"
#include "projection/piercing_lines.h"
#include "projection/segment_cuts.h"

namespace dxf2d::projection {
namespace {

// Finds what can be seen in one leaf cell after another.
class CellVisibility {
 public:
  CellVisibility(const Scene& scene, const Tolerances& tolerances)
      : piercingLines_(scene, tolerances), tolerances_(tolerances) {}

  void Run(const PlanCell& cell) {
    cell_ = &cell;
    mostTouch_ = 0;
    for (const Index number : cell.triangleNumbers) {
      mostTouch_ = std::max(mostTouch_, cell.triangles[number].touch);
    }
    CollectParts();
    for (const SegmentPart& part : parts_) {
      if (!part.own.IsEmpty()) {
        const PlanSegment& segment = cell.segments[part.segment];
        ForEachVisiblePiece(segment, part.own, [&](const Interval& piece) {
          lines_.pieces.push_back({segment.edge, piece.from, piece.to});
        });
      }
    }
    piercingLines_.ForEach(cell, [&](const PlanSegment& line, Index part) {
      ForEachVisiblePiece(line, {0, 1}, [&](const Interval& piece) {
        lines_.piercings.push_back(
            {cell.PointAt(line, piece.from), cell.PointAt(line, piece.to), part});
      });
    });
  }

  VisibleLines Take() { return std::move(lines_); }

 private:
  // Leaves out parts that a single triangle hides. They cut no visible part either: where they
  // cross one, that triangle would hide it too.
  void CollectParts() {
    parts_.clear();
    cutters_.clear();
    for (const SegmentPart& part : cell_->parts) {
      const PlanSegment& segment = cell_->segments[part.segment];
      if (!IsHiddenByOne(segment, part.reach)) {
        parts_.push_back(part);
        cutters_.push_back(part.segment);
      }
    }
    if (cutters_.size() > kManyCutters) {
      DropTwinCutters();
    }
  }

  // Segments at the same place cut alike.
  void DropTwinCutters() {
    const auto key = [&](Index number) {
      const PlanSegment& s = cell_->segments[number];
      return std::array{s.x, s.y, s.z, s.dx, s.dy, s.dz};
    };
    std::ranges::sort(cutters_, {}, key);
    const auto areTwins = [&](Index a, Index b) { return key(a) == key(b); };
    cutters_.erase(std::unique(cutters_.begin(), cutters_.end(), areTwins), cutters_.end());
  }

  bool Hides(const PlanTriangle& triangle, const PlanSegment& segment, double t) const {
    const double x = segment.XAt(t);
    const double y = segment.YAt(t);
    return triangle.HeightAt(x, y) - segment.ZAt(t) > triangle.touch &&
           triangle.Covers(x, y, tolerances_.plan);
  }

  bool IsHiddenByOne(const PlanSegment& segment, const Interval& range) const {
    const double lowest = std::min(segment.ZAt(range.from), segment.ZAt(range.to));
    for (const Index number : cell_->triangleNumbers) {
      const PlanTriangle& triangle = cell_->triangles[number];
      if (triangle.top <= lowest) {
        return false;
      }
      if (Hides(triangle, segment, range.from) && Hides(triangle, segment, range.to)) {
        return true;
      }
    }
    return false;
  }

  bool IsHidden(const PlanSegment& segment, double t) const {
    const double height = segment.ZAt(t);
    for (const Index number : cell_->triangleNumbers) {
      const PlanTriangle& triangle = cell_->triangles[number];
      if (triangle.top <= height) {
        return false;
      }
      if (Hides(triangle, segment, t)) {
        return true;
      }
    }
    return false;
  }

  void FindCuts(const PlanSegment& segment, const Interval& range) {
    cuts_.clear();
    for (const Index other : cutters_) {
      if (cell_->segments[other].edge != segment.edge) {
        // Within twice the tolerance: an edge that leaves this one by more at its end is, half way,
        // further off than what hides beside its face.
        appendCrossings(segment, cell_->segments[other], 2 * tolerances_.plan, tolerances_.touch,
                        cuts_);
      }
    }
    const double lowest = std::min(segment.ZAt(range.from), segment.ZAt(range.to));
    const Rectangle box = boxAround(segment, range, tolerances_.plan);
    for (const Index number : cell_->triangleNumbers) {
      const PlanTriangle& triangle = cell_->triangles[number];
      if (triangle.top <= lowest) {
        break;
      }
      if (!box.Overlaps(triangle.box)) {
        continue;
      }
      appendPiercing(segment, range, triangle, tolerances_.plan, mostTouch_, cuts_);
    }
    trimCuts(segment, range, tolerances_.plan, cuts_);
  }

  template <class Emit>
  void ForEachVisiblePiece(const PlanSegment& segment, const Interval& range, Emit emit) {
    FindCuts(segment, range);
    Interval run{range.from, range.from};
    for (std::size_t i = 0; i + 1 < cuts_.size(); ++i) {
      if (IsHidden(segment, cuts_[i] + (cuts_[i + 1] - cuts_[i]) / 2)) {
        if (!run.IsEmpty()) {
          emit(run);
        }
        run.from = cuts_[i + 1];
      }
      run.to = cuts_[i + 1];
    }
    if (!run.IsEmpty()) {
      emit(run);
    }
  }

  static constexpr std::size_t kManyCutters = 64;

  PiercingLines piercingLines_;
  Tolerances tolerances_;
  VisibleLines lines_;
  const PlanCell* cell_ = nullptr;
  // Of the triangles in the cell.
  double mostTouch_ = 0;
  std::vector<SegmentPart> parts_;
  std::vector<Index> cutters_;
  std::vector<double> cuts_;
};

}  // namespace

VisibleLines findVisibleLines(const Scene& scene, std::span<const CandidateEdge> edges,
                              const Tolerances& tolerances, const Threading& threading) {
  std::vector<Index> triangles(scene.triangles.size());
  std::iota(triangles.begin(), triangles.end(), Index{0});
  const std::size_t threads = threading.For(scene.triangles.size() + edges.size());
  std::vector<std::vector<EdgePiece>> pieces;
  std::vector<std::vector<PiercingPiece>> piercings;
  {
    const CellGrid grid(scene, triangles, edges, tolerances, threads);
    for (CellVisibility& visibility : walkInParallel(
             grid, Culling::kHidden, threads, [&] { return CellVisibility(scene, tolerances); })) {
      VisibleLines some = visibility.Take();
      pieces.push_back(std::move(some.pieces));
      piercings.push_back(std::move(some.piercings));
    }
  }
  triangles = std::vector<Index>();
  VisibleLines lines;
  lines.piercings = joined(std::move(piercings));
  lines.pieces = sortedAndMerged(joined(std::move(pieces)), edges.size(), threads);
  return lines;
}

std::vector<EdgePiece> hiddenPieces(std::size_t count, std::span<const EdgePiece> visible) {
  std::vector<EdgePiece> hidden;
  std::size_t next = 0;
  for (Index edge = 0; edge < count; ++edge) {
    double from = 0;
    for (; next < visible.size() && visible[next].edge == edge; ++next) {
      if (from < visible[next].begin) {
        hidden.push_back({edge, from, visible[next].begin});
      }
      from = visible[next].end;
    }
    if (from < 1) {
      hidden.push_back({edge, from, 1});
    }
  }
  return hidden;
}

}  // namespace dxf2d::projection
