#include "mesh/weld.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <span>

#include "mesh/equal_points.h"
#include "mesh/vector.h"
#include "platform/large_memory.h"
#include "platform/parallel.h"
#include "platform/prefetch.h"

namespace dxf2d::mesh {

namespace {

using Numbers = std::vector<Index, LargeAllocator<Index>>;

void renumber(PolygonMesh& mesh, const Numbers& newIndex) {
  for (Index& corner : mesh.corners) {
    corner = newIndex[corner];
  }
  for (Segment& segment : mesh.segments) {
    segment.a = newIndex[segment.a];
    segment.b = newIndex[segment.b];
  }
}

// Keeps the first of the used points that are equal, moving what is kept to the front of
// mesh.points, and writes where each went to `newIndex`. Returns how many are kept.
Index joinEqual(PolygonMesh& mesh, EqualPoints& equal, const UsedPoints& used, Numbers& newIndex) {
  struct Candidate {
    std::uint32_t hash;
  };
  Index kept = 0;
  forEachPrefetched(
      equal, mesh.points.size(),
      [&](std::size_t i) { return Candidate{EqualPoints::Hash(mesh.points[i])}; },
      [&](std::size_t i, const Candidate& candidate) {
        if (used.isUsed[i] != 0) {
          const Point point = mesh.points[i];
          const Index found = equal.Find(candidate.hash, point, mesh.points.data());
          newIndex[i] = found == kNone ? kept : found;
          if (found == kNone) {
            mesh.points[kept] = point;
            equal.Keep(candidate.hash, kept);
            ++kept;
          }
        }
        return true;
      });
  return kept;
}

// The same, and renumbers the mesh. Returns how many were left out.
std::size_t weldEqual(PolygonMesh& mesh, const UsedPoints& used) {
  // A closed surface of triangles has a point for six corners.
  EqualPoints equal(std::min(used.count, mesh.corners.size() / 6 + mesh.segments.size()));
  Numbers newIndex(mesh.points.size(), kNone);
  const Index kept = joinEqual(mesh, equal, used, newIndex);
  if (kept != mesh.points.size()) {
    mesh.points.resize(kept);
    renumber(mesh, newIndex);
  }
  return used.count - kept;
}

// Keeps the points i with joined[i] == i, and turns the other numbers in `joined` into the new ones
// of those that stay for them.
void keepJoined(std::vector<Point>& points, Numbers& joined) {
  Index kept = 0;
  for (Index i = 0; i < points.size(); ++i) {
    if (joined[i] == i) {
      points[kept] = points[i];
      joined[i] = kept++;
    } else {
      // An earlier one.
      joined[i] = joined[joined[i]];
    }
  }
  points.resize(kept);
}

// Edges across the extent of an object, at most: a plan cannot show finer detail.
constexpr double kMostEdges = 1e4;

// Calls visit(a, b) for an edge of each of a few thousand polygons, a different one of each, and
// for as many segments, evenly chosen.
template <class Visit>
void forSomeEdges(const PolygonMesh& mesh, Visit visit) {
  constexpr std::size_t kMost = 2048;
  const std::size_t polygonStep = mesh.PolygonCount() / kMost + 1;
  for (std::size_t p = 0; p < mesh.PolygonCount(); p += polygonStep) {
    const std::span<const Index> corners = mesh.Polygon(p);
    if (!corners.empty()) {
      const std::size_t i = p / polygonStep % corners.size();
      visit(corners[i], corners[(i + 1) % corners.size()]);
    }
  }
  const std::size_t segmentStep = mesh.segments.size() / kMost + 1;
  for (std::size_t i = 0; i < mesh.segments.size(); i += segmentStep) {
    visit(mesh.segments[i].a, mesh.segments[i].b);
  }
}

// The median of the lengths of some edges, without those of no length; infinite if there is none.
double medianEdgeLength(const PolygonMesh& mesh) {
  std::vector<double> lengths;
  forSomeEdges(mesh, [&](Index a, Index b) {
    const double size = length(difference(mesh.points[a], mesh.points[b]));
    if (size > 0.0) {
      lengths.push_back(size);
    }
  });
  if (lengths.empty()) {
    return std::numeric_limits<double>::infinity();
  }
  const auto middle = lengths.begin() + static_cast<std::ptrdiff_t>(lengths.size() / 2);
  std::nth_element(lengths.begin(), middle, lengths.end());
  return *middle;
}

double usableDistance(double size, double share) {
  // Doubles tell no shorter distances apart,
  constexpr double kLeastShare = 1e-15;
  // nor the squares of these.
  constexpr double kLeastDistance = 1e-150;
  const double distance = size * share;
  return share >= kLeastShare && distance >= kLeastDistance ? distance : 0.0;
}

void markUsed(const PolygonMesh& mesh, std::vector<char>& isUsed) {
  for (const Index corner : mesh.corners) {
    isUsed[corner] = 1;
  }
  for (const Segment& segment : mesh.segments) {
    isUsed[segment.a] = 1;
    isUsed[segment.b] = 1;
  }
}

// What is known of some of the used points.
struct UsedExtent {
  static constexpr double kInfinity = std::numeric_limits<double>::infinity();

  Box box = {{kInfinity, kInfinity, kInfinity}, {-kInfinity, -kInfinity, -kInfinity}};
  std::size_t count = 0;
  bool areUsable = true;

  void Add(const Point& point) {
    ++count;
    areUsable = areUsable && isUsablePoint(point);
    Widen(point, point);
  }
  void Add(const UsedExtent& other) {
    count += other.count;
    areUsable = areUsable && other.areUsable;
    Widen(other.box.least, other.box.greatest);
  }

 private:
  void Widen(const Point& least, const Point& greatest) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      box.least[axis] = std::min(box.least[axis], least[axis]);
      box.greatest[axis] = std::max(box.greatest[axis], greatest[axis]);
    }
  }
};

}  // namespace

UsedPoints::UsedPoints(const PolygonMesh& mesh, bool areKnownDistinct, std::size_t threads)
    : isUsed(areKnownDistinct ? 0 : mesh.points.size(), 0), areDistinct(areKnownDistinct) {
  if (!areDistinct) {
    markUsed(mesh, isUsed);
  }
  const Blocks blocks(mesh.points.size(), threads);
  std::vector<UsedExtent> extents(blocks.Count());
  blocks.Run([&](std::size_t number, const Block& block) {
    UsedExtent own;
    for (std::size_t i = block.begin; i < block.end; ++i) {
      if (areDistinct || isUsed[i] != 0) {
        own.Add(mesh.points[i]);
      }
    }
    extents[number] = own;
  });
  UsedExtent all;
  for (const UsedExtent& some : extents) {
    all.Add(some);
  }
  count = all.count;
  areUsable = all.areUsable;
  if (count != 0 && areUsable) {
    box = all.box;
    diagonal = length(difference(box.greatest, box.least));
    extent = std::min(diagonal, kMostEdges * medianEdgeLength(mesh));
  }
}

double UsedPoints::WeldDistance(double share) const { return usableDistance(diagonal, share); }

double UsedPoints::DefaultWeldDistance() const { return usableDistance(extent, kDefaultWeldShare); }

std::size_t weld(PolygonMesh& mesh, const UsedPoints& used, double distance, std::size_t threads) {
  // Nearly all points that coincide are equal, and what equals a kept point has the same kept ones
  // near it: so those are joined first, and the few that are near, but not equal, after them.
  const std::size_t equal = used.areDistinct ? 0 : weldEqual(mesh, used);
  Numbers joined = joinNear(mesh.points, used.box, distance, threads);
  if (joined.empty()) {
    return equal;
  }
  const std::size_t before = mesh.points.size();
  keepJoined(mesh.points, joined);
  renumber(mesh, joined);
  return equal + before - mesh.points.size();
}

void dropUnusedPoints(PolygonMesh& mesh) {
  const UsedPoints used(mesh);
  if (used.count == mesh.points.size()) {
    return;
  }
  Numbers newIndex(mesh.points.size(), kNone);
  Index kept = 0;
  for (std::size_t i = 0; i < mesh.points.size(); ++i) {
    if (used.isUsed[i] != 0) {
      mesh.points[kept] = mesh.points[i];
      newIndex[i] = kept++;
    }
  }
  mesh.points.resize(kept);
  renumber(mesh, newIndex);
}

}  // namespace dxf2d::mesh
