#include "projection/union_outline.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "projection/boundary_loops.h"
#include "projection/parallel_walk.h"
#include "projection/segment_cuts.h"

namespace dxf2d::projection {
namespace {

// A piece of an edge with triangles on one side: on the left of its direction, or on the right.
struct BoundaryPiece {
  Index edge;
  double begin;
  double end;
  bool isCoveredLeft;
};

struct Sides {
  bool left = false;
  bool right = false;
};

// Finds the pieces of the boundary in one leaf cell after another.
class CellBoundary {
 public:
  explicit CellBoundary(const Tolerances& tolerances) : plan_(tolerances.plan) {}

  void Run(const PlanCell& cell) {
    for (const SegmentPart& part : cell.parts) {
      if (!part.own.IsEmpty()) {
        RunPart(cell, part);
      }
    }
  }
  const std::vector<BoundaryPiece>& Pieces() const { return pieces_; }

 private:
  void RunPart(const PlanCell& cell, const SegmentPart& part) {
    constexpr double kAnyHeight = std::numeric_limits<double>::infinity();
    const PlanSegment& segment = cell.segments[part.segment];
    cuts_.clear();
    for (const SegmentPart& other : cell.parts) {
      if (other.segment != part.segment) {
        appendCrossings(segment, cell.segments[other.segment], plan_, kAnyHeight, cuts_);
        appendNearness(segment, cell.segments[other.segment], plan_, cuts_);
      }
    }
    trimCuts(segment, part.own, plan_, cuts_);
    for (std::size_t i = 0; i + 1 < cuts_.size(); ++i) {
      const Sides sides = CoverBeside(cell, segment, cuts_[i] + (cuts_[i + 1] - cuts_[i]) / 2);
      if (sides.left != sides.right) {
        pieces_.push_back({segment.edge, cuts_[i], cuts_[i + 1], sides.left});
      }
    }
  }

  // On which sides of the segment, right beside it, there are triangles.
  Sides CoverBeside(const PlanCell& cell, const PlanSegment& segment, double t) const {
    const double x = segment.XAt(t);
    const double y = segment.YAt(t);
    const double leftX = -segment.dy / segment.length;
    const double leftY = segment.dx / segment.length;
    Sides cover;
    for (const Index number : cell.triangleNumbers) {
      const Sides sides = SidesOf(cell.triangles[number], x, y, leftX, leftY);
      cover.left = cover.left || sides.left;
      cover.right = cover.right || sides.right;
      if (cover.left && cover.right) {
        break;
      }
    }
    return cover;
  }

  // A side of the triangle that runs through (x, y) leaves the triangle to one side of the segment;
  // one that crosses the segment at a right angle, to both.
  Sides SidesOf(const PlanTriangle& triangle, double x, double y, double leftX,
                double leftY) const {
    constexpr double kLeastSlope = 1e-9;
    Sides sides{true, true};
    for (const PlanTriangle::Side& side : triangle.sides) {
      const double distance = side.DistanceOf(x, y);
      if (distance < -plan_) {
        return {};
      }
      if (distance <= plan_) {
        const double slope = side.a * leftX + side.b * leftY;
        sides.left = sides.left && slope > -kLeastSlope;
        sides.right = sides.right && slope < kLeastSlope;
      }
    }
    return sides;
  }

  double plan_;
  std::vector<BoundaryPiece> pieces_;
  std::vector<double> cuts_;
};

std::size_t appendGroup(const Scene& scene, std::span<const Index> triangles,
                        std::span<const CandidateEdge> edges, std::uint64_t group,
                        const Tolerances& tolerances, const Threading& threading,
                        Polylines& loops) {
  const std::size_t threads = threading.For(triangles.size() + edges.size());
  const CellGrid grid(scene, triangles, edges, tolerances, threads);
  std::vector<BoundaryPiece> pieces;
  for (const CellBoundary& boundary :
       walkInParallel(grid, Culling::kInside, threads, [&] { return CellBoundary(tolerances); })) {
    pieces.insert(pieces.end(), boundary.Pieces().begin(), boundary.Pieces().end());
  }
  std::vector<GroupedSegment> segments;
  segments.reserve(pieces.size());
  for (const BoundaryPiece& piece : pieces) {
    const Point& a = scene.points[edges[piece.edge].from];
    const Point& b = scene.points[edges[piece.edge].to];
    const auto at = [&](double t) {
      return t < 1 ? PlanPoint{a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1])}
                   : PlanPoint{b[0], b[1]};
    };
    segments.push_back({at(piece.begin), at(piece.end), group});
    if (!piece.isCoveredLeft) {
      std::swap(segments.back().from, segments.back().to);
    }
  }
  return appendBoundaryLoops(segments, group, tolerances.weld, loops);
}

// Numbers 0 .. count - 1 by group, and where each group's begin. Leaves out those without a group.
struct Grouping {
  std::vector<Index> numbers;
  std::vector<std::size_t> starts;
};

template <class GroupOf>
Grouping groupNumbers(std::size_t count, std::size_t groups, GroupOf groupOf) {
  Grouping grouping;
  grouping.starts.assign(groups + 2, 0);
  for (std::size_t i = 0; i < count; ++i) {
    ++grouping.starts[groupOf(i) + 2];
  }
  std::partial_sum(grouping.starts.begin(), grouping.starts.end(), grouping.starts.begin());
  grouping.numbers.resize(count);
  for (std::size_t i = 0; i < count; ++i) {
    grouping.numbers[grouping.starts[groupOf(i) + 1]++] = static_cast<Index>(i);
  }
  return grouping;
}

}  // namespace

UnionOutline findUnionOutline(const Scene& scene, std::span<const CandidateEdge> edges,
                              std::span<const Index> groupOfPart, const Tolerances& tolerances,
                              const Threading& threading) {
  std::vector<CandidateEdge> contours;
  std::ranges::copy_if(edges, std::back_inserter(contours), [](const CandidateEdge& edge) {
    return edge.kind == EdgeKind::kBorder || edge.kind == EdgeKind::kSilhouette ||
           edge.kind == EdgeKind::kCut || !isDrawn(edge.kind);
  });
  const std::size_t groups =
      groupOfPart.empty() ? 0 : std::size_t{*std::ranges::max_element(groupOfPart)} + 1;
  const Grouping triangles = groupNumbers(
      scene.triangles.size(), groups, [&](std::size_t t) { return groupOfPart[scene.parts[t]]; });
  std::ranges::stable_sort(contours, {},
                           [&](const CandidateEdge& edge) { return groupOfPart[edge.part]; });
  UnionOutline outline;
  std::size_t begin = 0;
  for (std::size_t group = 0; group < groups; ++group) {
    std::size_t end = begin;
    while (end < contours.size() && groupOfPart[contours[end].part] == group) {
      ++end;
    }
    outline.droppedPieces +=
        appendGroup(scene,
                    std::span(triangles.numbers)
                        .subspan(triangles.starts[group],
                                 triangles.starts[group + 1] - triangles.starts[group]),
                    std::span(contours).subspan(begin, end - begin), group, tolerances, threading,
                    outline.loops);
    begin = end;
  }
  return outline;
}

}  // namespace dxf2d::projection
