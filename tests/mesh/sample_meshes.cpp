#include "tests/mesh/sample_meshes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <random>

namespace dxf2d::mesh {

namespace {

// Turns by `azimuth` about z, then by `tilt` about x, in degrees.
View turned(const std::string& name, double azimuth, double tilt) {
  const double a = azimuth * std::numbers::pi / 180.0;
  const double t = tilt * std::numbers::pi / 180.0;
  return {name,
          {{{std::cos(a), -std::sin(a), 0.0},
            {std::cos(t) * std::sin(a), std::cos(t) * std::cos(a), -std::sin(t)},
            {std::sin(t) * std::sin(a), std::sin(t) * std::cos(a), std::cos(t)}}}};
}

Point onCircle(int segment, int segments, double radius, double z) {
  const double angle = 2.0 * std::numbers::pi * (segment % segments) / segments;
  return {radius * std::cos(angle), radius * std::sin(angle), z};
}

Index at(int number) { return static_cast<Index>(number); }

}  // namespace

const std::vector<View>& allViews() {
  static const std::vector<View> views = {
      {"top", {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}},
      {"bottom", {{{1, 0, 0}, {0, -1, 0}, {0, 0, -1}}}},
      {"front", {{{1, 0, 0}, {0, 0, 1}, {0, -1, 0}}}},
      {"back", {{{-1, 0, 0}, {0, 0, 1}, {0, 1, 0}}}},
      {"left", {{{0, -1, 0}, {0, 0, 1}, {-1, 0, 0}}}},
      {"right", {{{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}}},
      turned("iso", 45.0, -54.735610317245346),
      turned("askew", 33.0, -61.0),
  };
  return views;
}

PolygonMesh seenFrom(PolygonMesh mesh, const View& view) {
  for (Point& point : mesh.points) {
    Point turnedPoint;
    for (std::size_t i = 0; i < 3; ++i) {
      const Point& row = view.rows[i];
      turnedPoint[i] = row[0] * point[0] + row[1] * point[1] + row[2] * point[2];
    }
    point = turnedPoint;
  }
  return mesh;
}

void addPolygon(PolygonMesh& mesh, const std::vector<Point>& corners, Index part) {
  std::vector<Index> numbers;
  for (const Point& corner : corners) {
    numbers.push_back(static_cast<Index>(mesh.points.size()));
    mesh.points.push_back(corner);
  }
  mesh.Add(numbers, part);
}

PolygonMesh makeBox(const Point& least, const Point& greatest) {
  PolygonMesh mesh;
  for (unsigned corner = 0; corner < 8; ++corner) {
    Point point;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      point[axis] = (corner >> axis & 1U) != 0 ? greatest[axis] : least[axis];
    }
    mesh.points.push_back(point);
  }
  const std::vector<std::vector<Index>> faces = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                                                 {3, 2, 6, 7}, {2, 0, 4, 6}, {1, 3, 7, 5}};
  for (const std::vector<Index>& face : faces) {
    mesh.Add(face, 0);
  }
  return mesh;
}

PolygonMesh makeBox() { return makeBox({0, 0, 0}, {2, 3, 4}); }

std::vector<Line> boxEdges(const Point& least, const Point& greatest) {
  const PolygonMesh box = makeBox(least, greatest);
  std::vector<Line> lines;
  for (std::size_t i = 0; i < 8; ++i) {
    for (std::size_t bit = 1; bit < 8; bit *= 2) {
      if ((i & bit) == 0) {
        lines.push_back({box.points[i], box.points[i | bit]});
      }
    }
  }
  return lines;
}

PolygonMesh withoutSharedPoints(const PolygonMesh& mesh, double noise) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> offset(-noise, noise);
  PolygonMesh apart;
  for (std::size_t p = 0; p < mesh.PolygonCount(); ++p) {
    std::vector<Point> corners;
    for (const Index corner : mesh.Polygon(p)) {
      Point point = mesh.points[corner];
      for (double& coordinate : point) {
        coordinate += offset(random);
      }
      corners.push_back(point);
    }
    addPolygon(apart, corners, mesh.parts[p]);
  }
  return apart;
}

void reversePolygon(PolygonMesh& mesh, std::size_t p) {
  std::reverse(mesh.corners.begin() + mesh.starts[p], mesh.corners.begin() + mesh.starts[p + 1]);
}

PolygonMesh makeCylinder(int segments) {
  PolygonMesh mesh;
  std::vector<Index> bottom;
  std::vector<Index> top;
  for (int i = 0; i < segments; ++i) {
    mesh.points.push_back(onCircle(i, segments, 1.0, 0.0));
    mesh.points.push_back(onCircle(i, segments, 1.0, 4.0));
    bottom.insert(bottom.begin(), at(2 * i));
    top.push_back(at(2 * i + 1));
    const Index next = at(2 * ((i + 1) % segments));
    mesh.Add(std::vector<Index>{at(2 * i), next, next + 1, at(2 * i + 1)}, 0);
  }
  mesh.Add(bottom, 0);
  mesh.Add(top, 0);
  return mesh;
}

PolygonMesh makeSphere(int segments, int rings) {
  PolygonMesh mesh;
  for (int ring = 0; ring <= rings; ++ring) {
    const double down = std::numbers::pi * ring / rings;
    const bool isPole = ring == 0 || ring == rings;
    for (int i = 0; i < segments; ++i) {
      mesh.points.push_back(onCircle(i, segments, isPole ? 0.0 : std::sin(down), std::cos(down)));
    }
  }
  for (int ring = 0; ring < rings; ++ring) {
    for (int i = 0; i < segments; ++i) {
      const int next = (i + 1) % segments;
      const int below = (ring + 1) * segments;
      mesh.Add(std::vector<Index>{at(ring * segments + i), at(below + i), at(below + next),
                                  at(ring * segments + next)},
               0);
    }
  }
  return mesh;
}

PolygonMesh makeMoebiusStrip(int segments, int first) {
  PolygonMesh mesh;
  for (int i = 0; i < segments; ++i) {
    const double around = 2.0 * std::numbers::pi * i / segments;
    for (const double side : {-0.5, 0.5}) {
      const double radius = 2.0 + side * std::cos(around / 2.0);
      mesh.points.push_back(
          {radius * std::cos(around), radius * std::sin(around), side * std::sin(around / 2.0)});
    }
  }
  for (int k = 0; k < segments; ++k) {
    const int i = (first + k) % segments;
    const int next = (i + 1) % segments;
    const int twist = next == 0 ? 1 : 0;
    std::vector<Index> quad = {at(2 * i), at(2 * next + twist), at(2 * next + 1 - twist),
                               at(2 * i + 1)};
    // Past the end of the list the strip goes on upside down.
    if (i < first) {
      std::reverse(quad.begin() + 1, quad.end());
    }
    mesh.Add(quad, 0);
  }
  return mesh;
}

PolygonMesh makeHippedRoof() {
  PolygonMesh mesh;
  mesh.points = {{0, 0, 0}, {10, 0, 0}, {10, 6, 0}, {0, 6, 0}, {3, 3, 3}, {7, 3, 3}};
  mesh.Add(std::vector<Index>{0, 1, 5, 4}, 0);
  mesh.Add(std::vector<Index>{1, 2, 5}, 0);
  mesh.Add(std::vector<Index>{2, 3, 4, 5}, 0);
  mesh.Add(std::vector<Index>{3, 0, 4}, 0);
  return mesh;
}

PolygonMesh makeStairs(int count) {
  PolygonMesh mesh;
  std::vector<Point> profile = {{0, 0, 0}};
  for (int step = 0; step < count; ++step) {
    profile.push_back({static_cast<double>(step), 0, 0.5 * (step + 1)});
    profile.push_back({static_cast<double>(step + 1), 0, 0.5 * (step + 1)});
  }
  profile.push_back({static_cast<double>(count), 0, 0});
  std::vector<Point> other = profile;
  for (Point& point : other) {
    point[1] = 3.0;
  }
  for (std::size_t i = 0; i < profile.size(); ++i) {
    const std::size_t next = (i + 1) % profile.size();
    addPolygon(mesh, {profile[i], profile[next], other[next], other[i]});
  }
  addPolygon(mesh, other);
  std::reverse(profile.begin(), profile.end());
  addPolygon(mesh, profile);
  return mesh;
}

}  // namespace dxf2d::mesh
