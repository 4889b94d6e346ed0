#include "geometry/outline/outline.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "geometry/outline/edge.h"
#include "geometry/outline/edge_chains.h"
#include "geometry/outline/edge_table.h"
#include "geometry/outline/run_expansion.h"
#include "geometry/outline/silhouette.h"
#include "geometry/outline/weld.h"
#include "platform/large_memory.h"
#include "platform/scratch_pool.h"

namespace dxf2d {

namespace {

// Which open borders are drawn: 0 those of open surfaces, 3 those of closed ones, 2 all. It is
// never changed, which is why `closedSurface` has no effect.
constexpr int kBoundaryMode = 2;

// The memory that the stages work in. Small sets come by the thousand, so it is kept from call to
// call; after a huge set it is freed.
struct OutlineScratch {
  WeldScratch weld;
  PointNumbers corners;
  ExpandedRuns runs;
  EdgeTable table;
  std::vector<Facing> facings;
  std::vector<Edge> edges;
  ChainScratch chains;

  // What a huge set needs no more is freed at once, so that it never has the memory of all stages.
  void FreeAfterWeld() {
    if (weld.CapacityBytes() > kKeptByStage) {
      weld = WeldScratch();
    }
  }
  void FreeAfterClassification() {
    if (table.CapacityBytes() + runs.polygons.capacity() * sizeof(int) > kKeptByStage) {
      corners = PointNumbers();
      runs.polygons = std::vector<int>();
      table = EdgeTable();
      facings = std::vector<Facing>();
    }
  }

  std::size_t CapacityBytes() const {
    return weld.CapacityBytes() + corners.capacity() * sizeof(int) + runs.CapacityBytes() +
           table.CapacityBytes() + facings.capacity() * sizeof(Facing) +
           edges.capacity() * sizeof(Edge) + chains.CapacityBytes();
  }

 private:
  static constexpr std::size_t kKeptByStage = std::size_t{2} << 20U;
};

ScratchPool<OutlineScratch>& scratchPool() {
  static ScratchPool<OutlineScratch> pool;
  return pool;
}

// Lends scratch for one call.
class ScratchLoan {
 public:
  ScratchLoan() = default;
  ~ScratchLoan() {
    constexpr std::size_t kKeptBytes = std::size_t{16} << 20U;
    if ((*loan_).CapacityBytes() > kKeptBytes) {
      *loan_ = OutlineScratch();
    }
  }
  ScratchLoan(const ScratchLoan&) = delete;
  ScratchLoan& operator=(const ScratchLoan&) = delete;

  OutlineScratch& operator*() const { return *loan_; }

 private:
  ScratchPool<OutlineScratch>::Loan loan_{scratchPool()};
};

bool drawsBorder(bool closedSurface) {
  return kBoundaryMode == 2 || (kBoundaryMode == 3 ? closedSurface : !closedSurface);
}

// Adds `explicitEdges` to `edges`, which are in edge order; an edge in both is kept once.
void addExplicitEdges(std::vector<Edge>& edges, const std::vector<Edge>& explicitEdges) {
  if (explicitEdges.empty()) {
    return;
  }
  const auto middle = static_cast<std::ptrdiff_t>(edges.size());
  edges.insert(edges.end(), explicitEdges.begin(), explicitEdges.end());
  // Lines are mostly given in edge order.
  if (!std::is_sorted(edges.begin() + middle, edges.end())) {
    std::sort(edges.begin() + middle, edges.end());
  }
  if (middle != 0) {
    std::inplace_merge(edges.begin(), edges.begin() + middle, edges.end());
  }
  edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
}

// Stages 5 to 7, which are the same for faces and lines.
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

// Stage 2, without copying a list that already consists of polygons. Explicit edges go to `runs`.
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

// Stages 4 to 7 of a face set whose edges are in the table.
bool outlineFaces(std::vector<KtPoint3>& points, std::vector<int>& indices, const PolygonSet& set,
                  bool closedSurface, std::size_t threads, OutlineScratch& scratch) {
  findFacings(set, threads, scratch.facings);
  const auto isDrawn = [&](const Edge& edge, std::span<const std::uint64_t> faces) {
    // An edge with three or more incident faces is never drawn.
    return (faces.size() == 1 && drawsBorder(closedSurface)) ||
           (faces.size() == 2 &&
            isSilhouette(set, scratch.facings, edge, tagOf(faces[0]), tagOf(faces[1])));
  };
  scratch.table.ChooseEdges(threads, isDrawn, scratch.edges);
  scratch.FreeAfterClassification();
  return finishOutline(points, indices, scratch);
}

// Stages 2 to 7 of a face set whose points are welded.
bool outlinePolygons(std::vector<KtPoint3>& points, std::vector<int>& indices,
                     bool reverseOrientation, bool closedSurface, std::size_t threads,
                     OutlineScratch& scratch) {
  const std::vector<int>& polygons =
      expandedPolygons(indices, points.size(), SegmentRuns::kExactlyTwo, scratch.runs);
  scratch.table.Build(polygons, points.size(), threads);
  return outlineFaces(points, indices,
                      {points, polygons, scratch.table.PolygonStarts(), reverseOrientation},
                      closedSurface, threads, scratch);
}

// The same for triangles, whose welded corners are in the scratch: there is nothing to expand.
bool outlineTriangles(std::vector<KtPoint3>& points, std::vector<int>& outline,
                      bool reverseOrientation, bool closedSurface, std::size_t threads,
                      OutlineScratch& scratch) {
  scratch.runs.edges.clear();
  scratch.table.BuildTriangles(scratch.corners, points.size(), threads);
  return outlineFaces(points, outline, {points, scratch.corners, {}, reverseOrientation},
                      closedSurface, threads, scratch);
}

// The same for a line set.
bool outlineLines(std::vector<KtPoint3>& points, std::vector<int>& indices, std::size_t threads,
                  OutlineScratch& scratch) {
  scratch.table.Build(expandedPolygons(indices, points.size(), SegmentRuns::kStrips, scratch.runs),
                      points.size(), threads);
  const auto isDrawn = [](const Edge&, std::span<const std::uint64_t> faces) {
    return faces.size() == 1;
  };
  scratch.table.ChooseEdges(threads, isDrawn, scratch.edges);
  scratch.FreeAfterClassification();
  return finishOutline(points, indices, scratch);
}

}  // namespace

void freeOutlineMemory() { scratchPool().Clear(); }

bool BuildOutline(std::vector<KtPoint3>& points, std::vector<int>& indices, bool reverseOrientation,
                  bool closedSurface) {
  const ScratchLoan loan;
  weldPoints(points, indices, (*loan).weld);
  return outlinePolygons(points, indices, reverseOrientation, closedSurface, 1, *loan);
}

bool BuildOutline(const PlacedCoords& placed, const std::vector<int>& indices,
                  std::vector<KtPoint3>& points, std::vector<int>& outline, bool reverseOrientation,
                  bool closedSurface, const Threading& threading) {
  const ScratchLoan loan;
  const std::size_t threads = threading.For(indices.size());
  const TriangleRuns triangles = triangleRunsOf(indices, threads);
  if (triangles == TriangleRuns::kOther) {
    weldCoords(placed.coords, placed.transform, indices, threads, points, outline, (*loan).weld);
    (*loan).FreeAfterWeld();
    return outlinePolygons(points, outline, reverseOrientation, closedSurface, threads, *loan);
  }
  weldTriangles(placed.coords, placed.transform, indices, triangles, threads, points,
                (*loan).corners, (*loan).weld);
  (*loan).FreeAfterWeld();
  return outlineTriangles(points, outline, reverseOrientation, closedSurface, threads, *loan);
}

bool BuildLineOutline(std::vector<KtPoint3>& points, std::vector<int>& indices) {
  const ScratchLoan loan;
  weldPoints(points, indices, (*loan).weld);
  return outlineLines(points, indices, 1, *loan);
}

bool BuildLineOutline(const PlacedCoords& placed, const std::vector<int>& indices,
                      std::vector<KtPoint3>& points, std::vector<int>& outline,
                      const Threading& threading) {
  const ScratchLoan loan;
  const std::size_t threads = threading.For(indices.size());
  weldCoords(placed.coords, placed.transform, indices, threads, points, outline, (*loan).weld);
  (*loan).FreeAfterWeld();
  return outlineLines(points, outline, threads, *loan);
}

}  // namespace dxf2d
