#include "tests/projection/sample_scenes.h"

#include <cmath>
#include <numbers>

namespace dxf2d::projection {
namespace {

constexpr double kTurn = 2 * std::numbers::pi;

// Uniform in [0, 1), the same with every standard library.
double share(std::mt19937& random) { return static_cast<double>(random()) / 4294967296.0; }

Point turn(const Point& p, double aboutZ, double aboutX) {
  const Point q = {std::cos(aboutZ) * p[0] - std::sin(aboutZ) * p[1],
                   std::sin(aboutZ) * p[0] + std::cos(aboutZ) * p[1], p[2]};
  return {q[0], std::cos(aboutX) * q[1] - std::sin(aboutX) * q[2],
          std::sin(aboutX) * q[1] + std::cos(aboutX) * q[2]};
}

Point sum(const Point& p, const Point& q) { return {p[0] + q[0], p[1] + q[1], p[2] + q[2]}; }

void addTriangle(Scene& scene, Index a, Index b, Index c, Index part) {
  scene.triangles.push_back({a, b, c});
  scene.parts.push_back(part);
  scene.polygonEdges.push_back(kAllPolygonEdges);
}

constexpr int kBoxQuads[6][4] = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                                 {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};

template <class Place>
void addBoxTriangles(Scene& scene, const Point& half, Index part, Place place) {
  const auto first = static_cast<Index>(scene.points.size());
  for (int corner = 0; corner < 8; ++corner) {
    scene.points.push_back(
        place(Point{(corner & 1) != 0 ? half[0] : -half[0], (corner & 2) != 0 ? half[1] : -half[1],
                    (corner & 4) != 0 ? half[2] : -half[2]}));
  }
  for (const auto& quad : kBoxQuads) {
    const auto at = [&](int i) { return first + static_cast<Index>(quad[i]); };
    scene.triangles.push_back({at(0), at(1), at(2)});
    scene.polygonEdges.push_back(3);
    scene.triangles.push_back({at(0), at(2), at(3)});
    scene.polygonEdges.push_back(6);
    scene.parts.insert(scene.parts.end(), 2, part);
  }
}

void addBoxes(Scene& scene, std::size_t count, bool isPiled, std::mt19937& random) {
  const double side = std::sqrt(static_cast<double>(count));
  for (std::size_t i = 0; i < count; ++i) {
    Point center = {share(random) * side, share(random) * side, share(random) * side * 0.2};
    if (isPiled) {
      center[2] = 2.5 * static_cast<double>(i) / static_cast<double>(count) * side;
    }
    const Point half = {.8 * (.3 + share(random)), .8 * (.3 + share(random)),
                        isPiled ? side / static_cast<double>(count) : .8 * (.3 + share(random))};
    const double a = share(random) * kTurn;
    const double b = isPiled ? 0 : share(random) * kTurn;
    addBoxTriangles(scene, half, static_cast<Index>(i), [&](const Point& p) {
      const Point q = turn(p, a, b);
      return sum(center, isPiled ? q : turn(q, b * 1.7, a * 2.3));
    });
  }
}

void addSpheres(Scene& scene, std::size_t count, std::mt19937& random) {
  const double side = std::sqrt(static_cast<double>(count));
  constexpr int kAround = 50;
  constexpr int kDown = 25;
  for (std::size_t i = 0; i < count; ++i) {
    const Point center = {share(random) * side, share(random) * side, share(random) * side * .3};
    const double radius = .5 + share(random);
    const double a = share(random) * kTurn;
    const double b = share(random) * kTurn;
    const auto first = static_cast<Index>(scene.points.size());
    for (int down = 0; down <= kDown; ++down) {
      for (int around = 0; around < kAround; ++around) {
        const double polar = std::numbers::pi * down / kDown;
        const double azimuth = kTurn * around / kAround;
        const Point p = {radius * std::sin(polar) * std::cos(azimuth),
                         radius * std::sin(polar) * std::sin(azimuth), radius * std::cos(polar)};
        scene.points.push_back(sum(center, turn(p, a, b)));
      }
    }
    for (int down = 0; down < kDown; ++down) {
      for (int around = 0; around < kAround; ++around) {
        const auto at = [&](int column, int row) {
          return first + static_cast<Index>(row * kAround + column % kAround);
        };
        const auto part = static_cast<Index>(i);
        addTriangle(scene, at(around, down), at(around, down + 1), at(around + 1, down + 1), part);
        addTriangle(scene, at(around, down), at(around + 1, down + 1), at(around + 1, down), part);
      }
    }
  }
}

void addTerrain(Scene& scene, int side, std::mt19937& random) {
  for (int row = 0; row <= side; ++row) {
    for (int column = 0; column <= side; ++column) {
      const double x = column;
      const double y = row;
      const double z = 12 * std::sin(x * .05) * std::cos(y * .043) +
                       4 * std::sin(x * .21 + y * .13) + .7 * std::sin(x * .9) * std::cos(y * .8) +
                       .1 * share(random);
      scene.points.push_back(turn({x, y, z}, .3, -1.2));
    }
  }
  const auto at = [&](int column, int row) {
    return static_cast<Index>(row * (side + 1) + column);
  };
  for (int row = 0; row < side; ++row) {
    for (int column = 0; column < side; ++column) {
      addTriangle(scene, at(column, row), at(column + 1, row), at(column + 1, row + 1), 0);
      addTriangle(scene, at(column, row), at(column + 1, row + 1), at(column, row + 1), 0);
    }
  }
}

}  // namespace

void addBox(mesh::PolygonMesh& mesh, const Point& low, const Point& high, Index part) {
  const auto first = static_cast<Index>(mesh.points.size());
  for (int corner = 0; corner < 8; ++corner) {
    mesh.points.push_back({(corner & 1) != 0 ? high[0] : low[0],
                           (corner & 2) != 0 ? high[1] : low[1],
                           (corner & 4) != 0 ? high[2] : low[2]});
  }
  for (const auto& quad : kBoxQuads) {
    const std::array corners = {
        first + static_cast<Index>(quad[0]), first + static_cast<Index>(quad[1]),
        first + static_cast<Index>(quad[2]), first + static_cast<Index>(quad[3])};
    mesh.Add(corners, part);
  }
}

void addPolygon(mesh::PolygonMesh& mesh, const std::vector<Point>& polygon, Index part) {
  std::vector<Index> corners;
  for (const Point& point : polygon) {
    corners.push_back(static_cast<Index>(mesh.points.size()));
    mesh.points.push_back(point);
  }
  mesh.Add(corners, part);
}

void addUnweldedSphere(mesh::PolygonMesh& mesh, const Point& center, double radius, int around,
                       int down, Index part) {
  const auto at = [&](int column, int row) {
    const double polar = std::numbers::pi * row / down;
    const double azimuth = kTurn * column / around;
    return sum(center, {radius * std::sin(polar) * std::cos(azimuth),
                        radius * std::sin(polar) * std::sin(azimuth), radius * std::cos(polar)});
  };
  for (int row = 0; row < down; ++row) {
    for (int column = 0; column < around; ++column) {
      addPolygon(
          mesh,
          {at(column, row), at(column, row + 1), at(column + 1, row + 1), at(column + 1, row)},
          part);
    }
  }
}

Scene sceneOf(const mesh::PolygonMesh& mesh) {
  const PlacedMesh placed{&mesh, {}, 0};
  return assembleScene({&placed, 1});
}

Scene sampleScene(SampleKind kind, std::size_t triangles, std::uint32_t seed) {
  Scene scene;
  std::mt19937 random(seed);
  switch (kind) {
    case SampleKind::kPiledBoxes:
      addBoxes(scene, triangles / 12, true, random);
      break;
    case SampleKind::kBoxes:
      addBoxes(scene, triangles / 12, false, random);
      break;
    case SampleKind::kSpheres:
      addSpheres(scene, triangles / 2500, random);
      break;
    case SampleKind::kTerrain:
      addTerrain(scene, static_cast<int>(std::sqrt(static_cast<double>(triangles) / 2)), random);
      break;
  }
  return scene;
}

Scene randomSoup(std::mt19937& random, int triangles, int parts) {
  Scene scene;
  const auto pick = [&](int below) {
    return static_cast<int>(random() % static_cast<std::uint32_t>(below));
  };
  const int pointCount = 3 + pick(3 * triangles);
  for (int i = 0; i < pointCount; ++i) {
    scene.points.push_back({pick(7) * 1.0, pick(7) * 1.0, pick(5) * 1.0});
  }
  for (int i = 0; i < triangles; ++i) {
    const auto corner = [&] { return static_cast<Index>(pick(pointCount)); };
    addTriangle(scene, corner(), corner(), corner(), static_cast<Index>(pick(parts)));
  }
  return scene;
}

}  // namespace dxf2d::projection
