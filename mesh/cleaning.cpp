#include "mesh/cleaning.h"

#include <algorithm>
#include <span>
#include <vector>

#include "mesh/polygon_filter.h"
#include "mesh/vector.h"
#include "platform/parallel.h"

namespace dxf2d::mesh {

namespace {

// Whether a corner repeats the one before it (the first one comes after the last).
bool hasRepeats(std::span<const Index> corners) {
  Index before = corners.empty() ? 0 : corners.back();
  for (const Index corner : corners) {
    if (corner == before) {
      return true;
    }
    before = corner;
  }
  return false;
}

// Moves the corners [begin, end) to `out`, without those that repeat the one before them (the first
// one comes after the last). Returns the end of what was moved.
Index withoutRepeats(std::vector<Index>& corners, Index begin, Index end, Index out) {
  const Index first = out;
  for (Index i = begin; i < end; ++i) {
    if (out == first || corners[out - 1] != corners[i]) {
      corners[out++] = corners[i];
    }
  }
  while (out > first + 1 && corners[out - 1] == corners[first]) {
    --out;
  }
  return out;
}

// Whether the corners lie on a line, as far as `distance` tells.
bool isWithoutArea(const Point& a, const Point& b, const Point& c, double distance) {
  const Vector u = difference(b, a);
  const Vector v = difference(c, a);
  const Vector across = cross(u, v);
  // A cross product is a length times a distance from the line.
  return dot(across, across) <= distance * distance * std::max(dot(u, u), dot(v, v));
}

bool isWithoutArea(const std::vector<Point>& points, std::span<const Index> corners,
                   double distance) {
  if (corners.size() < 3) {
    return true;
  }
  if (corners.size() == 3) {
    return isWithoutArea(points[corners[0]], points[corners[1]], points[corners[2]], distance);
  }
  const Point& first = points[corners[0]];
  Vector axis = {0.0, 0.0, 0.0};
  double square = -1.0;
  for (const Index corner : corners.subspan(1)) {
    const Vector offset = difference(points[corner], first);
    if (dot(offset, offset) > square) {
      square = dot(offset, offset);
      axis = offset;
    }
  }
  const double limit = distance * distance * square;
  return std::all_of(corners.begin() + 1, corners.end(), [&](Index corner) {
    const Vector across = cross(axis, difference(points[corner], first));
    return dot(across, across) <= limit;
  });
}

// The first polygon with a repeated corner, or without area; the number of polygons if there is
// none.
std::size_t firstUnclean(const PolygonMesh& mesh, double distance, std::size_t threads) {
  const Blocks blocks(mesh.PolygonCount(), threads);
  std::vector<std::size_t> firsts(blocks.Count());
  blocks.Run([&](std::size_t number, const Block& block) {
    std::size_t p = block.begin;
    while (p < block.end && !hasRepeats(mesh.Polygon(p)) &&
           !isWithoutArea(mesh.points, mesh.Polygon(p), distance)) {
      ++p;
    }
    firsts[number] = p < block.end ? p : mesh.PolygonCount();
  });
  return *std::ranges::min_element(firsts);
}

}  // namespace

std::size_t dropNotFinite(PolygonMesh& mesh) {
  const auto isUsable = [&](Index i) { return isUsablePoint(mesh.points[i]); };
  const std::size_t polygons =
      keepPolygons(mesh, [&](std::size_t /*p*/, std::span<const Index> corners) {
        return std::all_of(corners.begin(), corners.end(), isUsable);
      });
  return polygons + std::erase_if(mesh.segments, [&](const Segment& segment) {
           return !isUsable(segment.a) || !isUsable(segment.b);
         });
}

CleaningCounts dropDegenerate(PolygonMesh& mesh, double distance, std::size_t threads) {
  CleaningCounts counts;
  const std::size_t count = mesh.PolygonCount();
  std::size_t kept = firstUnclean(mesh, distance, threads);
  Index out = mesh.starts[kept];
  Index begin = out;
  for (std::size_t p = kept; p < count; ++p) {
    const Index end = mesh.starts[p + 1];
    const Index moved = withoutRepeats(mesh.corners, begin, end, out);
    if (isWithoutArea(mesh.points, std::span(mesh.corners).subspan(out, moved - out), distance)) {
      ++counts.degeneratePolygons;
    } else {
      counts.repeatedCorners += (end - begin) - (moved - out);
      mesh.parts[kept++] = mesh.parts[p];
      mesh.starts[kept] = moved;
      out = moved;
    }
    begin = end;
  }
  mesh.corners.resize(out);
  mesh.starts.resize(kept + 1);
  mesh.parts.resize(kept);
  counts.degenerateSegments =
      std::erase_if(mesh.segments, [](const Segment& segment) { return segment.a == segment.b; });
  return counts;
}

}  // namespace dxf2d::mesh
