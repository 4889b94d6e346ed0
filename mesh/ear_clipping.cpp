#include "mesh/ear_clipping.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "mesh/vector.h"

namespace dxf2d::mesh {

namespace {

using FlatPoint = std::array<double, 2>;

// Above 0 when c is on the left of the line from a to b.
double turnOf(const FlatPoint& a, const FlatPoint& b, const FlatPoint& c) {
  return (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]);
}

bool isInside(const FlatPoint& point, const FlatPoint& a, const FlatPoint& b, const FlatPoint& c) {
  return turnOf(a, b, point) >= 0.0 && turnOf(b, c, point) >= 0.0 && turnOf(c, a, point) >= 0.0;
}

// The corners on the plane across the axis nearest to the normal, counter-clockwise.
std::vector<FlatPoint> flattened(const std::vector<Point>& points, std::span<const Index> corners) {
  const Vector normal = doubledArea(points, corners);
  std::size_t axis = 0;
  for (std::size_t i = 1; i < 3; ++i) {
    axis = std::fabs(normal[i]) > std::fabs(normal[axis]) ? i : axis;
  }
  const bool isBackwards = normal[axis] < 0.0;
  const std::size_t first = (axis + (isBackwards ? 2 : 1)) % 3;
  const std::size_t second = (axis + (isBackwards ? 1 : 2)) % 3;
  std::vector<FlatPoint> flat;
  if (normal[axis] != 0.0) {
    for (const Index corner : corners) {
      flat.push_back({points[corner][first], points[corner][second]});
    }
  }
  return flat;
}

bool isEar(const std::vector<FlatPoint>& flat, const std::vector<std::size_t>& left,
           std::size_t before, std::size_t ear, std::size_t after) {
  const FlatPoint& a = flat[before];
  const FlatPoint& b = flat[ear];
  const FlatPoint& c = flat[after];
  return turnOf(a, b, c) >= 0.0 && std::ranges::none_of(left, [&](std::size_t i) {
           const FlatPoint& other = flat[i];
           return other != a && other != b && other != c && isInside(other, a, b, c);
         });
}

}  // namespace

std::vector<std::array<Index, 3>> clipEars(const std::vector<Point>& points,
                                           std::span<const Index> corners) {
  const std::vector<FlatPoint> flat = flattened(points, corners);
  std::vector<std::array<Index, 3>> triangles;
  std::vector<std::size_t> left;
  for (std::size_t i = 0; i < flat.size(); ++i) {
    left.push_back(i);
  }
  // The place in `left` at which the search for the next ear goes on.
  std::size_t ear = 0;
  std::size_t failures = 0;
  while (left.size() > 3 && failures < left.size()) {
    const std::size_t count = left.size();
    const std::size_t before = left[(ear + count - 1) % count];
    const std::size_t after = left[(ear + 1) % count];
    if (!isEar(flat, left, before, left[ear], after)) {
      ++failures;
      ear = (ear + 1) % count;
      continue;
    }
    failures = 0;
    triangles.push_back({corners[before], corners[left[ear]], corners[after]});
    left.erase(left.begin() + static_cast<std::ptrdiff_t>(ear));
    ear %= left.size();
  }
  if (left.size() != 3) {
    return {};
  }
  triangles.push_back({corners[left[0]], corners[left[1]], corners[left[2]]});
  return triangles;
}

}  // namespace dxf2d::mesh
