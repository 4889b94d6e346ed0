#include "tests/geometry/outline/reference_outline.h"

#include <cmath>
#include <cstddef>
#include <limits>
#include <map>
#include <set>
#include <utility>

#include "ktscene/kt_g.h"

namespace dxf2d {

namespace {

using PointPair = std::pair<int, int>;
using EdgeSet = std::set<PointPair>;
using EdgeFaces = std::map<PointPair, std::set<int>>;

// x, then y, then z.
struct PointOrder {
  bool operator()(const KtPoint3& p, const KtPoint3& q) const {
    if (q.Get0() != p.Get0()) {
      return q.Get0() > p.Get0();
    }
    if (q.Get1() != p.Get1()) {
      return q.Get1() > p.Get1();
    }
    return q.Get2() > p.Get2();
  }
};

struct SegmentOrder {
  using Ends = std::pair<KtPoint3, KtPoint3>;
  bool operator()(const Ends& a, const Ends& b) const {
    const PointOrder before;
    if (before(a.first, b.first) || before(b.first, a.first)) {
      return before(a.first, b.first);
    }
    return before(a.second, b.second);
  }
};

bool allFinite(const KtPoint3& point) {
  return std::isfinite(point.Get0()) && std::isfinite(point.Get1()) && std::isfinite(point.Get2());
}

constexpr int kNothing = std::numeric_limits<int>::max();

void weld(std::vector<KtPoint3>& points, std::vector<int>& indices) {
  const int count = static_cast<int>(points.size());
  std::map<KtPoint3, int, PointOrder> firstOf;
  std::vector<int> first(points.size(), kNothing);
  for (int i = 0; i < count; ++i) {
    const KtPoint3& point = points.at(static_cast<std::size_t>(i));
    if (allFinite(point)) {
      first.at(static_cast<std::size_t>(i)) = firstOf.emplace(point, i).first->second;
    }
  }
  for (int& index : indices) {
    if (index >= 0) {
      index = index < count ? first.at(static_cast<std::size_t>(index)) : kNothing;
    }
  }
  std::vector<KtPoint3> kept;
  std::vector<int> dropped(points.size(), 0);
  int droppedSoFar = 0;
  for (int i = 0; i < count; ++i) {
    if (first.at(static_cast<std::size_t>(i)) == i) {
      kept.push_back(points.at(static_cast<std::size_t>(i)));
    } else {
      ++droppedSoFar;
    }
    dropped.at(static_cast<std::size_t>(i)) = droppedSoFar;
  }
  for (int& index : indices) {
    if (index >= 0 && index != kNothing) {
      index -= dropped.at(static_cast<std::size_t>(index));
    }
  }
  points = kept;
}

bool isPoint(int index, const std::vector<KtPoint3>& points) {
  return index >= 0 && index < static_cast<int>(points.size());
}

// Pushes what stands at `positions` of `list`, as far as the list goes, and -7.
void pushPolygon(std::vector<int>& polygons, const std::vector<int>& list,
                 const std::vector<std::size_t>& positions) {
  for (const std::size_t position : positions) {
    if (position < list.size()) {
      polygons.push_back(list.at(position));
    }
  }
  polygons.push_back(-7);
}

void pushPairs(EdgeSet& edges, const std::vector<int>& list, std::size_t s, std::size_t p,
               const std::vector<KtPoint3>& points) {
  for (std::size_t k = s; k + 1 < p; ++k) {
    if (isPoint(list.at(k), points) && isPoint(list.at(k + 1), points)) {
      edges.emplace(list.at(k), list.at(k + 1));
    }
  }
}

void expand(const std::vector<int>& list, const std::vector<KtPoint3>& points, bool isLineSet,
            std::vector<int>& polygons, EdgeSet& edges) {
  std::size_t s = 0;
  for (std::size_t p = 0; p < list.size();) {
    if (list.at(p) >= 0) {
      ++p;
      continue;
    }
    const std::size_t length = p - s;
    if (list.at(p) == -7 && length >= 3) {
      for (std::size_t k = s; k < p; ++k) {
        polygons.push_back(list.at(k));
      }
      polygons.push_back(-7);
    } else if ((list.at(p) == -6 && length >= 2) ||
               (list.at(p) == -1 && (length == 2 || isLineSet))) {
      pushPairs(edges, list, s, p, points);
    } else if (list.at(p) == -5 && length >= 3) {
      for (std::size_t k = s; k < p; k += 3) {
        pushPolygon(polygons, list, {k, k + 1, k + 2});
      }
    } else if (list.at(p) == -4 && length >= 3) {
      for (std::size_t k = 0; k <= length - 3; ++k) {
        pushPolygon(polygons, list, {s, s + k + 1, s + k + 2});
      }
    } else if (list.at(p) == -3 && length >= 3) {
      for (std::size_t k = 0; k <= length - 3; ++k) {
        pushPolygon(polygons, list, {s + k, s + k + (k & 1) + 1, s + k + ((k + 1) & 1) + 1});
      }
    }
    s = p + 1;
    p += 3;
  }
}

struct Polygons {
  std::vector<KtPoint3> normals;
  EdgeFaces faces;
};

Polygons neighbors(const std::vector<KtPoint3>& points, const std::vector<int>& polygons,
                   bool reverseOrientation) {
  Polygons result;
  std::size_t s = 0;
  for (std::size_t p = 0; p < polygons.size(); ++p) {
    if (polygons.at(p) != -7) {
      continue;
    }
    const int f = static_cast<int>(result.normals.size());
    KtPoint3 normal(0.0, 0.0, 0.0);
    KtG::ComputeNormal(points, polygons, static_cast<unsigned int>(s), !reverseOrientation, normal);
    result.normals.push_back(normal);
    for (std::size_t k = s; k < p; ++k) {
      const int a = polygons.at(k);
      const int b = k + 1 == p ? polygons.at(s) : polygons.at(k + 1);
      if (isPoint(a, points) && isPoint(b, points) && a != b) {
        result.faces[a < b ? PointPair(a, b) : PointPair(b, a)].insert(f);
      }
    }
    s = p + 1;
  }
  return result;
}

bool isDrawnBetween(const KtPoint3& u, const KtPoint3& v) {
  if (u.Get2() * v.Get2() > 0.0) {
    return false;
  }
  if (std::fabs(u.Get2() - v.Get2()) > 0.001) {
    return true;
  }
  return std::fabs(KtPoint3::GetAngle(u, v, false)) > 0.04;
}

void classify(const Polygons& polygons, bool isLineSet, EdgeSet& edges) {
  for (const auto& [edge, faces] : polygons.faces) {
    if (faces.size() == 1) {
      edges.insert(edge);
    } else if (faces.size() == 2 && !isLineSet) {
      const auto f = static_cast<std::size_t>(*faces.begin());
      const auto g = static_cast<std::size_t>(*faces.rbegin());
      if (isDrawnBetween(polygons.normals.at(f), polygons.normals.at(g))) {
        edges.insert(edge);
      }
    }
  }
}

void flatten(std::vector<KtPoint3>& points) {
  for (KtPoint3& point : points) {
    point.Set2(0.0);
  }
}

void removeCoincident(const std::vector<KtPoint3>& points, EdgeSet& edges) {
  std::set<SegmentOrder::Ends, SegmentOrder> segments;
  for (auto edge = edges.begin(); edge != edges.end();) {
    const KtPoint3& p = points.at(static_cast<std::size_t>(edge->first));
    const KtPoint3& q = points.at(static_cast<std::size_t>(edge->second));
    const bool isDegenerate = p == q;
    const SegmentOrder::Ends segment =
        PointOrder()(q, p) ? SegmentOrder::Ends(q, p) : SegmentOrder::Ends(p, q);
    if (isDegenerate || !segments.insert(segment).second) {
      edge = edges.erase(edge);
    } else {
      ++edge;
    }
  }
}

void chain(EdgeSet edges, std::vector<int>& indices) {
  indices.clear();
  while (!edges.empty()) {
    indices.push_back(edges.begin()->first);
    indices.push_back(edges.begin()->second);
    int end = edges.begin()->second;
    edges.erase(edges.begin());
    for (auto edge = edges.begin(); edge != edges.end();) {
      if (edge->first != end && edge->second != end) {
        ++edge;
        continue;
      }
      end = edge->first == end ? edge->second : edge->first;
      indices.push_back(end);
      edges.erase(edge);
      edge = edges.begin();
    }
    indices.push_back(-6);
  }
}

bool reduceToOutline(std::vector<KtPoint3>& points, std::vector<int>& indices, bool isLineSet,
                     bool reverseOrientation) {
  weld(points, indices);
  std::vector<int> polygons;
  EdgeSet edges;
  expand(indices, points, isLineSet, polygons, edges);
  classify(neighbors(points, polygons, reverseOrientation), isLineSet, edges);
  if (edges.empty()) {
    return false;
  }
  flatten(points);
  removeCoincident(points, edges);
  if (edges.empty()) {
    return false;
  }
  chain(edges, indices);
  return true;
}

}  // namespace

bool referenceOutline(std::vector<KtPoint3>& points, std::vector<int>& indices,
                      bool reverseOrientation, bool /*closedSurface*/) {
  return reduceToOutline(points, indices, false, reverseOrientation);
}

bool referenceLineOutline(std::vector<KtPoint3>& points, std::vector<int>& indices) {
  return reduceToOutline(points, indices, true, false);
}

}  // namespace dxf2d
