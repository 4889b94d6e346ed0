#include "geometry/outline.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

#include "geometry/edge.h"
#include "geometry/edge_chains.h"
#include "geometry/edge_table.h"
#include "geometry/run_expansion.h"
#include "geometry/weld.h"
#include "ktscene/kt_g.h"
#include "platform/large_memory.h"

namespace {

// Difference of two unit normals' z components above which an edge between a polygon towards the
// viewer and one away from it is a silhouette.
constexpr double kSilhouetteDzTolerance = 0.001;
// Angle, in radians, above which an edge between two polygons that both stand edge-on is drawn.
constexpr double kCreaseAngle = 0.04;
// Which open borders are drawn: 0 those of open surfaces, 3 those of closed ones, 2 all. Nothing
// changes it, which is why `closedSurface` has no effect.
constexpr int kBoundaryMode = 2;

using NormalCache = std::vector<double, LargeAllocator<double>>;

// What the stages work in. Small sets come by the thousand, so their memory is kept from call to
// call; what a huge set took is given back.
struct OutlineScratch {
  WeldScratch weld;
  ExpandedRuns runs;
  EdgeTable table;
  NormalCache normalZ;
  std::vector<Edge> edges;
  ChainScratch chains;

  std::size_t CapacityBytes() const {
    return weld.CapacityBytes() + runs.CapacityBytes() + table.CapacityBytes() +
           normalZ.capacity() * sizeof(double) + edges.capacity() * sizeof(Edge) +
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

// The normals of a set's polygons, each computed when first asked for.
class PolygonNormals {
 public:
  PolygonNormals(const std::vector<KtPoint3>& points, const std::vector<int>& polygons,
                 const std::vector<std::uint32_t>& starts, bool reverseOrientation,
                 NormalCache& zCache)
      : points_(points),
        polygons_(polygons),
        starts_(starts),
        reverse_(reverseOrientation),
        z_(zCache) {
    z_.assign(starts.size(), std::numeric_limits<double>::quiet_NaN());
  }

  // A polygon without a normal has the zero vector and so counts as edge-on.
  KtPoint3 Normal(std::uint32_t polygon) const {
    KtPoint3 normal;
    KtG::ComputeNormal(points_, polygons_, starts_[polygon], !reverse_, normal);
    return normal;
  }

  double Z(std::uint32_t polygon) {
    double& z = z_[polygon];
    if (std::isnan(z)) {
      z = Normal(polygon).Get2();
    }
    return z;
  }

 private:
  const std::vector<KtPoint3>& points_;
  const std::vector<int>& polygons_;
  const std::vector<std::uint32_t>& starts_;
  bool reverse_;
  NormalCache& z_;
};

// Whether the edge between two polygons shows. Between two that face the same way it never does,
// however sharp the crease: deliberately, a plan shows silhouettes.
bool isSilhouette(PolygonNormals& normals, std::uint32_t f, std::uint32_t g) {
  const double fz = normals.Z(f);
  const double gz = normals.Z(g);
  if (fz * gz > 0.0) {
    return false;
  }
  if (std::fabs(fz - gz) > kSilhouetteDzTolerance) {
    return true;
  }
  return std::fabs(KtPoint3::GetAngle(normals.Normal(f), normals.Normal(g), false)) > kCreaseAngle;
}

std::uint32_t polygonOf(std::uint64_t entry) { return static_cast<std::uint32_t>(entry); }

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

// Stages 2 to 7 of a face set whose points are welded.
bool outlineFaces(std::vector<KtPoint3>& points, std::vector<int>& indices, bool reverseOrientation,
                  bool closedSurface, OutlineScratch& scratch) {
  expandRuns(indices, points.size(), SegmentRuns::kExactlyTwo, scratch.runs);
  scratch.table.Build(scratch.runs.polygons, points.size());
  PolygonNormals normals(points, scratch.runs.polygons, scratch.table.PolygonStarts(),
                         reverseOrientation, scratch.normalZ);
  scratch.edges.clear();
  scratch.table.ForEachEdge([&](const Edge& edge, std::span<const std::uint64_t> users) {
    // An edge that three or more polygons share is never drawn.
    if ((users.size() == 1 && drawsBorder(closedSurface)) ||
        (users.size() == 2 && isSilhouette(normals, polygonOf(users[0]), polygonOf(users[1])))) {
      scratch.edges.push_back(edge);
    }
  });
  return finishOutline(points, indices, scratch);
}

// The same of a line set.
bool outlineLines(std::vector<KtPoint3>& points, std::vector<int>& indices,
                  OutlineScratch& scratch) {
  expandRuns(indices, points.size(), SegmentRuns::kStrips, scratch.runs);
  scratch.table.Build(scratch.runs.polygons, points.size());
  scratch.edges.clear();
  scratch.table.ForEachEdge([&](const Edge& edge, std::span<const std::uint64_t> users) {
    if (users.size() == 1) {
      scratch.edges.push_back(edge);
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

bool BuildOutline(const PlacedCoords& placed, std::vector<KtPoint3>& points,
                  std::vector<int>& indices, bool reverseOrientation, bool closedSurface) {
  const ScratchLoan loan;
  weldCoords(placed.coords, placed.transform, points, indices, (*loan).weld);
  return outlineFaces(points, indices, reverseOrientation, closedSurface, *loan);
}

bool BuildLineOutline(std::vector<KtPoint3>& points, std::vector<int>& indices) {
  const ScratchLoan loan;
  weldPoints(points, indices, (*loan).weld);
  return outlineLines(points, indices, *loan);
}

bool BuildLineOutline(const PlacedCoords& placed, std::vector<KtPoint3>& points,
                      std::vector<int>& indices) {
  const ScratchLoan loan;
  weldCoords(placed.coords, placed.transform, points, indices, (*loan).weld);
  return outlineLines(points, indices, *loan);
}
