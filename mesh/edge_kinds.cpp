#include "mesh/edge_kinds.h"

#include <cmath>
#include <cstddef>
#include <numbers>

#include "platform/parallel.h"

namespace dxf2d::mesh {

namespace {

// The plug-in's limits: the difference of two unit normals' z above which a polygon towards the
// viewer and one away from it have a silhouette between them,
constexpr double kSilhouetteDzTolerance = 0.001;
// and the angle, in radians, above which two that both stand edge-on do.
constexpr double kEdgeOnAngle = 0.04;

// Added to the angle of creases, in degrees: prisms of as many sides as make up the very angle have
// some of their edges above it, by rounding.
constexpr double kCreaseMargin = 0.01;

Vector reversed(const Vector& v) { return {-v[0], -v[1], -v[2]}; }

bool isZero(const Vector& v) { return v[0] == 0.0 && v[1] == 0.0 && v[2] == 0.0; }

// Whether two unit normals, both edge-on, differ by more than the plug-in's angle.
bool isAngle(const Vector& u, const Vector& v) {
  if (isZero(u) || isZero(v)) {
    return false;
  }
  const double cosine = dot(u, v);
  // Far more than rounding away from the cosine of the angle.
  constexpr double kCosine = 0.9992001066609779;
  constexpr double kClear = 1e-9;
  if (std::fabs(cosine - kCosine) > kClear) {
    return cosine < kCosine;
  }
  return std::atan2(length(cross(u, v)), cosine) > kEdgeOnAngle;
}

bool isSilhouette(const Vector& u, const Vector& v) {
  if (u[2] * v[2] > 0.0) {
    return false;
  }
  return std::fabs(u[2] - v[2]) > kSilhouetteDzTolerance || isAngle(u, v);
}

// Whether the surface turns away from the viewer at the edge of two polygons with these normals.
// The plug-in has tolerances for that, which a finely divided surface stays within all along its
// outline.
bool isTurningAway(const Vector& u, const Vector& v) {
  // Far more than what seenSide takes for neither side, of normals of length 1.
  constexpr double kClear = 1e-5;
  if (std::fabs(u[2]) > kClear && std::fabs(v[2]) > kClear) {
    return (u[2] > 0.0) != (v[2] > 0.0);
  }
  return seenSide(u) != seenSide(v);
}

bool isEdgeOn(const Vector& normal) { return std::fabs(normal[2]) <= kSilhouetteDzTolerance; }

}  // namespace

double creaseCosine(double degrees) {
  // Less than any cosine: there is no crease.
  constexpr double kNone = -2.0;
  const double least = degrees + kCreaseMargin;
  return least < kNoCreases ? std::cos(least * std::numbers::pi / 180.0) : kNone;
}

EdgeClassifier::EdgeClassifier(const PolygonMesh& mesh, double creaseDegrees, std::size_t threads)
    : mesh_(mesh), facets_(mesh.PolygonCount()), creaseCosine_(creaseCosine(creaseDegrees)) {
  Blocks(mesh.PolygonCount(), threads).Run([&](std::size_t /*number*/, const Block& polygons) {
    for (std::size_t p = polygons.begin; p < polygons.end; ++p) {
      Vector normal = doubledArea(mesh, p);
      const double size = length(normal);
      const bool hasArea = size > 0.0 && std::isfinite(size);
      for (double& component : normal) {
        component = hasArea ? component / size : 0.0;
      }
      facets_[p] = {normal, size};
    }
  });
}

std::array<Vector, 2> EdgeClassifier::NormalsOf(const EdgeUse& first, const EdgeUse& second) const {
  const Vector& other = Normal(second.Polygon());
  return {Normal(first.Polygon()), isAgreeing(first, second) ? other : reversed(other)};
}

bool EdgeClassifier::IsCrease(const Vector& u, const Vector& v) const {
  return dot(u, v) < creaseCosine_ && !isZero(u) && !isZero(v);
}

std::optional<EdgeKind> EdgeClassifier::KindOfTwo(const EdgeUse& first,
                                                  const EdgeUse& second) const {
  const auto [u, v] = NormalsOf(first, second);
  if (isSilhouette(u, v) || isTurningAway(u, v)) {
    return EdgeKind::kSilhouette;
  }
  return IsCrease(u, v) ? std::optional(EdgeKind::kCrease) : std::nullopt;
}

std::optional<EdgeKind> EdgeClassifier::KindOfMany(Index a, Index b,
                                                   std::span<const EdgeUse> uses) const {
  const Point& from = mesh_.points[a];
  const Point& to = mesh_.points[b];
  const double alongX = to[0] - from[0];
  const double alongY = to[1] - from[1];
  // Polygons to the left of the edge in plan less those to its right, and those above it less those
  // below of the ones that stand edge-on.
  std::ptrdiff_t left = 0;
  std::ptrdiff_t above = 0;
  std::size_t edgeOn = 0;
  bool isCrease = false;
  const auto upward = [](const Vector& normal) {
    return normal[2] < 0.0 ? reversed(normal) : normal;
  };
  const Vector slope = upward(Normal(uses[0].Polygon()));
  for (const EdgeUse& use : uses) {
    const Vector& normal = Normal(use.Polygon());
    // A polygon lies to the left of its edges, as seen from its front.
    const bool isForward = use.IsForward();
    if (isEdgeOn(normal)) {
      ++edgeOn;
      above += (normal[0] * alongY - normal[1] * alongX > 0.0) == isForward ? 1 : -1;
    } else {
      left += (normal[2] > 0.0) == isForward ? 1 : -1;
      isCrease = isCrease || IsCrease(slope, upward(normal));
    }
  }
  const bool isOutline = edgeOn == uses.size() ? above != 0 : edgeOn != 0 || left != 0;
  if (isOutline) {
    return EdgeKind::kNonManifold;
  }
  return isCrease ? std::optional(EdgeKind::kCrease) : std::nullopt;
}

std::optional<EdgeKind> EdgeClassifier::Kind(Index a, Index b,
                                             std::span<const EdgeUse> uses) const {
  switch (uses.size()) {
    case 1:
      return EdgeKind::kBorder;
    case 2:
      return KindOfTwo(uses[0], uses[1]);
    default:
      return KindOfMany(a, b, uses);
  }
}

}  // namespace dxf2d::mesh
