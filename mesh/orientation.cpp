#include "mesh/orientation.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "mesh/pieces.h"
#include "mesh/vector.h"

namespace dxf2d::mesh {

namespace {

// What decides which side of a piece stays or becomes its front, in multiples of area and volume.
struct Sides {
  double volume = 0.0;       // as its first polygon runs
  double volumeScale = 0.0;  // the sum of its terms without their signs
  double area = 0.0;         // that agrees with the first polygon
  double reversedArea = 0.0;
  std::size_t reversedCount = 0;
};

// Above the rounding of a sum of terms, as a share of them.
constexpr double kRounding = 1e-9;

// Sums up what isFirstReversed reads: nothing where the windings of an open piece agree.
std::vector<Sides> sumSides(const PolygonMesh& mesh, const Pieces& pieces) {
  std::vector<Sides> sides(pieces.Count());
  for (std::size_t p = 0; p < mesh.PolygonCount(); ++p) {
    sides[pieces.pieceOf[p]].reversedCount += pieces.isReversed[p] != 0 ? 1 : 0;
  }
  for (std::size_t p = 0; p < mesh.PolygonCount(); ++p) {
    const Index piece = pieces.pieceOf[p];
    const bool isClosed = pieces.isClosed[piece] != 0;
    Sides& side = sides[piece];
    if (!isClosed && side.reversedCount == 0) {
      continue;
    }
    const bool isReversed = pieces.isReversed[p] != 0;
    const Vector area = doubledArea(mesh, p);
    if (isClosed) {
      // Relative to a point of the piece, so that its distance from the origin costs no digits.
      const Point& apex = mesh.points[mesh.Polygon(pieces.firstPolygon[piece])[0]];
      const double term = dot(difference(mesh.points[mesh.Polygon(p)[0]], apex), area);
      side.volume += isReversed ? -term : term;
      side.volumeScale += std::fabs(term);
    }
    if (side.reversedCount != 0) {
      (isReversed ? side.reversedArea : side.area) += length(area);
    }
  }
  return sides;
}

// Whether the polygons that agree with the first of the piece are the ones to reverse.
bool isFirstReversed(const Sides& sides, bool isClosed) {
  if (isClosed && std::fabs(sides.volume) > kRounding * sides.volumeScale) {
    return sides.volume < 0.0;
  }
  return sides.reversedArea > sides.area * (1.0 + kRounding);
}

// Decides piece by piece and marks the polygons to reverse. Returns whether there are any.
bool findFlipped(const Pieces& pieces, const std::vector<Sides>& sides, OrientationCounts& counts,
                 std::vector<char>& isFlipped) {
  std::vector<char> isFirst(pieces.Count(), 0);
  for (std::size_t i = 0; i < pieces.Count(); ++i) {
    if (pieces.isOrientable[i] == 0) {
      ++counts.nonOrientablePieces;
      continue;
    }
    isFirst[i] = isFirstReversed(sides[i], pieces.isClosed[i] != 0) ? 1 : 0;
    if (isFirst[i] != 0 && sides[i].reversedCount == 0) {
      ++counts.piecesTurnedOutward;
    }
  }
  bool isAny = false;
  for (std::size_t p = 0; p < isFlipped.size(); ++p) {
    const Index piece = pieces.pieceOf[p];
    if (pieces.isOrientable[piece] != 0 && isFirst[piece] != pieces.isReversed[p]) {
      isFlipped[p] = 1;
      isAny = true;
      counts.polygonsFlipped += sides[piece].reversedCount != 0 ? 1 : 0;
    }
  }
  return isAny;
}

}  // namespace

OrientationCounts orient(PolygonMesh& mesh, EdgeTable& edges) {
  OrientationCounts counts;
  const Pieces pieces = findPieces(mesh, edges);
  std::vector<char> isFlipped(mesh.PolygonCount(), 0);
  if (findFlipped(pieces, sumSides(mesh, pieces), counts, isFlipped)) {
    for (std::size_t p = 0; p < mesh.PolygonCount(); ++p) {
      if (isFlipped[p] != 0) {
        std::reverse(mesh.corners.begin() + mesh.starts[p] + 1,
                     mesh.corners.begin() + mesh.starts[p + 1]);
      }
    }
    edges.TurnPolygons(isFlipped);
  }
  return counts;
}

}  // namespace dxf2d::mesh
