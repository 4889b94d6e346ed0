#include "mesh/facet_noise.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <iterator>
#include <numbers>
#include <numeric>
#include <span>
#include <utility>

#include "mesh/edge_kinds.h"
#include "mesh/slot_table.h"
#include "mesh/vector.h"
#include "platform/large_memory.h"
#include "platform/parallel.h"

namespace dxf2d::mesh {

namespace {

double diagonalOf(const std::vector<Point>& points) {
  if (points.empty()) {
    return 0.0;
  }
  Point least = points[0];
  Point greatest = points[0];
  for (const Point& point : points) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      least[axis] = std::min(least[axis], point[axis]);
      greatest[axis] = std::max(greatest[axis], point[axis]);
    }
  }
  return length(difference(greatest, least));
}

// The one of `points` that is farthest from `origin`.
Index farthestFrom(const Point& origin, const std::vector<Point>& all,
                   std::span<const Index> points) {
  Index farthest = points[0];
  double most = -1.0;
  for (const Index i : points) {
    const double distance = length(difference(all[i], origin));
    if (distance > most) {
      most = distance;
      farthest = i;
    }
  }
  return farthest;
}

// Points that are joined, each group by its least point.
class PointGroups {
 public:
  explicit PointGroups(std::size_t count) : before_(count) {
    std::iota(before_.begin(), before_.end(), Index{0});
  }

  Index Of(Index point) {
    while (before_[point] != point) {
      before_[point] = before_[before_[point]];
      point = before_[point];
    }
    return point;
  }
  void Join(Index a, Index b) {
    const auto [least, greatest] = std::minmax({Of(a), Of(b)});
    before_[greatest] = least;
  }

 private:
  std::vector<Index> before_;
};

template <class Element>
void append(std::vector<Element> some, std::vector<Element>& all) {
  if (all.empty()) {
    all = std::move(some);
  } else {
    all.insert(all.end(), some.begin(), some.end());
  }
}

}  // namespace

FacetNoise::FacetNoise(const PolygonMesh& mesh, const EdgeClassifier& classifier,
                       double creaseDegrees, std::size_t threads)
    : mesh_(mesh),
      classifier_(classifier),
      threads_(threads),
      sharpCosine_(std::cos(std::min(kSharp * creaseDegrees, 180.0) * std::numbers::pi / 180.0)),
      diagonal_(diagonalOf(mesh.points)),
      isAnchor_(mesh.points.size(), 0) {}

void FacetNoise::AddOther(Index a, Index b) {
  for (const Index point : {a, b}) {
    std::atomic_ref(isAnchor_[point]).store(1, std::memory_order_relaxed);
  }
}

void FacetNoise::AddPair(Index a, Index b, std::span<const EdgeUse> uses, Index edge,
                         Findings& findings) {
  const auto [u, v] = classifier_.NormalsOf(uses[0], uses[1]);
  const bool isCrease = classifier_.IsCrease(u, v);
  if (seenSide(u) * seenSide(v) < 0) {
    const Vector along = difference(mesh_.points[b], mesh_.points[a]);
    // Turning on around the direction in which the first polygon runs, a solid ends here.
    const double turn = dot(cross(u, v), along);
    const bool isConcave = uses[0].IsForward() ? turn < 0.0 : turn > 0.0;
    appendLarge(
        findings.silhouettes_,
        Silhouette{{edge, isCrease}, a, b, {uses[0].Polygon(), uses[1].Polygon()}, isConcave});
  }
  if (!isCrease) {
    return;
  }
  // What hangs together with something that is of no stroke is of none either: this saves listing
  // it, and whether another thread has been there yet makes no difference to what comes out.
  const auto isAnchor = [&](Index point) {
    return std::atomic_ref(isAnchor_[point]).load(std::memory_order_relaxed) != 0;
  };
  if (!isAnchor(a) && !isAnchor(b) &&
      (dot(u, v) > sharpCosine_ || IsNeedle(uses[0].Polygon()) || IsNeedle(uses[1].Polygon()))) {
    appendLarge(findings.faint_, Crease{edge, a, b});
  } else {
    AddOther(a, b);
  }
}

void FacetNoise::Add(Findings findings, Index first) {
  const auto renumber = [&](Index& edge) { edge += edge != kNone ? first : 0; };
  if (counts_.empty() && !findings.silhouettes_.empty()) {
    counts_.resize(mesh_.PolygonCount());
  }
  for (Silhouette& silhouette : findings.silhouettes_) {
    renumber(silhouette.fold.edge);
    for (const Index p : silhouette.polygons) {
      ++counts_[p].all;
      counts_[p].concave += silhouette.isConcave ? 1U : 0U;
    }
  }
  for (Crease& crease : findings.faint_) {
    renumber(crease.edge);
  }
  append(std::move(findings.silhouettes_), silhouettes_);
  append(std::move(findings.faint_), faint_);
}

bool FacetNoise::IsNeedle(Index p) const {
  const std::span<const Index> corners = mesh_.Polygon(p);
  double squaredLongest = 0.0;
  for (std::size_t i = 0; i < corners.size(); ++i) {
    const Vector side = difference(mesh_.points[corners[i]],
                                   mesh_.points[corners[i + 1 < corners.size() ? i + 1 : 0]]);
    squaredLongest = std::max(squaredLongest, dot(side, side));
  }
  const double area = classifier_.DoubledArea(p);
  return area * kLeastAspect < squaredLongest &&
         area < kThinShare * diagonal_ * std::sqrt(squaredLongest);
}

bool FacetNoise::IsFold(Index p) const {
  const auto [all, concave] = counts_[p];
  return all == mesh_.Polygon(p).size() && concave != 0 && concave != all && IsNeedle(p);
}

std::vector<FacetNoise::Fold> FacetNoise::Folds() const {
  std::vector<Fold> folds;
  std::vector<char> isOutline(silhouettes_.empty() ? 0 : mesh_.points.size(), 0);
  PointGroups groups(isOutline.size());
  std::vector<const Silhouette*> around;
  for (const Silhouette& silhouette : silhouettes_) {
    if (IsFold(silhouette.polygons[0]) || IsFold(silhouette.polygons[1])) {
      groups.Join(silhouette.a, silhouette.b);
      around.push_back(&silhouette);
    } else {
      isOutline[silhouette.a] = 1;
      isOutline[silhouette.b] = 1;
    }
  }
  // Those of a group that an outline leads to go on in it.
  std::vector<char> isKept(isOutline.size(), 0);
  for (const Silhouette* silhouette : around) {
    const bool isMet = isOutline[silhouette->a] != 0 || isOutline[silhouette->b] != 0;
    isKept[groups.Of(silhouette->a)] |= static_cast<char>(isMet);
  }
  for (const Silhouette* silhouette : around) {
    if (silhouette->fold.edge != kNone && isKept[groups.Of(silhouette->a)] == 0) {
      folds.push_back(silhouette->fold);
    }
  }
  return folds;
}

bool FacetNoise::IsStroke(std::span<const Index> points) const {
  const auto isAnchor = [&](Index i) { return isAnchor_[i] != 0; };
  if (std::ranges::any_of(points, isAnchor)) {
    return false;
  }
  const std::vector<Point>& all = mesh_.points;
  const Point& from = all[farthestFrom(all[points[0]], all, points)];
  const Vector along = difference(all[farthestFrom(from, all, points)], from);
  const double size = length(along);
  const auto isOff = [&](Index i) {
    return length(cross(difference(all[i], from), along)) > kNarrow * size * size;
  };
  return size < kShortShare * diagonal_ && !std::ranges::any_of(points, isOff);
}

std::vector<Index> FacetNoise::Strokes() const {
  if (faint_.empty()) {
    return {};
  }
  PointGroups groups(mesh_.points.size());
  for (const Crease& crease : faint_) {
    groups.Join(crease.a, crease.b);
  }
  // By group, the creases one after the other, then its points.
  std::vector<Index> starts(mesh_.points.size() + 1, 0);
  for (const Crease& crease : faint_) {
    ++starts[groups.Of(crease.a) + 1];
  }
  std::partial_sum(starts.begin(), starts.end(), starts.begin());
  std::vector<Index> ends(2 * faint_.size());
  std::vector<Index> edges(faint_.size());
  std::vector<Index> next(starts.begin(), starts.end() - 1);
  for (const Crease& crease : faint_) {
    const std::size_t place = next[groups.Of(crease.a)]++;
    edges[place] = crease.edge;
    ends[2 * place] = crease.a;
    ends[2 * place + 1] = crease.b;
  }
  return collectInParallel<Index>(mesh_.points.size(), threads_, [&](std::size_t i, auto& strokes) {
    const std::size_t count = starts[i + 1] - starts[i];
    if (count != 0 && IsStroke(std::span(ends).subspan(2 * std::size_t{starts[i]}, 2 * count))) {
      std::copy_if(edges.begin() + starts[i], edges.begin() + starts[i + 1],
                   std::back_inserter(strokes), [](Index edge) { return edge != kNone; });
    }
  });
}

}  // namespace dxf2d::mesh
