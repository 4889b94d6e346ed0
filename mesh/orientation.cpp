#include "mesh/orientation.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "mesh/pieces.h"
#include "mesh/vector.h"
#include "platform/large_memory.h"
#include "platform/parallel.h"

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

// What a polygon adds to the sides of its piece.
struct Share {
  double volume = 0.0;
  double area = 0.0;
};

// Sums up what isFirstReversed reads: nothing where the windings of an open piece agree.
class SideSums {
 public:
  SideSums(const PolygonMesh& mesh, const Pieces& pieces)
      : mesh_(mesh), pieces_(pieces), sides_(pieces.Count()) {
    for (std::size_t p = 0; p < mesh.PolygonCount(); ++p) {
      if (pieces.isReversed[p] != 0) {
        ++sides_[pieces.pieceOf[p]].reversedCount;
      }
    }
  }

  void Run(std::size_t threads) {
    const std::size_t count = mesh_.PolygonCount();
    if (threads == 1) {
      for (std::size_t p = 0; p < count; ++p) {
        Add(p, ShareOf(p));
      }
      return;
    }
    // The shares are found in any order, and added in that of the polygons: sums of doubles depend
    // on it.
    constexpr std::size_t kAtATime = std::size_t{1} << 17U;
    LargeArray<Share> shares(std::min(count, kAtATime));
    for (std::size_t begin = 0; begin < count; begin += kAtATime) {
      const std::size_t size = std::min(count - begin, kAtATime);
      Blocks(size, threads).Run([&](std::size_t /*number*/, const Block& block) {
        for (std::size_t i = block.begin; i < block.end; ++i) {
          shares[i] = ShareOf(begin + i);
        }
      });
      for (std::size_t i = 0; i < size; ++i) {
        Add(begin + i, shares[i]);
      }
    }
  }

  std::vector<Sides> Take() { return std::move(sides_); }

 private:
  Share ShareOf(std::size_t p) const {
    const Index piece = pieces_.pieceOf[p];
    const bool isClosed = pieces_.isClosed[piece] != 0;
    const bool isMixed = sides_[piece].reversedCount != 0;
    if (!isClosed && !isMixed) {
      return {};
    }
    const Vector area = doubledArea(mesh_, p);
    Share share;
    if (isClosed) {
      // Relative to a point of the piece, so that its distance from the origin costs no digits.
      const Point& apex = mesh_.points[mesh_.Polygon(pieces_.firstPolygon[piece])[0]];
      share.volume = dot(difference(mesh_.points[mesh_.Polygon(p)[0]], apex), area);
    }
    if (isMixed) {
      share.area = length(area);
    }
    return share;
  }

  void Add(std::size_t p, const Share& share) {
    Sides& side = sides_[pieces_.pieceOf[p]];
    const bool isReversed = pieces_.isReversed[p] != 0;
    side.volume += isReversed ? -share.volume : share.volume;
    side.volumeScale += std::fabs(share.volume);
    (isReversed ? side.reversedArea : side.area) += share.area;
  }

  const PolygonMesh& mesh_;
  const Pieces& pieces_;
  std::vector<Sides> sides_;
};

// Whether the polygons that agree with the first of the piece are the ones to reverse.
bool isFirstReversed(const Sides& sides, bool isClosed) {
  if (isClosed && std::fabs(sides.volume) > kRounding * sides.volumeScale) {
    return sides.volume < 0.0;
  }
  return sides.reversedArea > sides.area * (1.0 + kRounding);
}

// How many polygons to reverse there are, and how many of them in pieces that do not agree.
struct FlipCounts {
  std::size_t all = 0;
  std::size_t inMixed = 0;
};

// Decides piece by piece and marks the polygons to reverse. Returns whether there are any.
bool findFlipped(const Pieces& pieces, const std::vector<Sides>& sides, std::size_t threads,
                 OrientationCounts& counts, std::vector<char>& isFlipped) {
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
  const Blocks blocks(isFlipped.size(), threads);
  std::vector<FlipCounts> flips(blocks.Count());
  blocks.Run([&](std::size_t number, const Block& polygons) {
    FlipCounts own;
    for (std::size_t p = polygons.begin; p < polygons.end; ++p) {
      const Index piece = pieces.pieceOf[p];
      if (pieces.isOrientable[piece] != 0 && isFirst[piece] != pieces.isReversed[p]) {
        isFlipped[p] = 1;
        ++own.all;
        own.inMixed += sides[piece].reversedCount != 0 ? 1 : 0;
      }
    }
    flips[number] = own;
  });
  bool isAny = false;
  for (const FlipCounts& some : flips) {
    isAny = isAny || some.all != 0;
    counts.polygonsFlipped += some.inMixed;
  }
  return isAny;
}

}  // namespace

OrientationCounts orient(PolygonMesh& mesh, EdgeTable& edges, std::size_t threads) {
  OrientationCounts counts;
  const Pieces pieces = findPieces(mesh, edges, threads);
  SideSums sums(mesh, pieces);
  sums.Run(threads);
  std::vector<char> isFlipped(mesh.PolygonCount(), 0);
  if (findFlipped(pieces, sums.Take(), threads, counts, isFlipped)) {
    Blocks(mesh.PolygonCount(), threads).Run([&](std::size_t /*number*/, const Block& polygons) {
      for (std::size_t p = polygons.begin; p < polygons.end; ++p) {
        if (isFlipped[p] != 0) {
          std::reverse(mesh.corners.begin() + mesh.starts[p] + 1,
                       mesh.corners.begin() + mesh.starts[p + 1]);
        }
      }
    });
    edges.TurnPolygons(isFlipped, threads);
  }
  return counts;
}

}  // namespace dxf2d::mesh
