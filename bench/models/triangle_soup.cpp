#include "bench/models/triangle_soup.h"

#include <cmath>
#include <numbers>
#include <random>

namespace {

struct Point {
  float x;
  float y;
  float z;
};

Point makePoint(double x, double y, double z) {
  return {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
}

void addTriangle(TriangleSoup& soup, const Point& a, const Point& b, const Point& c) {
  soup.push_back({a.x, a.y, a.z, b.x, b.y, b.z, c.x, c.y, c.z});
}

void addQuad(TriangleSoup& soup, const Point& a, const Point& b, const Point& c, const Point& d) {
  addTriangle(soup, a, b, c);
  addTriangle(soup, a, c, d);
}

// A point of the sphere; the poles and the seam come out the same from every triangle.
Point onSphere(std::size_t ring, std::size_t rings, std::size_t segment, std::size_t segments) {
  constexpr double kRadius = 1000.0;
  constexpr double kLean = 0.5;  // radians about x
  const double down = std::numbers::pi * static_cast<double>(ring) / static_cast<double>(rings);
  const double around = 2.0 * std::numbers::pi * static_cast<double>(segment % segments) /
                        static_cast<double>(segments);
  const double radius = ring == 0 || ring == rings ? 0.0 : kRadius * std::sin(down);
  const double x = radius * std::cos(around);
  const double y = radius * std::sin(around);
  const double z = kRadius * std::cos(down);
  return makePoint(x, y * std::cos(kLean) - z * std::sin(kLean),
                   y * std::sin(kLean) + z * std::cos(kLean));
}

void addBox(TriangleSoup& soup, std::mt19937& random, double centerX, double centerY) {
  std::uniform_real_distribution<double> size(0.5, 3.0);
  std::uniform_real_distribution<double> turn(0.0, std::numbers::pi);
  const double halfX = size(random) / 2;
  const double halfY = size(random) / 2;
  const double height = size(random);
  const double angle = turn(random);
  std::array<Point, 4> low;
  std::array<Point, 4> high;
  for (std::size_t i = 0; i < 4; ++i) {
    const double u = i == 0 || i == 3 ? -halfX : halfX;
    const double v = i < 2 ? -halfY : halfY;
    const double x = centerX + u * std::cos(angle) - v * std::sin(angle);
    const double y = centerY + u * std::sin(angle) + v * std::cos(angle);
    low[i] = makePoint(x, y, 0.0);
    high[i] = makePoint(x, y, height);
  }
  addQuad(soup, low[3], low[2], low[1], low[0]);
  addQuad(soup, high[0], high[1], high[2], high[3]);
  for (std::size_t i = 0; i < 4; ++i) {
    const std::size_t next = (i + 1) % 4;
    addQuad(soup, low[i], low[next], high[next], high[i]);
  }
}

std::size_t rootOf(double value) { return static_cast<std::size_t>(std::lround(std::sqrt(value))); }

}  // namespace

TriangleSoup sphereSoup(std::size_t triangleCount) {
  // Two triangles a quad, but one at the poles: 4 k^2 in all.
  const std::size_t k = rootOf(static_cast<double>(triangleCount) / 4.0);
  const std::size_t rings = k + 1;
  const std::size_t segments = 2 * k;
  TriangleSoup soup;
  soup.reserve(4 * k * k);
  for (std::size_t ring = 0; ring < rings; ++ring) {
    for (std::size_t segment = 0; segment < segments; ++segment) {
      const Point a = onSphere(ring, rings, segment, segments);
      const Point b = onSphere(ring + 1, rings, segment, segments);
      const Point c = onSphere(ring + 1, rings, segment + 1, segments);
      const Point d = onSphere(ring, rings, segment + 1, segments);
      if (ring + 1 < rings) {
        addTriangle(soup, a, b, c);
      }
      if (ring > 0) {
        addTriangle(soup, a, ring + 1 < rings ? c : b, d);
      }
    }
  }
  return soup;
}

TriangleSoup terrainSoup(std::size_t triangleCount) {
  constexpr double kSpacing = 0.37;
  const std::size_t side = rootOf(static_cast<double>(triangleCount) / 2.0);
  std::mt19937 random(1);
  std::uniform_real_distribution<double> roughness(0.0, 0.1);
  std::vector<Point> points;
  points.reserve((side + 1) * (side + 1));
  for (std::size_t row = 0; row <= side; ++row) {
    for (std::size_t column = 0; column <= side; ++column) {
      const double x = kSpacing * static_cast<double>(column);
      const double y = kSpacing * static_cast<double>(row);
      const double hills = 5.0 * std::sin(0.05 * x) * std::cos(0.03 * y);
      points.push_back(makePoint(x, y, hills + roughness(random)));
    }
  }
  TriangleSoup soup;
  soup.reserve(2 * side * side);
  for (std::size_t row = 0; row < side; ++row) {
    for (std::size_t column = 0; column < side; ++column) {
      const std::size_t corner = row * (side + 1) + column;
      addQuad(soup, points[corner], points[corner + 1], points[corner + side + 2],
              points[corner + side + 1]);
    }
  }
  return soup;
}

TriangleSoup boxesSoup(std::size_t triangleCount) {
  // Wider than the longest diagonal.
  constexpr double kSpacing = 5.0;
  const auto boxCount =
      static_cast<std::size_t>(std::lround(static_cast<double>(triangleCount) * 0.0835));
  const std::size_t columns = rootOf(static_cast<double>(boxCount));
  std::mt19937 random(2);
  TriangleSoup soup;
  soup.reserve(12 * boxCount);
  for (std::size_t box = 0; box < boxCount; ++box) {
    const std::size_t column = box % columns;
    const std::size_t row = box / columns;
    addBox(soup, random, kSpacing * static_cast<double>(column),
           kSpacing * static_cast<double>(row));
  }
  return soup;
}
