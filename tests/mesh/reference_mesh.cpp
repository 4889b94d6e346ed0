#include "tests/mesh/reference_mesh.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <set>
#include <vector>

#include "mesh/vector.h"

namespace dxf2d::mesh {

namespace {

std::vector<Index> cornersOf(const PolygonMesh& mesh, std::size_t p) {
  const std::span<const Index> corners = mesh.Polygon(p);
  return {corners.begin(), corners.end()};
}

// Two polygons that share an edge.
struct Neighbor {
  Index polygon;
  bool isAgreeing;
};

std::vector<std::vector<Neighbor>> neighborsOf(const PolygonMesh& mesh,
                                               const ReferenceEdges& edges) {
  std::vector<std::vector<Neighbor>> neighbors(mesh.PolygonCount());
  for (const auto& [edge, uses] : edges) {
    if (uses.size() == 2 && uses.begin()->second * uses.rbegin()->second != 0) {
      const auto& [p, direction] = *uses.begin();
      const auto& [q, otherDirection] = *uses.rbegin();
      neighbors[p].push_back({q, direction != otherDirection});
      neighbors[q].push_back({p, direction != otherDirection});
    }
  }
  return neighbors;
}

// A piece: its polygons, and whether each disagrees with the first.
struct Piece {
  std::map<Index, bool> polygons;
  bool isOrientable = true;
};

Piece pieceFrom(Index first, const std::vector<std::vector<Neighbor>>& neighbors) {
  Piece piece;
  piece.polygons[first] = false;
  std::deque<Index> waiting = {first};
  while (!waiting.empty()) {
    const Index p = waiting.front();
    waiting.pop_front();
    for (const Neighbor& neighbor : neighbors[p]) {
      const bool isReversed = piece.polygons[p] == neighbor.isAgreeing;
      const auto [known, isNew] = piece.polygons.try_emplace(neighbor.polygon, isReversed);
      if (isNew) {
        waiting.push_back(neighbor.polygon);
      } else if (known->second != isReversed) {
        piece.isOrientable = false;
      }
    }
  }
  return piece;
}

bool isClosed(const Piece& piece, const ReferenceEdges& edges) {
  return std::all_of(edges.begin(), edges.end(), [&](const auto& entry) {
    const auto isOfPiece = [&](const auto& use) { return piece.polygons.count(use.first) != 0; };
    return std::count_if(entry.second.begin(), entry.second.end(), isOfPiece) % 2 == 0;
  });
}

bool isFirstToReverse(const PolygonMesh& mesh, const Piece& piece, bool closed) {
  const Point& apex = mesh.points[mesh.Polygon(piece.polygons.begin()->first)[0]];
  double volume = 0.0;
  double scale = 0.0;
  double area = 0.0;
  double reversedArea = 0.0;
  for (const auto& [p, isReversed] : piece.polygons) {
    const Vector normal = doubledArea(mesh, p);
    const double term = dot(difference(mesh.points[mesh.Polygon(p)[0]], apex), normal);
    volume += isReversed ? -term : term;
    scale += std::fabs(term);
    (isReversed ? reversedArea : area) += length(normal);
  }
  if (closed && std::fabs(volume) > 1e-9 * scale) {
    return volume < 0.0;
  }
  return reversedArea > area * (1.0 + 1e-9);
}

// By border edge: the points to insert into its polygon, from its lesser point on.
using Insertions = std::map<std::pair<Index, Index>, std::vector<Index>>;

std::set<Index> borderPoints(const ReferenceEdges& edges) {
  std::set<Index> ends;
  for (const auto& [edge, uses] : edges) {
    if (uses.size() == 1) {
      ends.insert({edge.first, edge.second});
    }
  }
  return ends;
}

// Those of `points` that lie on the edge, by their place on it.
std::set<std::pair<double, Index>> pointsOnEdge(const PolygonMesh& mesh,
                                                const std::pair<Index, Index>& edge,
                                                const std::set<Index>& points, double distance) {
  const Point& from = mesh.points[edge.first];
  const Vector along = difference(mesh.points[edge.second], from);
  std::set<std::pair<double, Index>> found;
  for (const Index point : points) {
    const Vector offset = difference(mesh.points[point], from);
    const double share = dot(offset, along) / dot(along, along);
    const Vector apart = cross(along, offset);
    if (share > 0.0 && share < 1.0 &&
        dot(apart, apart) <= distance * distance * dot(along, along)) {
      found.emplace(share, point);
    }
  }
  return found;
}

Insertions findInsertions(const PolygonMesh& mesh, const ReferenceEdges& edges, double distance) {
  const std::set<Index> ends = borderPoints(edges);
  std::vector<std::set<Index>> own(mesh.PolygonCount());
  for (std::size_t p = 0; p < mesh.PolygonCount(); ++p) {
    const std::vector<Index> corners = cornersOf(mesh, p);
    own[p].insert(corners.begin(), corners.end());
  }
  Insertions insertions;
  for (const auto& [edge, uses] : edges) {
    if (uses.size() != 1) {
      continue;
    }
    for (const auto& [share, point] : pointsOnEdge(mesh, edge, ends, distance)) {
      if (own[uses.begin()->first].insert(point).second) {
        insertions[edge].push_back(point);
      }
    }
  }
  return insertions;
}

// The corners of polygon p with what is inserted between them.
std::vector<Index> closedPolygon(const PolygonMesh& mesh, Index p, const ReferenceEdges& edges,
                                 const Insertions& insertions) {
  std::vector<Index> corners;
  const std::vector<Index> before = cornersOf(mesh, p);
  for (std::size_t i = 0; i < before.size(); ++i) {
    const Index to = before[(i + 1) % before.size()];
    corners.push_back(before[i]);
    std::vector<Index> more;
    const auto found = insertions.find(std::minmax(before[i], to));
    if (found != insertions.end() && edges.at(found->first).count(p) != 0) {
      more = found->second;
    }
    if (before[i] > to) {
      std::reverse(more.begin(), more.end());
    }
    corners.insert(corners.end(), more.begin(), more.end());
  }
  return corners;
}

}  // namespace

ReferenceEdges referenceEdges(const PolygonMesh& mesh) {
  ReferenceEdges edges;
  for (Index p = 0; p < mesh.PolygonCount(); ++p) {
    const std::vector<Index> corners = cornersOf(mesh, p);
    for (std::size_t i = 0; i < corners.size(); ++i) {
      const Index from = corners[i];
      const Index to = corners[(i + 1) % corners.size()];
      if (from != to) {
        const int direction = from < to ? 1 : -1;
        const auto [use, isNew] = edges[std::minmax(from, to)].try_emplace(p, direction);
        if (!isNew && use->second != direction) {
          use->second = 0;
        }
      }
    }
  }
  return edges;
}

std::size_t referenceWeld(PolygonMesh& mesh, double distance) {
  std::set<Index> used(mesh.corners.begin(), mesh.corners.end());
  for (const Segment& segment : mesh.segments) {
    used.insert({segment.a, segment.b});
  }
  std::vector<Point> kept;
  std::map<Index, Index> newIndex;
  for (const Index i : used) {
    const auto found = std::find_if(kept.begin(), kept.end(), [&](const Point& point) {
      const Vector apart = difference(point, mesh.points[i]);
      return dot(apart, apart) <= distance * distance;
    });
    newIndex[i] = static_cast<Index>(found - kept.begin());
    if (found == kept.end()) {
      kept.push_back(mesh.points[i]);
    }
  }
  for (Index& corner : mesh.corners) {
    corner = newIndex[corner];
  }
  for (Segment& segment : mesh.segments) {
    segment = {newIndex[segment.a], newIndex[segment.b], segment.part};
  }
  mesh.points = kept;
  return used.size() - kept.size();
}

std::size_t referenceDropDuplicates(PolygonMesh& mesh) {
  PolygonMesh kept;
  std::set<std::multiset<Index>> seen;
  for (std::size_t p = 0; p < mesh.PolygonCount(); ++p) {
    const std::vector<Index> corners = cornersOf(mesh, p);
    if (seen.emplace(corners.begin(), corners.end()).second) {
      kept.Add(corners, mesh.parts[p]);
    }
  }
  const std::size_t dropped = mesh.PolygonCount() - kept.PolygonCount();
  kept.points = mesh.points;
  kept.segments = mesh.segments;
  mesh = kept;
  return dropped;
}

std::size_t referenceCloseTJunctions(PolygonMesh& mesh, double distance) {
  const ReferenceEdges edges = referenceEdges(mesh);
  const Insertions insertions = findInsertions(mesh, edges, distance);
  PolygonMesh closed;
  for (Index p = 0; p < mesh.PolygonCount(); ++p) {
    closed.Add(closedPolygon(mesh, p, edges, insertions), mesh.parts[p]);
  }
  closed.points = mesh.points;
  closed.segments = mesh.segments;
  std::size_t count = 0;
  for (const auto& [edge, points] : insertions) {
    count += points.size();
  }
  mesh = closed;
  return count;
}

void referenceOrient(PolygonMesh& mesh) {
  const ReferenceEdges edges = referenceEdges(mesh);
  const std::vector<std::vector<Neighbor>> neighbors = neighborsOf(mesh, edges);
  PolygonMesh oriented = mesh;
  std::set<Index> done;
  for (Index p = 0; p < mesh.PolygonCount(); ++p) {
    if (done.count(p) != 0) {
      continue;
    }
    const Piece piece = pieceFrom(p, neighbors);
    const bool isFirst =
        piece.isOrientable && isFirstToReverse(mesh, piece, isClosed(piece, edges));
    for (const auto& [polygon, isReversed] : piece.polygons) {
      done.insert(polygon);
      if (piece.isOrientable && isReversed != isFirst) {
        std::reverse(oriented.corners.begin() + mesh.starts[polygon] + 1,
                     oriented.corners.begin() + mesh.starts[polygon + 1]);
      }
    }
  }
  mesh = oriented;
}

}  // namespace dxf2d::mesh
