#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <vector>

#include "mesh/vector.h"
#include "tests/mesh/reference_mesh.h"

namespace dxf2d::mesh {

namespace {

Vector normalOf(const PolygonMesh& mesh, Index p) {
  Vector normal = doubledArea(mesh, p);
  const double size = length(normal);
  for (double& component : normal) {
    component = size > 0.0 ? component / size : 0.0;
  }
  return normal;
}

Vector negative(const Vector& v) { return {-v[0], -v[1], -v[2]}; }

double angle(const Vector& u, const Vector& v) {
  return length(u) == 0.0 || length(v) == 0.0 ? 0.0 : std::atan2(length(cross(u, v)), dot(u, v));
}

bool isReferenceSilhouette(const Vector& u, const Vector& v) {
  return u[2] * v[2] <= 0.0 && (std::fabs(u[2] - v[2]) > 0.001 || angle(u, v) > 0.04);
}

// 1, 0 or -1.
int referenceSide(const Vector& normal) {
  return std::fabs(normal[2]) <= 1e-6 ? 0 : static_cast<int>(std::copysign(1.0, normal[2]));
}

// Signs of where each polygon lies in plan, and what follows from them.
std::optional<EdgeKind> kindOfMany(const PolygonMesh& mesh, const std::pair<Index, Index>& edge,
                                   const std::map<Index, int>& uses, double creaseAngle) {
  const Vector along = difference(mesh.points[edge.second], mesh.points[edge.first]);
  int sides = 0;
  int heights = 0;
  std::size_t edgeOn = 0;
  std::vector<Vector> slopes;
  for (const auto& [polygon, direction] : uses) {
    const bool isForward = direction > 0;
    const Vector normal = normalOf(mesh, polygon);
    const Vector front = isForward ? normal : negative(normal);
    slopes.push_back(normal[2] < 0.0 ? negative(normal) : normal);
    if (std::fabs(normal[2]) <= 0.001) {
      ++edgeOn;
      heights += (cross(normal, along)[2] > 0.0) == isForward ? 1 : -1;
    } else {
      sides += front[2] > 0.0 ? 1 : -1;
    }
  }
  if (edgeOn == uses.size() ? heights != 0 : edgeOn > 0 || sides != 0) {
    return EdgeKind::kNonManifold;
  }
  for (const Vector& slope : slopes) {
    if (edgeOn == 0 && angle(slopes[0], slope) > creaseAngle) {
      return EdgeKind::kCrease;
    }
  }
  return std::nullopt;
}

std::optional<EdgeKind> referenceKind(const PolygonMesh& mesh, const std::pair<Index, Index>& edge,
                                      const std::map<Index, int>& uses, double creaseDegrees) {
  const double creaseAngle = (creaseDegrees + 0.01) * std::numbers::pi / 180.0;
  if (uses.size() == 1) {
    return EdgeKind::kBorder;
  }
  if (uses.size() > 2) {
    return kindOfMany(mesh, edge, uses, creaseAngle);
  }
  const auto& [p, direction] = *uses.begin();
  const auto& [q, otherDirection] = *uses.rbegin();
  const Vector u = normalOf(mesh, p);
  const Vector v = direction * otherDirection > 0 ? negative(normalOf(mesh, q)) : normalOf(mesh, q);
  if (isReferenceSilhouette(u, v) || referenceSide(u) != referenceSide(v)) {
    return EdgeKind::kSilhouette;
  }
  return angle(u, v) > creaseAngle ? std::optional(EdgeKind::kCrease) : std::nullopt;
}

using Place = std::pair<double, double>;
using PlanKey = std::pair<Place, Place>;

PlanKey keyOf(const PolygonMesh& mesh, Index a, Index b) {
  const Place p = {mesh.points[a][0] + 0.0, mesh.points[a][1] + 0.0};
  const Place q = {mesh.points[b][0] + 0.0, mesh.points[b][1] + 0.0};
  return std::minmax(p, q);
}

// Edges by their segments in plan, in the order in which these come up first.
class Segments {
 public:
  explicit Segments(const PolygonMesh& mesh) : mesh_(mesh) {}

  void Add(const DrawnEdge& edge) {
    const PlanKey key = keyOf(mesh_, edge.a, edge.b);
    if (key.first == key.second) {
      return;
    }
    const auto [number, isNew] = numbers_.try_emplace(key, edges_.size());
    if (isNew) {
      edges_.push_back(edge);
    }
    DrawnEdge& first = edges_[number->second];
    first.kind = std::min(first.kind, edge.kind);
  }

  const std::vector<DrawnEdge>& All() const { return edges_; }

 private:
  const PolygonMesh& mesh_;
  std::map<PlanKey, std::size_t> numbers_;
  std::vector<DrawnEdge> edges_;
};

Index partCountOf(const PolygonMesh& mesh) {
  Index count = 0;
  for (const Index part : mesh.parts) {
    count = std::max(count, part + 1);
  }
  for (const Segment& segment : mesh.segments) {
    count = std::max(count, segment.part + 1);
  }
  return count;
}

}  // namespace

DrawnEdges referenceDrawnEdges(const PolygonMesh& mesh, double creaseDegrees) {
  Segments segments(mesh);
  for (const auto& [edge, uses] : referenceEdges(mesh)) {
    const std::optional<EdgeKind> kind = referenceKind(mesh, edge, uses, creaseDegrees);
    if (kind) {
      segments.Add({edge.first, edge.second, mesh.parts[uses.begin()->first], *kind});
    }
  }
  for (const Segment& segment : mesh.segments) {
    segments.Add({segment.a, segment.b, segment.part, EdgeKind::kLine});
  }
  DrawnEdges drawn;
  std::vector<std::vector<DrawnEdge>> byPart(partCountOf(mesh));
  for (const DrawnEdge& edge : segments.All()) {
    byPart[edge.part].push_back(edge);
  }
  for (const std::vector<DrawnEdge>& own : byPart) {
    drawn.edges.insert(drawn.edges.end(), own.begin(), own.end());
    drawn.starts.push_back(static_cast<Index>(drawn.edges.size()));
  }
  return drawn;
}

}  // namespace dxf2d::mesh
