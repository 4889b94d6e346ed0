#include "mesh/pieces.h"

#include <algorithm>
#include <atomic>
#include <span>
#include <utility>
#include <vector>

#include "platform/parallel.h"

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

  // What `polygon` is linked to: itself if it is a root, else an earlier one, and whether the two
  // disagree.
  Root Above(Index polygon) const { return {links_[polygon] >> 1U, (links_[polygon] & 1U) != 0}; }
  bool IsTwisted(Index root) const { return isTwisted_[root] != 0; }

 private:
  // A polygon's parent, and in the lowest bit whether it disagrees with it.
  std::vector<Index, LargeAllocator<Index>> links_;
  // By root: whether the set holds a contradiction.
  std::vector<char> isTwisted_;
};

// Two polygons that share an edge of theirs alone.
struct Joint {
  Index p;
  Index q;
  bool isReversed;
};

template <class Visit>
void forEachJoint(const EdgeTable& edges, const Block& rows, Visit visit) {
  edges.ForEachEdge(rows, [&](Index /*a*/, Index /*b*/, std::span<const EdgeUse> uses) {
    if (uses.size() == 2 && !uses[0].IsBothWays() && !uses[1].IsBothWays()) {
      visit(Joint{uses[0].Polygon(), uses[1].Polygon(), !isAgreeing(uses[0], uses[1])});
    }
  });
}

// Where the rows begin that the polygons of each stretch use, roughly: points are mostly numbered
// as polygons come across them.
std::vector<std::size_t> rowsOfStretches(const PolygonMesh& mesh, const Blocks& stretches,
                                         std::size_t rowCount) {
  std::vector<std::size_t> begins(stretches.Count() + 1, 0);
  for (std::size_t i = 1; i < stretches.Count(); ++i) {
    const std::size_t p = stretches[i].begin;
    const bool hasCorners = p < mesh.PolygonCount() && !mesh.Polygon(p).empty();
    begins[i] = std::max(begins[i - 1], hasCorners ? mesh.Polygon(p)[0] : std::size_t{0});
  }
  begins.back() = rowCount;
  return begins;
}

// Each thread joins what lies within its own stretch of polygons; the rest is joined after that.
// Sets and roots do not depend on the order.
void joinAll(const PolygonMesh& mesh, const EdgeTable& edges, std::size_t threads,
             AgreementSets& sets) {
  const Blocks stretches = Blocks::OneForEach(mesh.PolygonCount(), threads);
  const std::vector<std::size_t> rows = rowsOfStretches(mesh, stretches, edges.RowCount());
  std::vector<std::vector<Joint>> rests(stretches.Count());
  stretches.Run([&](std::size_t number, const Block& own) {
    const auto isOwn = [&](Index p) { return p >= own.begin && p < own.end; };
    std::vector<Joint> rest;
    forEachJoint(edges, {rows[number], rows[number + 1]}, [&](const Joint& joint) {
      if (isOwn(joint.p) && isOwn(joint.q)) {
        sets.Join(joint.p, joint.q, joint.isReversed);
      } else {
        rest.push_back(joint);
      }
    });
    rests[number] = std::move(rest);
  });
  for (const std::vector<Joint>& rest : rests) {
    for (const Joint& joint : rest) {
      sets.Join(joint.p, joint.q, joint.isReversed);
    }
  }
}

void numberPieces(const AgreementSets& sets, Pieces& pieces) {
  for (Index p = 0; p < pieces.pieceOf.size(); ++p) {
    const AgreementSets::Root above = sets.Above(p);
    if (above.polygon == p) {
      pieces.pieceOf[p] = static_cast<Index>(pieces.Count());
      pieces.firstPolygon.push_back(p);
      pieces.isOrientable.push_back(sets.IsTwisted(p) ? 0 : 1);
    } else {
      // An earlier one, which has its number.
      pieces.pieceOf[p] = pieces.pieceOf[above.polygon];
      pieces.isReversed[p] = pieces.isReversed[above.polygon] ^ (above.isReversed ? 1 : 0);
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
      // Threads may come across one piece at a time.
      std::atomic_ref(pieces.isClosed[*begin]).store(0, std::memory_order_relaxed);
    }
    begin = end;
  }
}

}  // namespace

Pieces findPieces(const PolygonMesh& mesh, const EdgeTable& edges, std::size_t threads) {
  AgreementSets sets(mesh.PolygonCount());
  joinAll(mesh, edges, threads, sets);
  Pieces pieces;
  pieces.pieceOf.resize(mesh.PolygonCount());
  pieces.isReversed.resize(mesh.PolygonCount(), 0);
  numberPieces(sets, pieces);
  pieces.isClosed.resize(pieces.Count(), 1);
  if (edges.BorderCount() != 0 || edges.NonManifoldCount() != 0) {
    Blocks(edges.RowCount(), threads).Run([&](std::size_t /*number*/, const Block& rows) {
      std::vector<Index> scratch;
      edges.ForEachEdge(rows, [&](Index /*a*/, Index /*b*/, std::span<const EdgeUse> uses) {
        markOpen(uses, scratch, pieces);
      });
    });
  }
  return pieces;
}

}  // namespace dxf2d::mesh
