#include "app/model/linework.h"

#include <algorithm>
#include <utility>

#include "platform/large_memory.h"
#include "platform/parallel.h"
#include "projection/candidate_edges.h"
#include "projection/coincident_segments.h"
#include "projection/group_joining.h"
#include "projection/section.h"
#include "projection/union_outline.h"
#include "projection/visibility.h"

namespace dxf2d {
namespace {

using projection::CandidateEdge;
using projection::EdgePiece;
using projection::GroupedSegment;
using projection::Index;
using projection::PlanPoint;
using projection::Point;
using projection::Polylines;
using projection::Scene;
using projection::Tolerances;

LineKind lineKindOf(projection::EdgeKind kind) {
  switch (kind) {
    case projection::EdgeKind::kBorder:
      return LineKind::kBorder;
    case projection::EdgeKind::kSilhouette:
      return LineKind::kSilhouette;
    case projection::EdgeKind::kCrease:
      return LineKind::kCrease;
    case projection::EdgeKind::kCut:
      return LineKind::kCut;
    case projection::EdgeKind::kBridge:
    case projection::EdgeKind::kLine:
    case projection::EdgeKind::kNoise:
      break;
  }
  return LineKind::kLine;
}

GroupedSegment segmentOf(const Scene& scene, const CandidateEdge& edge, const EdgePiece& piece,
                         LineKind kind) {
  const Point& a = scene.points[edge.from];
  const Point& b = scene.points[edge.to];
  const auto at = [&](double t) {
    return t < 1 ? PlanPoint{a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1])}
                 : PlanPoint{b[0], b[1]};
  };
  return {at(piece.begin), at(piece.end), lineGroup(edge.part, kind)};
}

std::vector<GroupedSegment> allSegments(const Scene& scene, std::span<const CandidateEdge> edges,
                                        const Threading& threading) {
  return collectInParallel<GroupedSegment>(
      edges.size(), threading.For(edges.size()), [&](std::size_t i, auto& list) {
        if (isDrawn(edges[i].kind)) {
          appendLarge(list, segmentOf(scene, edges[i], {0, 0, 1}, lineKindOf(edges[i].kind)));
        }
      });
}

std::vector<GroupedSegment> visibleSegments(const Scene& scene,
                                            std::span<const CandidateEdge> edges,
                                            const projection::VisibleLines& visible,
                                            const Threading& threading) {
  const std::size_t count = visible.pieces.size();
  auto segments = collectInParallel<GroupedSegment>(
      count, threading.For(count), [&](std::size_t i, auto& list) {
        const EdgePiece& piece = visible.pieces[i];
        const CandidateEdge& edge = edges[piece.edge];
        if (isDrawn(edge.kind)) {
          appendLarge(list, segmentOf(scene, edge, piece, lineKindOf(edge.kind)));
        }
      });
  reserveLarge(segments, segments.size() + visible.piercings.size());
  for (const projection::PiercingPiece& piece : visible.piercings) {
    segments.push_back({{piece.from[0], piece.from[1]},
                        {piece.to[0], piece.to[1]},
                        lineGroup(piece.part, LineKind::kCrease)});
  }
  return segments;
}

// Adds the hidden pieces to the visible `segments`, except what lies right behind one of these or
// another hidden one.
void addHiddenSegments(const Scene& scene, std::span<const CandidateEdge> edges,
                       std::span<const EdgePiece> visible, double weld,
                       std::vector<GroupedSegment>& segments) {
  std::vector<GroupedSegment> hidden;
  for (const EdgePiece& piece : projection::hiddenPieces(edges.size(), visible)) {
    if (isDrawn(edges[piece.edge].kind)) {
      hidden.push_back(segmentOf(scene, edges[piece.edge], piece, LineKind::kHidden));
    }
  }
  const std::vector<GroupedSegment> drawn = projection::withoutCovered(hidden, segments, weld);
  segments.insert(segments.end(), drawn.begin(), drawn.end());
}

// Loops of each object, in the group of its first part; of all together, in that of part 0.
Polylines outlineOf(const Scene& scene, std::span<const CandidateEdge> edges,
                    std::span<const Index> objectOfPart, const LineworkOptions& options,
                    const Tolerances& tolerances, const Threading& threading, Linework& linework) {
  std::vector<Index> groups(objectOfPart.begin(), objectOfPart.end());
  if (options.outline == OutlineOf::kWholeView) {
    std::ranges::fill(groups, Index{0});
  }
  projection::UnionOutline outline =
      projection::findUnionOutline(scene, edges, groups, tolerances, threading);
  linework.droppedPieces = outline.droppedPieces;
  for (std::uint64_t& group : outline.loops.groups) {
    // Groups ascend with the parts.
    const auto part = std::ranges::lower_bound(groups, static_cast<Index>(group));
    group = lineGroup(static_cast<std::uint64_t>(part - groups.begin()), LineKind::kOutline);
  }
  return std::move(outline.loops);
}

double heightOf(const CutPlane& plane, const projection::Bounds& bounds) {
  return plane.isAbsolute ? plane.height : bounds.low[2] + plane.height;
}

// Removes what is above the plane from `scene`, and returns the cut edges of what is left.
std::vector<CandidateEdge> cutAway(Scene& scene, double height, double weld,
                                   std::span<const Index> objectOfPart,
                                   const LineworkOptions& options, Linework& linework) {
  // Nothing is hidden in a see-through drawing, and what is filled is covered.
  const bool isSeeThrough =
      options.hidden == HiddenLines::kShow && options.outline == OutlineOf::kNothing;
  projection::Section section =
      projection::cutScene(std::move(scene), height, weld, objectOfPart,
                           isSeeThrough ? projection::Caps::kOpen : projection::Caps::kFilled);
  linework.openEnds = section.lines.openEnds;
  linework.openObjects = section.unfilledBodies;
  scene = std::move(section.below);
  return std::move(section.cuts);
}

std::vector<GroupedSegment> segmentsOf(const Scene& scene, std::span<const CandidateEdge> edges,
                                       const LineworkOptions& options, const Tolerances& tolerances,
                                       const Threading& threading) {
  if (options.hidden == HiddenLines::kShow) {
    return allSegments(scene, edges, threading);
  }
  const projection::VisibleLines visible =
      projection::findVisibleLines(scene, edges, tolerances, threading);
  std::vector<GroupedSegment> segments = visibleSegments(scene, edges, visible, threading);
  if (options.hidden == HiddenLines::kDash) {
    addHiddenSegments(scene, edges, visible.pieces, tolerances.weld, segments);
  }
  return segments;
}

}  // namespace

Linework drawLinework(Scene scene, const LineworkParts& parts, const LineworkOptions& options,
                      double creaseDegrees, const Threading& threading) {
  Linework linework;
  const projection::Bounds bounds = projection::boundsOf(scene, threading);
  const Tolerances tolerances = options.outline == OutlineOf::kNothing
                                    ? projection::tolerancesFor(bounds)
                                    : projection::outlineTolerancesFor(bounds);
  std::vector<CandidateEdge> cuts;
  if (options.cut) {
    cuts = cutAway(scene, heightOf(*options.cut, bounds), tolerances.weld, parts.objects, options,
                   linework);
  }
  std::vector<CandidateEdge> edges =
      projection::findCandidateEdges(scene, tolerances, creaseDegrees, parts.looks, threading);
  edges.insert(edges.end(), cuts.begin(), cuts.end());
  cuts = std::vector<CandidateEdge>();
  if (options.outline != OutlineOf::kNothing) {
    linework.lines = projection::sortedByGroup(
        outlineOf(scene, edges, parts.objects, options, tolerances, threading, linework));
    return linework;
  }
  linework.creases = static_cast<std::size_t>(
      std::ranges::count(edges, projection::EdgeKind::kCrease, &CandidateEdge::kind));
  std::vector<GroupedSegment> segments = segmentsOf(scene, edges, options, tolerances, threading);
  // Joining takes as much memory again.
  scene = Scene();
  edges = std::vector<CandidateEdge>();
  const std::size_t threads = threading.For(segments.size());
  linework.lines = projection::joinByGroup(std::move(segments), tolerances.weld, threads);
  return linework;
}

}  // namespace dxf2d
