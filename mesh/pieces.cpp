#include "mesh/pieces.h"

#include <algorithm>
#include <span>
#include <utility>

namespace dxf2d::mesh {

namespace {

// Disjoint sets of polygons (union-find with path halving) that keep, for each polygon, whether it
// disagrees with the root of its set, which is the set's first polygon.
class AgreementSets {
 public:
  struct Root {
    Index polygon;
    bool isReversed;
  };

  explicit AgreementSets(std::size_t count) : links_(count), isTwisted_(count, 0) {
    for (std::size_t i = 0; i < count; ++i) {
      links_[i] = static_cast<Index>(i) << 1U;
    }
  }

  Root Find(Index polygon) {
    Index reversed = 0;
    while (links_[polygon] >> 1U != polygon) {
      Index& link = links_[polygon];
      const Index above = links_[link >> 1U];
      // A link from a root to itself has no reversal, so this holds below a root as well.
      link = above ^ (link & 1U);
      reversed ^= link & 1U;
      polygon = link >> 1U;
    }
    return {polygon, reversed != 0};
  }

  // States that p and q disagree or not.
  void Join(Index p, Index q, bool isReversed) {
    if (links_[p] == links_[q] && !isReversed) {
      return;
    }
    Root first = Find(p);
    Root second = Find(q);
    const bool isOdd = isReversed != (first.isReversed != second.isReversed);
    if (first.polygon == second.polygon) {
      isTwisted_[first.polygon] |= isOdd ? 1 : 0;
      return;
    }
    if (second.polygon < first.polygon) {
      std::swap(first, second);
    }
    links_[second.polygon] = first.polygon << 1U | (isOdd ? 1U : 0U);
    isTwisted_[first.polygon] |= isTwisted_[second.polygon];
  }

  bool IsTwisted(Index root) const { return isTwisted_[root] != 0; }

 private:
  // A polygon's parent, and in the lowest bit whether it disagrees with it.
  std::vector<Index, LargeAllocator<Index>> links_;
  // By root: whether the set holds a contradiction.
  std::vector<char> isTwisted_;
};

void numberPieces(AgreementSets& sets, Pieces& pieces) {
  for (Index p = 0; p < pieces.pieceOf.size(); ++p) {
    const AgreementSets::Root root = sets.Find(p);
    if (root.polygon == p) {
      pieces.pieceOf[p] = static_cast<Index>(pieces.Count());
      pieces.firstPolygon.push_back(p);
      pieces.isOrientable.push_back(sets.IsTwisted(p) ? 0 : 1);
    } else {
      pieces.pieceOf[p] = pieces.pieceOf[root.polygon];
      pieces.isReversed[p] = root.isReversed ? 1 : 0;
    }
  }
}

// Marks the pieces as open that have an odd number of polygons at the edge with these uses.
void markOpen(std::span<const EdgeUse> uses, std::vector<Index>& scratch, Pieces& pieces) {
  if (uses.size() == 2 && pieces.pieceOf[uses[0].Polygon()] == pieces.pieceOf[uses[1].Polygon()]) {
    return;
  }
  scratch.clear();
  for (const EdgeUse& use : uses) {
    scratch.push_back(pieces.pieceOf[use.Polygon()]);
  }
  std::sort(scratch.begin(), scratch.end());
  for (auto begin = scratch.begin(); begin != scratch.end();) {
    const auto end = std::upper_bound(begin, scratch.end(), *begin);
    if ((end - begin) % 2 != 0) {
      pieces.isClosed[*begin] = 0;
    }
    begin = end;
  }
}

}  // namespace

Pieces findPieces(const PolygonMesh& mesh, const EdgeTable& edges) {
  AgreementSets sets(mesh.PolygonCount());
  edges.ForEachEdge([&](Index /*a*/, Index /*b*/, std::span<const EdgeUse> uses) {
    if (uses.size() == 2 && !uses[0].IsBothWays() && !uses[1].IsBothWays()) {
      sets.Join(uses[0].Polygon(), uses[1].Polygon(), !isAgreeing(uses[0], uses[1]));
    }
  });
  Pieces pieces;
  pieces.pieceOf.resize(mesh.PolygonCount());
  pieces.isReversed.resize(mesh.PolygonCount(), 0);
  numberPieces(sets, pieces);
  pieces.isClosed.resize(pieces.Count(), 1);
  if (edges.BorderCount() != 0 || edges.NonManifoldCount() != 0) {
    std::vector<Index> scratch;
    edges.ForEachEdge([&](Index /*a*/, Index /*b*/, std::span<const EdgeUse> uses) {
      markOpen(uses, scratch, pieces);
    });
  }
  return pieces;
}

}  // namespace dxf2d::mesh
