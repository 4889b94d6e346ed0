#include "mesh/t_junctions.h"

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

#include "mesh/point_tree.h"
#include "mesh/slot_table.h"
#include "mesh/vector.h"

namespace dxf2d::mesh {

namespace {

// A border edge, from its lesser point.
struct BorderEdge {
  Index a;
  Index b;
  Index polygon;
};

// A point to insert into a polygon, on the edge between two of its corners.
struct Insertion {
  Index polygon;
  Index a;
  Index b;
  double along;  // from a, in shares of the edge
  Index point;
};

std::vector<BorderEdge> borderEdges(const EdgeTable& edges) {
  std::vector<BorderEdge> borders;
  borders.reserve(edges.BorderCount());
  edges.ForEachEdge([&](Index a, Index b, std::span<const EdgeUse> uses) {
    if (uses.size() == 1) {
      borders.push_back({a, b, uses[0].Polygon()});
    }
  });
  return borders;
}

std::vector<Index> endPoints(const std::vector<BorderEdge>& borders, std::size_t pointCount) {
  std::vector<char> isEnd(pointCount, 0);
  for (const BorderEdge& edge : borders) {
    isEnd[edge.a] = 1;
    isEnd[edge.b] = 1;
  }
  std::vector<Index> ends;
  for (std::size_t i = 0; i < pointCount; ++i) {
    if (isEnd[i] != 0) {
      ends.push_back(static_cast<Index>(i));
    }
  }
  return ends;
}

bool isBefore(const Insertion& u, const Insertion& v) {
  if (u.polygon != v.polygon) {
    return u.polygon < v.polygon;
  }
  if (u.a != v.a || u.b != v.b) {
    return u.a != v.a ? u.a < v.a : u.b < v.b;
  }
  return u.along != v.along ? u.along < v.along : u.point < v.point;
}

// Appends the points among those of the tree that lie on a border edge.
void findOnEdge(const PolygonMesh& mesh, const PointTree& tree, const BorderEdge& edge,
                double distance, std::vector<Insertion>& insertions) {
  const Point& from = mesh.points[edge.a];
  const Vector along = difference(mesh.points[edge.b], from);
  const double square = dot(along, along);
  tree.VisitNear(from, mesh.points[edge.b], distance, [&](Index point) {
    const Vector offset = difference(mesh.points[point], from);
    const double share = dot(offset, along) / square;
    const Vector apart = cross(along, offset);
    if (point != edge.a && point != edge.b && share > 0.0 && share < 1.0 &&
        dot(apart, apart) <= distance * distance * square) {
      insertions.push_back({edge.polygon, edge.a, edge.b, share, point});
    }
  });
}

// The points that lie on border edges, in the order of isBefore. Those of a polygon's own corners
// are among them. `notSearched` receives the number of edges that were left out.
std::vector<Insertion> findInsertions(const PolygonMesh& mesh,
                                      const std::vector<BorderEdge>& borders, double distance,
                                      std::size_t& notSearched) {
  // Edges that all lie on one line have points in the middle by their square. No surface looks like
  // that, so what is beyond this many is left open.
  const std::size_t most = 16 * borders.size();
  const PointTree tree(mesh.points, endPoints(borders, mesh.points.size()));
  std::vector<Insertion> insertions;
  notSearched = borders.size();
  for (const BorderEdge& edge : borders) {
    if (insertions.size() >= most) {
      break;
    }
    findOnEdge(mesh, tree, edge, distance, insertions);
    --notSearched;
  }
  std::sort(insertions.begin(), insertions.end(), isBefore);
  return insertions;
}

// Leaves out points that their polygon has already, or gets at an earlier edge.
void dropOwnCorners(const PolygonMesh& mesh, std::vector<Insertion>& insertions) {
  std::vector<Index> polygonOf(mesh.points.size(), kNone);
  Index polygon = kNone;
  std::erase_if(insertions, [&](const Insertion& insertion) {
    if (insertion.polygon != polygon) {
      polygon = insertion.polygon;
      for (const Index corner : mesh.Polygon(polygon)) {
        polygonOf[corner] = polygon;
      }
    }
    return std::exchange(polygonOf[insertion.point], polygon) == polygon;
  });
}

// Appends the points to insert between the corners `from` and `to` of a polygon; `own` are all of
// the polygon's.
void appendBetween(std::span<const Insertion> own, Index from, Index to,
                   std::vector<Index>& corners) {
  const std::pair<Index, Index> edge = std::minmax(from, to);
  const auto begin = std::lower_bound(own.begin(), own.end(), edge,
                                      [](const Insertion& insertion, const auto& sought) {
                                        return std::pair(insertion.a, insertion.b) < sought;
                                      });
  const std::size_t first = corners.size();
  for (auto insertion = begin;
       insertion != own.end() && insertion->a == edge.first && insertion->b == edge.second;
       ++insertion) {
    corners.push_back(insertion->point);
  }
  if (from > to) {
    std::reverse(corners.begin() + static_cast<std::ptrdiff_t>(first), corners.end());
  }
}

}  // namespace

TJunctionCounts closeTJunctions(PolygonMesh& mesh, const EdgeTable& edges, double distance) {
  TJunctionCounts counts;
  if (edges.BorderCount() == 0) {
    return counts;
  }
  std::vector<Insertion> insertions =
      findInsertions(mesh, borderEdges(edges), distance, counts.edgesNotSearched);
  dropOwnCorners(mesh, insertions);
  if (insertions.empty()) {
    return counts;
  }
  counts.pointsInserted = insertions.size();
  PolygonMesh closed;
  closed.corners.reserve(mesh.corners.size() + insertions.size());
  auto next = insertions.begin();
  for (std::size_t p = 0; p < mesh.PolygonCount(); ++p) {
    const auto begin = next;
    while (next != insertions.end() && next->polygon == p) {
      ++next;
    }
    const std::span<const Index> corners = mesh.Polygon(p);
    for (std::size_t i = 0; i < corners.size(); ++i) {
      closed.corners.push_back(corners[i]);
      if (begin != next) {
        appendBetween({begin, next}, corners[i], corners[(i + 1) % corners.size()], closed.corners);
      }
    }
    closed.starts.push_back(static_cast<Index>(closed.corners.size()));
  }
  mesh.corners = std::move(closed.corners);
  mesh.starts = std::move(closed.starts);
  return counts;
}

}  // namespace dxf2d::mesh
