#include "geometry/outline.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "geometry/edge.h"
#include "geometry/edge_chains.h"
#include "geometry/edge_table.h"
#include "geometry/run_expansion.h"
#include "geometry/silhouette.h"
#include "geometry/weld.h"
#include "platform/large_memory.h"

namespace {

// Which open borders are drawn: 0 those of open surfaces, 3 those of closed ones, 2 all. Nothing
// changes it, which is why `closedSurface` has no effect.
constexpr int kBoundaryMode = 2;

// What the stages work in. Small sets come by the thousand, so their memory is kept from call to
// call; what a huge set took is given back.
struct OutlineScratch {
  WeldScratch weld;
  ExpandedRuns runs;
  EdgeTable table;
  std::vector<Facing> facings;
  std::vector<Edge> edges;
  ChainScratch chains;

  std::size_t CapacityBytes() const {
    return weld.CapacityBytes() + runs.CapacityBytes() + table.CapacityBytes() +
           facings.capacity() * sizeof(Facing) + edges.capacity() * sizeof(Edge) +
           chains.CapacityBytes();
  }
};

// Lends the thread's scratch for one call.
class ScratchLoan {
 public:
  ScratchLoan() = default;
  ~ScratchLoan() {
    constexpr std::size_t kKeptBytes = std::size_t{16} << 20U;
    if (scratch().CapacityBytes() > kKeptBytes) {
      scratch() = OutlineScratch();
    }
  }
  ScratchLoan(const ScratchLoan&) = delete;
  ScratchLoan& operator=(const ScratchLoan&) = delete;

  OutlineScratch& operator*() const { return scratch(); }

 private:
  static OutlineScratch& scratch() {
    thread_local OutlineScratch scratch;
    return scratch;
  }
};

bool drawsBorder(bool closedSurface) {
  return kBoundaryMode == 2 || (kBoundaryMode == 3 ? closedSurface : !closedSurface);
}

// Adds `explicitEdges` to `edges`, which are in edge order; an edge that stands in both stays once.
void addExplicitEdges(std::vector<Edge>& edges, const std::vector<Edge>& explicitEdges) {
  if (explicitEdges.empty()) {
    return;
  }
  const auto middle = static_cast<std::ptrdiff_t>(edges.size());
  edges.insert(edges.end(), explicitEdges.begin(), explicitEdges.end());
  // Lines mostly come in edge order as they are drawn.
  if (!std::is_sorted(edges.begin() + middle, edges.end())) {
    std::sort(edges.begin() + middle, edges.end());
  }
  if (middle != 0) {
    std::inplace_merge(edges.begin(), edges.begin() + middle, edges.end());
  }
  edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
}

// Stages 5 to 7, the same for faces and lines.
bool finishOutline(std::vector<KtPoint3>& points, std::vector<int>& indices,
                   OutlineScratch& scratch) {
  addExplicitEdges(scratch.edges, scratch.runs.edges);
  if (scratch.edges.empty()) {
    return false;
  }
  for (KtPoint3& point : points) {
    point.Set2(0.0);
  }
  removeCoincident(points, scratch.edges, scratch.chains);
  if (scratch.edges.empty()) {
    return false;
  }
  chainEdges(scratch.edges, points.size(), indices, scratch.chains);
  return true;
}

// Stage 2, with no copy of a list that is made of polygons already. The explicit edges are in
// `runs`.
const std::vector<int>& expandedPolygons(const std::vector<int>& indices, std::size_t pointCount,
                                         SegmentRuns segmentRuns, ExpandedRuns& runs) {
  if (isPolygonList(indices)) {
    runs.polygons.clear();
    runs.edges.clear();
    return indices;
  }
  expandRuns(indices, pointCount, segmentRuns, runs);
  return runs.polygons;
}

// Stages 2 to 7 of a face set whose points are welded.
bool outlineFaces(std::vector<KtPoint3>& points, std::vector<int>& indices, bool reverseOrientation,
                  bool closedSurface, OutlineScratch& scratch) {
  const std::vector<int>& polygons =
      expandedPolygons(indices, points.size(), SegmentRuns::kExactlyTwo, scratch.runs);
  scratch.table.Build(polygons, points.size());
  const PolygonSet set{points, polygons, scratch.table.PolygonStarts(), reverseOrientation};
  findFacings(set, scratch.facings);
  scratch.edges.clear();
  scratch.table.ForEachEdge([&](const Edge& edge, std::span<const std::uint64_t> users) {
    // An edge that three or more polygons share is never drawn.
    if ((users.size() == 1 && drawsBorder(closedSurface)) ||
        (users.size() == 2 &&
         isSilhouette(set, scratch.facings, edge, tagOf(users[0]), tagOf(users[1])))) {
      AppendLarge(scratch.edges, edge);
    }
  });
  return finishOutline(points, indices, scratch);
}

// The same of a line set.
bool outlineLines(std::vector<KtPoint3>& points, std::vector<int>& indices,
                  OutlineScratch& scratch) {
  scratch.table.Build(expandedPolygons(indices, points.size(), SegmentRuns::kStrips, scratch.runs),
                      points.size());
  scratch.edges.clear();
  scratch.table.ForEachEdge([&](const Edge& edge, std::span<const std::uint64_t> users) {
    if (users.size() == 1) {
      AppendLarge(scratch.edges, edge);
    }
  });
  return finishOutline(points, indices, scratch);
}

}  // namespace

bool BuildOutline(std::vector<KtPoint3>& points, std::vector<int>& indices, bool reverseOrientation,
                  bool closedSurface) {
  const ScratchLoan loan;
  weldPoints(points, indices, (*loan).weld);
  return outlineFaces(points, indices, reverseOrientation, closedSurface, *loan);
}

bool BuildOutline(const PlacedCoords& placed, const std::vector<int>& indices,
                  std::vector<KtPoint3>& points, std::vector<int>& outline, bool reverseOrientation,
                  bool closedSurface) {
  const ScratchLoan loan;
  weldCoords(placed.coords, placed.transform, indices, points, outline, (*loan).weld);
  return outlineFaces(points, outline, reverseOrientation, closedSurface, *loan);
}

bool BuildLineOutline(std::vector<KtPoint3>& points, std::vector<int>& indices) {
  const ScratchLoan loan;
  weldPoints(points, indices, (*loan).weld);
  return outlineLines(points, indices, *loan);
}

bool BuildLineOutline(const PlacedCoords& placed, const std::vector<int>& indices,
                      std::vector<KtPoint3>& points, std::vector<int>& outline) {
  const ScratchLoan loan;
  weldCoords(placed.coords, placed.transform, indices, points, outline, (*loan).weld);
  return outlineLines(points, outline, *loan);
}
