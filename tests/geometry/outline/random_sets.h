// Geometry to try algorithms on: hostile, near a limit, and like what hosts send.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <random>
#include <vector>

#include "ktscene/kt_point3.h"

namespace dxf2d {

using Random = std::mt19937_64;

struct IndexedSet {
  std::vector<KtPoint3> points;
  std::vector<int> indices;

  // Takes a copy of `other`, its numbers moved up.
  void Append(const IndexedSet& other);
};

// All of the set, exact, for a failure's message.
std::ostream& operator<<(std::ostream& out, const IndexedSet& set);

// A whole number from 0 to `count` - 1.
std::uint64_t below(Random& random, std::uint64_t count);
// A number from `low` to `high`.
double between(Random& random, double low, double high);

// A few points of a small grid, among them zeros of both signs and now and then one that is not
// finite, huge or tiny, and runs of every code, empty ones too, with entries that name nothing.
IndexedSet hostileSet(Random& random);
// Triangles on points of a grid; many share points, edges and places in plan.
IndexedSet triangleSoup(Random& random, std::uint64_t gridSize, std::uint64_t triangles);
// Pairs of triangles that fold by almost exactly the crease angle, standing almost edge-on, or
// whose normals' z differ by almost exactly the silhouette tolerance.
IndexedSet foldsNearLimits(Random& random);
// Closed boxes on a grid, upright or turned, their faces as polygons, triangles, fans or strips;
// `sharedPoints` false: every face brings points of its own.
IndexedSet boxes(Random& random, std::uint64_t count, bool sharedPoints);
IndexedSet tetrahedra(Random& random, std::uint64_t count);
// A closed sphere of `rings` times `rings` quadrangles, turned at random.
IndexedSet sphere(Random& random, int rings);
// Random heights over a grid of `size` times `size` points, as triangle strips.
IndexedSet terrain(Random& random, int size);

}  // namespace dxf2d
