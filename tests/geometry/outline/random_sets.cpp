#include "tests/geometry/outline/random_sets.h"

#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <ostream>

#include "ktscene/kt_matrix.h"

namespace dxf2d {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

bool oneIn(Random& random, std::uint64_t count) { return below(random, count) == 0; }

double gridCoordinate(Random& random, std::uint64_t gridSize) {
  const double value = static_cast<double>(below(random, gridSize)) - 1.0;
  return value == 0.0 && oneIn(random, 3) ? -0.0 : value;
}

double hostileCoordinate(Random& random, std::uint64_t gridSize, std::uint64_t oddity) {
  if (!oneIn(random, oddity)) {
    return gridCoordinate(random, gridSize);
  }
  constexpr std::array kOdd = {kNan,   kInfinity, -kInfinity, 1e300,
                               -1e300, 1e-300,    5e-324,     std::numeric_limits<double>::max(),
                               1e-160, 0.1,       1 + 1e-15};
  return kOdd[below(random, kOdd.size())];
}

int hostileEntry(Random& random, std::uint64_t pointCount, std::uint64_t oddity) {
  if (oneIn(random, oddity)) {
    switch (below(random, 4)) {
      case 0:
        return static_cast<int>(pointCount + below(random, 3));
      case 1:
        return std::numeric_limits<int>::max() - static_cast<int>(below(random, 2));
      case 2:
        return std::numeric_limits<int>::min();
      default:
        return -1 - static_cast<int>(below(random, 9));
    }
  }
  return pointCount == 0 ? 0 : static_cast<int>(below(random, pointCount));
}

int hostileCode(Random& random) {
  return oneIn(random, 12) ? -8 - static_cast<int>(below(random, 2))
                           : -1 - static_cast<int>(below(random, 7));
}

KtMatrix anyTurn(Random& random) {
  KtMatrix turn;
  turn.Rotate(between(random, -1, 1), between(random, -1, 1), between(random, 0.1, 1),
              between(random, 0, 6));
  return turn;
}

void transform(IndexedSet& set, const KtMatrix& matrix) {
  for (KtPoint3& point : set.points) {
    point.Mult(matrix);
  }
}

// One quadrangle, given counter-clockwise, in one of the ways to say so.
void appendQuad(Random& random, std::vector<int>& indices, const std::array<int, 4>& q) {
  switch (below(random, 4)) {
    case 0:
      indices.insert(indices.end(), {q[0], q[1], q[2], q[3], -7});
      break;
    case 1:
      indices.insert(indices.end(), {q[0], q[1], q[2], q[0], q[2], q[3], -5});
      break;
    case 2:
      indices.insert(indices.end(), {q[0], q[1], q[2], q[3], -4});
      break;
    default:
      indices.insert(indices.end(), {q[0], q[1], q[3], q[2], -3});
      break;
  }
}

IndexedSet unitBox(Random& random) {
  IndexedSet box;
  for (const double z : {0.0, 1.0}) {
    box.points.insert(box.points.end(), {{0, 0, z}, {1, 0, z}, {1, 1, z}, {0, 1, z}});
  }
  constexpr std::array<std::array<int, 4>, 6> kFaces = {
      {{3, 2, 1, 0}, {4, 5, 6, 7}, {0, 1, 5, 4}, {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}}};
  for (const std::array<int, 4>& face : kFaces) {
    appendQuad(random, box.indices, face);
  }
  return box;
}

IndexedSet withOwnPoints(const IndexedSet& set) {
  IndexedSet result;
  for (const int index : set.indices) {
    if (index < 0) {
      result.indices.push_back(index);
    } else {
      result.indices.push_back(static_cast<int>(result.points.size()));
      result.points.push_back(set.points[static_cast<std::size_t>(index)]);
    }
  }
  return result;
}

// A number at, just beside or near `limit`.
double nearby(Random& random, double limit) {
  switch (below(random, 4)) {
    case 0:
      return limit;
    case 1:
      return std::nextafter(limit, oneIn(random, 2) ? 0.0 : kInfinity);
    case 2:
      return limit * between(random, 1 - 1e-14, 1 + 1e-14);
    default:
      return limit * between(random, 0.5, 1.5);
  }
}

// Two triangles on the edge 0-1, the second turned round now and then.
IndexedSet hinge(Random& random, const KtPoint3& a, const KtPoint3& b, const KtPoint3& c,
                 const KtPoint3& d) {
  IndexedSet set{{a, b, c, d}, {0, 1, 2, -7}};
  if (oneIn(random, 3)) {
    set.indices.insert(set.indices.end(), {0, 1, 3, -7});
  } else {
    set.indices.insert(set.indices.end(), {1, 0, 3, -7});
  }
  return set;
}

// The fold is about an almost vertical edge, so that both sides stand almost edge-on and the edge
// still has a length in plan; mostly one side faces the viewer and the other does not.
IndexedSet uprightFold(Random& random) {
  // The smaller, the closer to `fold` the angle of the normals.
  const double lean = between(random, -0.02, 0.02) * (oneIn(random, 2) ? 1.0 : 1e-8);
  const double fold = nearby(random, 0.04);
  const double part = between(random, -0.1, 1.1);
  const double first = fold * part;
  const double second =
      oneIn(random, 4) ? -fold * (1 - part) : std::numbers::pi - fold * (1 - part);
  return hinge(random, {0, 0, 0}, {lean, 0, 1}, {std::cos(first), std::sin(first), 0},
               {std::cos(second), std::sin(second), 0});
}

// How far a face that stands 1 high leans when its unit normal has this z.
double leanOf(double normalZ) { return std::tan(std::asin(normalZ)); }

IndexedSet levelFold(Random& random) {
  const double sum = nearby(random, 0.001);
  const double part = oneIn(random, 4) ? 1.0 : between(random, -0.1, 1.1);
  return hinge(random, {0, 0, 0}, {1, 0, 0}, {0, leanOf(sum * part), 1},
               {0, leanOf(sum * (1 - part)), -1});
}

}  // namespace

void IndexedSet::Append(const IndexedSet& other) {
  const int moved = static_cast<int>(points.size());
  points.insert(points.end(), other.points.begin(), other.points.end());
  for (const int index : other.indices) {
    indices.push_back(index < 0 ? index : index + moved);
  }
}

std::ostream& operator<<(std::ostream& out, const IndexedSet& set) {
  out << std::hexfloat << "points";
  for (const KtPoint3& point : set.points) {
    out << " (" << point.Get0() << ", " << point.Get1() << ", " << point.Get2() << ')';
  }
  out << " indices";
  for (const int index : set.indices) {
    out << ' ' << index;
  }
  return out << std::defaultfloat;
}

std::uint64_t below(Random& random, std::uint64_t count) { return random() % count; }

double between(Random& random, double low, double high) {
  return low + (high - low) * (static_cast<double>(random() >> 11U) * 0x1p-53);
}

IndexedSet hostileSet(Random& random) {
  IndexedSet set;
  const std::uint64_t gridSize = 2 + below(random, 4);
  const std::uint64_t oddPoints = oneIn(random, 2) ? 1000000 : 5 + below(random, 40);
  const std::uint64_t oddEntries = oneIn(random, 2) ? 1000000 : 3 + below(random, 30);
  const std::uint64_t pointCount = below(random, 14);
  for (std::uint64_t i = 0; i < pointCount; ++i) {
    set.points.emplace_back(hostileCoordinate(random, gridSize, oddPoints),
                            hostileCoordinate(random, gridSize, oddPoints),
                            hostileCoordinate(random, gridSize, oddPoints));
  }
  for (std::uint64_t runs = below(random, 9); runs > 0; --runs) {
    for (std::uint64_t length = below(random, 8); length > 0; --length) {
      set.indices.push_back(hostileEntry(random, pointCount, oddEntries));
    }
    set.indices.push_back(hostileCode(random));
  }
  for (std::uint64_t rest = oneIn(random, 3) ? below(random, 4) : 0; rest > 0; --rest) {
    set.indices.push_back(hostileEntry(random, pointCount, oddEntries));
  }
  return set;
}

IndexedSet triangleSoup(Random& random, std::uint64_t gridSize, std::uint64_t triangles) {
  IndexedSet set;
  for (std::uint64_t i = 0; i < triangles * 3; ++i) {
    set.points.emplace_back(gridCoordinate(random, gridSize), gridCoordinate(random, gridSize),
                            gridCoordinate(random, gridSize));
    set.indices.push_back(static_cast<int>(i));
    if (i % 3 == 2 && oneIn(random, 3)) {
      set.indices.push_back(oneIn(random, 2) ? -7 : -5);
    }
  }
  set.indices.push_back(-5);
  return set;
}

IndexedSet foldsNearLimits(Random& random) {
  IndexedSet set;
  for (int i = 0; i < 4; ++i) {
    IndexedSet fold = oneIn(random, 2) ? uprightFold(random) : levelFold(random);
    KtMatrix placed;
    placed.Rotate(0, 0, 1, oneIn(random, 2) ? 0.0 : between(random, -3, 3));
    placed.SetTranslation(4.0 * i, 0, 0);
    transform(fold, placed);
    set.Append(fold);
  }
  return set;
}

IndexedSet boxes(Random& random, std::uint64_t count, bool sharedPoints) {
  IndexedSet set;
  const KtMatrix turn = oneIn(random, 2) ? KtMatrix() : anyTurn(random);
  for (std::uint64_t i = 0; i < count; ++i) {
    IndexedSet box = unitBox(random);
    KtMatrix placed = turn;
    KtMatrix step;
    step.SetTranslation(static_cast<double>(below(random, 4)),
                        static_cast<double>(below(random, 4)),
                        static_cast<double>(below(random, 4)));
    placed.Mult(step);
    transform(box, placed);
    set.Append(sharedPoints ? box : withOwnPoints(box));
  }
  return set;
}

IndexedSet tetrahedra(Random& random, std::uint64_t count) {
  IndexedSet set;
  for (std::uint64_t i = 0; i < count; ++i) {
    IndexedSet solid;
    for (int corner = 0; corner < 4; ++corner) {
      solid.points.emplace_back(gridCoordinate(random, 6), gridCoordinate(random, 6),
                                gridCoordinate(random, 6));
    }
    solid.indices = {0, 2, 1, -7, 0, 1, 3, -7, 1, 2, 3, -7, 2, 0, 3, -7};
    set.Append(solid);
  }
  return set;
}

IndexedSet sphere(Random& random, int rings) {
  IndexedSet set;
  for (int ring = 0; ring <= rings; ++ring) {
    for (int step = 0; step < rings; ++step) {
      const double up = std::numbers::pi * ring / rings;
      const double round = 2 * std::numbers::pi * step / rings;
      set.points.emplace_back(std::sin(up) * std::cos(round), std::sin(up) * std::sin(round),
                              std::cos(up));
    }
  }
  for (int ring = 0; ring < rings; ++ring) {
    for (int step = 0; step < rings; ++step) {
      const int a = ring * rings + step;
      const int b = ring * rings + (step + 1) % rings;
      appendQuad(random, set.indices, {a, a + rings, b + rings, b});
    }
  }
  transform(set, anyTurn(random));
  return set;
}

IndexedSet terrain(Random& random, int size) {
  IndexedSet set;
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      set.points.emplace_back(x, y, between(random, 0, 2));
    }
  }
  for (int y = 0; y + 1 < size; ++y) {
    for (int x = 0; x < size; ++x) {
      set.indices.insert(set.indices.end(), {(y + 1) * size + x, y * size + x});
    }
    set.indices.push_back(-3);
  }
  transform(set, anyTurn(random));
  return set;
}

}  // namespace dxf2d
