#include "projection/candidate_edges.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <optional>
#include <span>
#include <utility>

#include "mesh/compressed_rows.h"
#include "mesh/edge_kinds.h"
#include "platform/large_memory.h"

namespace dxf2d::projection {
namespace {

// A triangle's side, seen from the side's lower point.
struct SideUse {
  Index other;
  // Three times the triangle, plus the corner at which the side begins.
  std::uint32_t side;
};

// The sides of all triangles by their lower point, in compressed rows.
struct SideTable {
  mesh::RowStarts starts;
  LargeArray<SideUse> uses;
};

template <class Visit>
void forEachSide(const Scene& scene, const Block& triangles, Visit visit) {
  for (std::size_t t = triangles.begin; t < triangles.end; ++t) {
    const auto& corners = scene.triangles[t];
    for (std::size_t i = 0; i < 3; ++i) {
      const Index a = corners[i];
      const Index b = corners[(i + 1) % 3];
      if (a != b) {
        visit(std::min(a, b), std::max(a, b), static_cast<std::uint32_t>(3 * t + i));
      }
    }
  }
}

SideTable makeSideTable(const Scene& scene, std::size_t threads) {
  SideTable table;
  mesh::fillRows(
      scene.points.size(), scene.triangles.size(), threads,
      [&](const Block& triangles, auto visit) {
        forEachSide(scene, triangles, [&](Index low, Index high, std::uint32_t side) {
          visit(low, SideUse{high, side});
        });
      },
      table.starts, table.uses);
  return table;
}

double dot(const Point& u, const Point& v) { return u[0] * v[0] + u[1] * v[1] + u[2] * v[2]; }

Point difference(const Point& p, const Point& q) { return {p[0] - q[0], p[1] - q[1], p[2] - q[2]}; }

Point cross(const Point& u, const Point& v) {
  return {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
}

// A polygon of several triangles.
struct BentPolygon {
  // The first triangle, and the one behind the last.
  Index begin;
  Index end;
  // Of length 1, or 0 for a polygon without area.
  Point normal;
  // Of its widest triangle, in plan.
  double width;
};

class BentPolygons {
 public:
  explicit BentPolygons(const Scene& scene) {
    for (std::size_t t = 1; t < scene.triangles.size(); ++t) {
      if ((scene.polygonEdges[t] & kSamePolygon) == 0) {
        continue;
      }
      const auto number = static_cast<Index>(t);
      if (polygons_.empty() || polygons_.back().end != t) {
        polygons_.push_back({number - 1, number, {0, 0, 0}, 0});
        Add(scene, number - 1);
      }
      Add(scene, number);
    }
    for (BentPolygon& polygon : polygons_) {
      const double length = std::sqrt(dot(polygon.normal, polygon.normal));
      for (double& component : polygon.normal) {
        component = length > 0 ? component / length : 0;
      }
    }
  }

  // The one that the triangle is a part of; null if the triangle is all of its polygon.
  const BentPolygon* Find(std::size_t t) const {
    const auto next = std::ranges::upper_bound(polygons_, t, {}, &BentPolygon::begin);
    return next != polygons_.begin() && t < std::prev(next)->end ? &*std::prev(next) : nullptr;
  }

 private:
  void Add(const Scene& scene, Index t) {
    const auto& [a, b, c] = scene.triangles[t];
    const Point normal = cross(difference(scene.points[b], scene.points[a]),
                               difference(scene.points[c], scene.points[a]));
    BentPolygon& polygon = polygons_.back();
    polygon.end = t + 1;
    polygon.width = std::max(polygon.width, planWidth(scene, t));
    for (std::size_t axis = 0; axis < 3; ++axis) {
      polygon.normal[axis] += normal[axis];
    }
  }

  std::vector<BentPolygon> polygons_;
};

// Decides what the uses of one edge make of it.
class EdgeClassifier {
 public:
  EdgeClassifier(const Scene& scene, const Tolerances& tolerances, double creaseDegrees,
                 std::span<const Index> lookOfPart)
      : scene_(scene),
        tolerances_(tolerances),
        clearWidth_(2 * std::max(kSliverWelds * tolerances.weld, tolerances.edgeOn)),
        creaseCosine_(mesh::creaseCosine(creaseDegrees)),
        lookOfPart_(lookOfPart),
        polygons_(scene) {}

  std::optional<EdgeKind> KindOf(Index low, Index high, std::span<const SideUse> uses) const {
    const Point& a = scene_.points[low];
    const Point& b = scene_.points[high];
    const double dx = b[0] - a[0];
    const double dy = b[1] - a[1];
    if (dx * dx + dy * dy <= tolerances_.plan * tolerances_.plan) {
      return std::nullopt;
    }
    const bool isEdge = std::ranges::any_of(uses, [&](const SideUse& use) {
      return (scene_.polygonEdges[use.side / 3] >> (use.side % 3) & 1) != 0;
    });
    if (isEdge && uses.size() == 1) {
      return EdgeKind::kBorder;
    }
    if (uses.size() > 1 && IsSilhouette(low, high, uses)) {
      return EdgeKind::kSilhouette;
    }
    if (isEdge && creaseCosine_ > -1 && IsCrease(low, high, uses)) {
      return EdgeKind::kCrease;
    }
    return IsBetweenLooks(uses) ? std::optional(EdgeKind::kBorder) : std::nullopt;
  }

 private:
  const Point& OppositePoint(const SideUse& use) const {
    return scene_.points[scene_.triangles[use.side / 3][(use.side + 2) % 3]];
  }

  enum class PlanSide { kNone, kLeft, kRight };

  bool IsSilhouette(Index low, Index high, std::span<const SideUse> uses) const {
    std::size_t left = 0;
    std::size_t right = 0;
    for (const SideUse& use : uses) {
      const PlanSide side = SideOf(low, high, use);
      left += side == PlanSide::kLeft ? 1 : 0;
      right += side == PlanSide::kRight ? 1 : 0;
    }
    if (uses.size() == 2) {
      return (left != 0) != (right != 0);
    }
    const bool isSomeEdgeOn = left + right < uses.size();
    return left != right || (isSomeEdgeOn && left != 0);
  }

  // On which side of the edge from `low` to `high` the face lies in plan; on none if it stands
  // edge-on.
  PlanSide SideOf(Index low, Index high, const SideUse& use) const {
    const Point& a = scene_.points[low];
    const Point& b = scene_.points[high];
    const Point& c = OppositePoint(use);
    const double side = (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]);
    const PlanSide ofPoint = side > 0 ? PlanSide::kLeft : PlanSide::kRight;
    // Most faces are so wide that their width need not be known.
    const auto squaredLength = [](const Point& p, const Point& q) {
      return (q[0] - p[0]) * (q[0] - p[0]) + (q[1] - p[1]) * (q[1] - p[1]);
    };
    const double longest =
        std::max({squaredLength(a, b), squaredLength(b, c), squaredLength(c, a)});
    if (side * side > clearWidth_ * clearWidth_ * longest) {
      return ofPoint;
    }
    const std::size_t t = use.side / 3;
    const double width = planWidth(scene_, t);
    if (width <= kSliverWelds * tolerances_.weld) {
      const BentPolygon* const polygon = polygons_.Find(t);
      if (polygon != nullptr && polygon->width > tolerances_.edgeOn && IsSliver(t)) {
        return IsForward(low, use) == (polygon->normal[2] > 0) ? PlanSide::kLeft : PlanSide::kRight;
      }
    }
    if (width <= tolerances_.edgeOn) {
      return PlanSide::kNone;
    }
    return ofPoint;
  }

  // Whether the triangle is narrow not only in plan, as one that stands upright is.
  bool IsSliver(std::size_t t) const {
    const auto& [a, b, c] = scene_.triangles[t];
    const Point u = difference(scene_.points[b], scene_.points[a]);
    const Point v = difference(scene_.points[c], scene_.points[a]);
    const Point w = difference(v, u);
    const Point area = cross(u, v);
    const double longest = std::sqrt(std::max({dot(u, u), dot(v, v), dot(w, w)}));
    return std::sqrt(dot(area, area)) <= kSliverWelds * tolerances_.weld * longest;
  }

  // Whether the face runs along the edge from its lower point on.
  bool IsForward(Index low, const SideUse& use) const {
    return scene_.triangles[use.side / 3][use.side % 3] == low;
  }

  // Compares the directions, square to the edge, in which the faces leave it. Where a surface goes
  // on flat, each is that of the first face or the opposite, and there are both.
  bool IsCrease(Index low, Index high, std::span<const SideUse> uses) const {
    const Point u = Away(low, high, uses[0]);
    const double clearlyFlat = creaseCosine_ * creaseCosine_ * kClearlyMore;
    bool isFlat = false;
    for (const SideUse& use : uses.subspan(1)) {
      const Point v = Away(low, high, use);
      const double product = dot(u, v);
      const double squares = dot(u, u) * dot(v, v);
      // Mostly it goes on nearly flat, which tells without roots.
      if (product < 0 && product * product > clearlyFlat * squares + kLeastSquare) {
        isFlat = true;
        continue;
      }
      const double limit = creaseCosine_ * std::sqrt(dot(u, u)) * std::sqrt(dot(v, v));
      const bool isOpposite = -product >= limit;
      if (!isOpposite && (uses.size() == 2 || product < limit)) {
        return true;
      }
      isFlat = isFlat || isOpposite;
    }
    return !isFlat;
  }

  Point Away(Index low, Index high, const SideUse& use) const {
    const Point& a = scene_.points[low];
    const Point e = difference(scene_.points[high], a);
    if (const BentPolygon* const polygon = polygons_.Find(use.side / 3)) {
      // On the left of the polygon's own direction along the edge.
      const Point left = cross(polygon->normal, e);
      return IsForward(low, use) ? left : Point{-left[0], -left[1], -left[2]};
    }
    const Point d = difference(OppositePoint(use), a);
    const double share = dot(e, d) / dot(e, e);
    return {d[0] - share * e[0], d[1] - share * e[1], d[2] - share * e[2]};
  }

  bool IsBetweenLooks(std::span<const SideUse> uses) const {
    const auto lookOf = [&](const SideUse& use) { return lookOfPart_[scene_.parts[use.side / 3]]; };
    return !lookOfPart_.empty() && std::ranges::any_of(uses, [&](const SideUse& use) {
      return lookOf(use) != lookOf(uses[0]);
    });
  }

  // Triangles of a polygon that are narrower than this many weld distances have the slope of its
  // roundings: repair puts corners of neighbors into it that lie off its plane by one.
  static constexpr double kSliverWelds = 4;
  // More than what two ways of computing one product differ by.
  static constexpr double kClearlyMore = 1 + 1e-9;
  // Smaller numbers have fewer digits.
  static constexpr double kLeastSquare = 1e-300;

  const Scene& scene_;
  Tolerances tolerances_;
  // A face wider than this in plan is neither a sliver nor edge-on.
  double clearWidth_;
  double creaseCosine_;
  std::span<const Index> lookOfPart_;
  BentPolygons polygons_;
};

// Appends the edges of the rows [rows.begin, rows.end) of the table, which it sorts.
void appendEdges(const Scene& scene, const EdgeClassifier& classifier, const Block& rows,
                 SideTable& table, std::vector<CandidateEdge>& edges) {
  const auto partOf = [&](const SideUse& use) { return scene.parts[use.side / 3]; };
  for (auto low = static_cast<Index>(rows.begin); low < rows.end; ++low) {
    const std::span<SideUse> row(table.uses.data() + table.starts[low],
                                 table.uses.data() + table.starts[low + 1]);
    std::ranges::sort(row, [&](const SideUse& a, const SideUse& b) {
      if (a.other != b.other) {
        return a.other < b.other;
      }
      return partOf(a) != partOf(b) ? partOf(a) < partOf(b) : a.side < b.side;
    });
    for (std::size_t begin = 0; begin < row.size();) {
      std::size_t end = begin + 1;
      while (end < row.size() && row[end].other == row[begin].other) {
        ++end;
      }
      const Index high = row[begin].other;
      const auto kind = classifier.KindOf(low, high, row.subspan(begin, end - begin));
      const bool isNoise = kind && std::ranges::binary_search(scene.noise, std::pair(low, high));
      if (kind && !(isNoise && kind == EdgeKind::kCrease)) {
        const bool isSilhouetteNoise = isNoise && kind == EdgeKind::kSilhouette;
        edges.push_back(
            {low, high, partOf(row[begin]), isSilhouetteNoise ? EdgeKind::kNoise : *kind});
      }
      begin = end;
    }
  }
}

}  // namespace

double planWidth(const Scene& scene, std::size_t t) {
  const auto& corners = scene.triangles[t];
  const Point& a = scene.points[corners[0]];
  const Point& b = scene.points[corners[1]];
  const Point& c = scene.points[corners[2]];
  const double area = (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]);
  const auto squaredLength = [](const Point& p, const Point& q) {
    return (q[0] - p[0]) * (q[0] - p[0]) + (q[1] - p[1]) * (q[1] - p[1]);
  };
  const double longest =
      std::sqrt(std::max({squaredLength(a, b), squaredLength(b, c), squaredLength(c, a)}));
  return longest > 0 ? std::abs(area) / longest : 0;
}

std::vector<CandidateEdge> findCandidateEdges(const Scene& scene, const Tolerances& tolerances,
                                              double creaseDegrees,
                                              std::span<const Index> lookOfPart,
                                              const Threading& threading) {
  const std::size_t threads = threading.For(scene.triangles.size());
  SideTable table = makeSideTable(scene, threads);
  const EdgeClassifier classifier(scene, tolerances, creaseDegrees, lookOfPart);
  const Blocks blocks(scene.points.size(), threads);
  std::vector<std::vector<CandidateEdge>> edgesOf(blocks.Count());
  blocks.Run([&](std::size_t number, const Block& rows) {
    appendEdges(scene, classifier, rows, table, edgesOf[number]);
  });
  std::vector<CandidateEdge> edges = joined(std::move(edgesOf));
  for (const Scene::Line& line : scene.lines) {
    const Point& a = scene.points[line.from];
    const Point& b = scene.points[line.to];
    if (std::hypot(b[0] - a[0], b[1] - a[1]) > tolerances.plan) {
      edges.push_back({line.from, line.to, line.part, EdgeKind::kLine});
    }
  }
  return edges;
}

}  // namespace dxf2d::projection
