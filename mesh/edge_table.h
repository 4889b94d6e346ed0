// The edges of a mesh, with the polygons that use each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "mesh/polygon_mesh.h"
#include "platform/large_memory.h"
#include "platform/parallel.h"

namespace dxf2d::mesh {

// A polygon's use of an edge. Polygons have numbers below 2^30.
class EdgeUse {
 public:
  // Any use.
  EdgeUse() = default;
  EdgeUse(Index other, Index polygon, bool isForward)
      : bits_(std::uint64_t{other} << 32U | std::uint64_t{polygon} << 2U |
              (isForward ? kForward : 0U)) {}

  // The edge's greater point.
  Index Other() const { return static_cast<Index>(bits_ >> 32U); }
  Index Polygon() const { return static_cast<Index>(bits_) >> 2U; }
  // Whether the polygon runs from the edge's lesser point to its greater one, and only so.
  bool IsForward() const { return (bits_ & kForward) != 0; }
  // Whether it runs along the edge in both directions, as a polygon does that encloses a hole.
  bool IsBothWays() const { return (bits_ & kBothWays) != 0; }

  // Follows the polygon when it is reversed.
  void Turn() { bits_ ^= IsBothWays() ? 0U : kForward; }
  void SetBothWays() { bits_ = (bits_ | kBothWays) & ~kForward; }

  friend bool operator<(const EdgeUse& u, const EdgeUse& v) { return u.bits_ < v.bits_; }

 private:
  static constexpr std::uint64_t kForward = 1;
  static constexpr std::uint64_t kBothWays = 2;

  std::uint64_t bits_;
};

// Whether two polygons run along an edge as neighbors in one surface do: in opposite directions.
inline bool isAgreeing(const EdgeUse& u, const EdgeUse& v) {
  return u.IsForward() != v.IsForward() || u.IsBothWays() || v.IsBothWays();
}

// Compressed rows by an edge's lesser point: row i is uses_[rowStarts_[i] .. rowStarts_[i + 1]), in
// order of the greater point, then of polygons. Points come up near where they did before, and so
// do their rows: a hash table would scatter them.
class EdgeTable {
 public:
  EdgeTable() = default;
  // An edge joins neighbors in a polygon's list, the last to the first; there is none between a
  // point and itself, and a polygon that runs along an edge twice uses it once. The mesh has fewer
  // than 2^30 polygons. `threads` share the work.
  explicit EdgeTable(const PolygonMesh& mesh, std::size_t threads = 1);

  // How many edges there are; how many one polygon alone uses, and how many three or more.
  std::size_t EdgeCount() const { return counts_.edges; }
  std::size_t BorderCount() const { return counts_.borders; }
  std::size_t NonManifoldCount() const { return counts_.nonManifold; }
  // How many edges two polygons use that do not agree.
  std::size_t DisagreeingCount() const { return counts_.disagreeing; }

  // Rows are as many as points.
  std::size_t RowCount() const { return rowStarts_.empty() ? 0 : rowStarts_.size() - 1; }

  // Calls visit(a, b, uses) for every edge with a < b, in order of a, then b; `uses` is a
  // std::span<const EdgeUse> by ascending polygons, each once.
  template <class Visit>
  void ForEachEdge(Visit visit) const {
    ForEachEdge({0, RowCount()}, visit);
  }
  // The same for those of some rows. Threads may go through the table at a time.
  template <class Visit>
  void ForEachEdge(const Block& rows, Visit visit) const {
    for (std::size_t row = rows.begin; row < rows.end; ++row) {
      const EdgeUse* begin = uses_.data() + rowStarts_[row];
      const EdgeUse* const end = uses_.data() + rowStarts_[row + 1];
      while (begin != end) {
        const EdgeUse* next = begin + 1;
        while (next != end && next->Other() == begin->Other()) {
          ++next;
        }
        visit(static_cast<Index>(row), begin->Other(), std::span<const EdgeUse>(begin, next));
        begin = next;
      }
    }
  }

  // Follows the mesh after polygons p with isFlipped[p] were reversed.
  void TurnPolygons(const std::vector<char>& isFlipped, std::size_t threads = 1);

 private:
  // Edges by kind.
  struct Counts {
    std::size_t edges = 0;
    std::size_t borders = 0;
    std::size_t nonManifold = 0;
    std::size_t disagreeing = 0;

    Counts& operator+=(const Counts& other);
  };

  void SortRows(std::size_t threads);
  // `behind`: where the row after these starts. Returns the end of what is left of their uses.
  EdgeUse* SortRows(const Block& rows, Index behind, Counts& counts);
  void CloseGaps(const Blocks& blocks, const std::vector<EdgeUse*>& ends);
  static void CountRow(const EdgeUse* begin, const EdgeUse* end, Counts& counts);

  std::vector<Index, LargeAllocator<Index>> rowStarts_;
  // Of which those before the end of the last row are in use.
  LargeArray<EdgeUse> uses_;
  Counts counts_;
};

}  // namespace dxf2d::mesh
