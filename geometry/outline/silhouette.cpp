#include "geometry/outline/silhouette.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>

#include "ktscene/kt_g.h"
#include "ktscene/kt_run_code.h"
#include "ktscene/vector3.h"
#include "platform/parallel.h"

namespace dxf2d {

namespace {

// Difference of two unit normals' z components above which an edge between a polygon towards the
// viewer and one away from it is a silhouette.
constexpr double kSilhouetteDzTolerance = 0.001;
// Angle, in radians, above which an edge between two polygons that both stand edge-on is drawn.
constexpr double kCreaseAngle = 0.04;

// The shortcuts below decide only cases that differ from the limits above by this factor, which is
// more than any rounding error, and only for squared lengths whose products neither overflow nor
// lose digits.
constexpr double kClear = 2.0;
constexpr double kLeastSquare = 1e-100;
constexpr double kGreatestSquare = 1e100;

bool isInRange(double square) { return square >= kLeastSquare && square <= kGreatestSquare; }

Vector3 difference(const KtPoint3& a, const KtPoint3& b) {
  return {a.Get0() - b.Get0(), a.Get1() - b.Get1(), a.Get2() - b.Get2()};
}

// The normal of a counter-clockwise polygon before it is divided by its length, with exactly the
// bits that KtG::ComputeNormal computes; the zero vector when an entry names no point.
Vector3 areaOf(const PolygonSet& set, std::uint32_t polygon) {
  const std::span<const int> corners = set.CornersOf(polygon);
  const auto namesNone = [&](int index) { return !namesPoint(index, set.points.size()); };
  const auto pointAt = [&](int index) { return set.points[static_cast<std::size_t>(index)]; };
  if (corners.size() < 2 || namesNone(corners[0]) || namesNone(corners[1])) {
    return {};
  }
  const KtPoint3 origin = pointAt(corners[0]);
  Vector3 before = difference(pointAt(corners[1]), origin);
  Vector3 sum = {0.0, 0.0, 0.0};
  for (const int corner : corners.subspan(2)) {
    if (namesNone(corner)) {
      return {};
    }
    const Vector3 after = difference(pointAt(corner), origin);
    const Vector3 part = cross(before, after);
    for (std::size_t i = 0; i < 3; ++i) {
      sum[i] += part[i];
    }
    before = after;
  }
  return sum;
}

Facing facingOf(const Vector3& area) {
  if (area[2] == 0.0) {
    return Facing::kEdgeOn;
  }
  constexpr double kClearZ = kClear * kSilhouetteDzTolerance;
  const double square = dot(area, area);
  if (!isInRange(square) || area[2] * area[2] < kClearZ * kClearZ * square) {
    return Facing::kUnsure;
  }
  return area[2] > 0.0 ? Facing::kUp : Facing::kDown;
}

// A polygon without a normal gets the zero vector and so counts as edge-on.
KtPoint3 normalOf(const PolygonSet& set, std::uint32_t polygon) {
  const std::span<const int> corners = set.CornersOf(polygon);
  KtPoint3 normal;
  KtG::ComputeNormal(set.points, {corners.begin(), corners.end()}, 0, !set.reverseOrientation,
                     normal);
  return normal;
}

bool isCrease(const KtPoint3& u, const KtPoint3& v) {
  return std::fabs(KtPoint3::GetAngle(u, v, false)) > kCreaseAngle;
}

// The same for two polygons that are exactly edge-on.
bool isCrease(const PolygonSet& set, std::uint32_t f, std::uint32_t g) {
  const Vector3 u = areaOf(set, f);
  const Vector3 v = areaOf(set, g);
  if (isInRange(dot(u, u)) && isInRange(dot(v, v))) {
    // For so small an angle, the tangent differs from the angle by far less than kClear allows for.
    constexpr double kClearlyFlat = kCreaseAngle / kClear;
    constexpr double kClearlySharp = kCreaseAngle * kClear;
    const double along = dot(u, v);
    const Vector3 across = cross(u, v);
    const double square = dot(across, across);
    if (along > 0.0 && square <= kClearlyFlat * kClearlyFlat * along * along) {
      return false;
    }
    if (along <= 0.0 || square >= kClearlySharp * kClearlySharp * along * along) {
      return true;
    }
  }
  return isCrease(normalOf(set, f), normalOf(set, g));
}

bool isPointInPlan(const std::vector<KtPoint3>& points, const Edge& edge) {
  const KtPoint3& a = points[static_cast<std::size_t>(edge.first)];
  const KtPoint3& b = points[static_cast<std::size_t>(edge.second)];
  return a.Get0() == b.Get0() && a.Get1() == b.Get1();
}

}  // namespace

std::span<const int> PolygonSet::CornersOf(std::uint32_t polygon) const {
  assert(polygon < Count());
  if (starts.empty()) {
    return polygons.subspan(std::size_t{3} * polygon, 3);
  }
  const std::span<const int> rest = polygons.subspan(starts[polygon]);
  const auto end = std::find(rest.begin(), rest.end(), KtRunCode::kPolygon);
  return rest.first(static_cast<std::size_t>(end - rest.begin()));
}

void findFacings(const PolygonSet& set, std::size_t threads, std::vector<Facing>& facings) {
  facings.resize(set.Count());
  Blocks(facings.size(), threads).Run([&](std::size_t, Block block) {
    for (std::size_t f = block.begin; f < block.end; ++f) {
      facings[f] = facingOf(areaOf(set, static_cast<std::uint32_t>(f)));
    }
  });
}

bool isSilhouetteByNormals(const PolygonSet& set, std::uint32_t f, std::uint32_t g) {
  const KtPoint3 u = normalOf(set, f);
  const KtPoint3 v = normalOf(set, g);
  if (u.Get2() * v.Get2() > 0.0) {
    return false;
  }
  if (std::fabs(u.Get2() - v.Get2()) > kSilhouetteDzTolerance) {
    return true;
  }
  return isCrease(u, v);
}

bool isSilhouette(const PolygonSet& set, const std::vector<Facing>& facings, const Edge& edge,
                  std::uint32_t f, std::uint32_t g) {
  assert(f < facings.size() && g < facings.size());
  const Facing atF = facings[f];
  const Facing atG = facings[g];
  if (atF == Facing::kUnsure || atG == Facing::kUnsure) {
    return isSilhouetteByNormals(set, f, g);
  }
  if (atF == Facing::kEdgeOn && atG == Facing::kEdgeOn) {
    return !isPointInPlan(set.points, edge) && isCrease(set, f, g);
  }
  // One of them is clearly not edge-on, so their z differ by more than the tolerance.
  return atF != atG;
}

}  // namespace dxf2d
