#include "mesh/edge_table.h"

#include <algorithm>

#include "mesh/compressed_rows.h"

namespace dxf2d::mesh {

namespace {

template <class Visit>
void visitIfApart(Index from, Index to, Index polygon, Visit& visit) {
  if (from != to) {
    visit(from, to, polygon);
  }
}

// Calls visit(from, to, polygon) for every edge of some polygons.
template <class Visit>
void forEachHalfEdge(const PolygonMesh& mesh, const Block& polygons, Visit visit) {
  const auto end = static_cast<Index>(polygons.end);
  for (auto p = static_cast<Index>(polygons.begin); p < end; ++p) {
    const std::span<const Index> corners = mesh.Polygon(p);
    if (corners.size() == 3) {
      visitIfApart(corners[2], corners[0], p, visit);
      visitIfApart(corners[0], corners[1], p, visit);
      visitIfApart(corners[1], corners[2], p, visit);
      continue;
    }
    if (corners.empty()) {
      continue;
    }
    Index from = corners.back();
    for (const Index to : corners) {
      visitIfApart(from, to, p, visit);
      from = to;
    }
  }
}

// Short rows, which nearly all are, sort fastest by insertion.
void sortUses(EdgeUse* begin, EdgeUse* end) {
  constexpr std::ptrdiff_t kShortRow = 24;
  if (end - begin > kShortRow) {
    std::sort(begin, end);
    return;
  }
  for (EdgeUse* next = begin; next != end; ++next) {
    const EdgeUse use = *next;
    EdgeUse* place = next;
    for (; place != begin && use < place[-1]; --place) {
      *place = place[-1];
    }
    *place = use;
  }
}

// Moves [begin, end), in order, to `out`, one use for each polygon. Returns the end of what was
// moved.
EdgeUse* withoutRepeats(const EdgeUse* begin, const EdgeUse* end, EdgeUse* out) {
  const EdgeUse* const first = out;
  for (; begin != end; ++begin) {
    const EdgeUse use = *begin;
    if (out == first || out[-1].Other() != use.Other() || out[-1].Polygon() != use.Polygon()) {
      *out++ = use;
    } else if (out[-1].IsForward() != use.IsForward()) {
      out[-1].SetBothWays();
    }
  }
  return out;
}

}  // namespace

EdgeTable::EdgeTable(const PolygonMesh& mesh, std::size_t threads) {
  fillRows(
      mesh.points.size(), mesh.PolygonCount(), threads,
      [&](const Block& polygons, auto visit) {
        forEachHalfEdge(mesh, polygons, [&](Index from, Index to, Index polygon) {
          const bool isForward = from < to;
          visit(isForward ? from : to, EdgeUse(isForward ? to : from, polygon, isForward));
        });
      },
      rowStarts_, uses_);
  SortRows(threads);
}

void EdgeTable::SortRows(std::size_t threads) {
  const Blocks blocks(RowCount(), threads);
  std::vector<EdgeUse*> ends(blocks.Count());
  std::vector<Counts> counts(blocks.Count());
  // Each block moves the starts of its own rows, and reads that of the row behind them.
  std::vector<Index> nextStarts(blocks.Count());
  for (std::size_t i = 0; i < blocks.Count(); ++i) {
    nextStarts[i] = rowStarts_[blocks[i].end];
  }
  blocks.Run([&](std::size_t number, const Block& rows) {
    // An empty block begins with a row of another.
    if (rows.begin < rows.end) {
      ends[number] = SortRows(rows, nextStarts[number], counts[number]);
    }
  });
  for (const Counts& some : counts) {
    counts_ += some;
  }
  CloseGaps(blocks, ends);
}

EdgeUse* EdgeTable::SortRows(const Block& rows, Index behind, Counts& counts) {
  EdgeUse* kept = uses_.data() + rowStarts_[rows.begin];
  EdgeUse* begin = kept;
  for (std::size_t row = rows.begin; row < rows.end; ++row) {
    EdgeUse* const end = uses_.data() + (row + 1 < rows.end ? rowStarts_[row + 1] : behind);
    sortUses(begin, end);
    rowStarts_[row] = static_cast<Index>(kept - uses_.data());
    const EdgeUse* const first = kept;
    kept = withoutRepeats(begin, end, kept);
    CountRow(first, kept, counts);
    begin = end;
  }
  return kept;
}

// Moves the uses of all blocks up to those of the blocks before, whose ends these are.
void EdgeTable::CloseGaps(const Blocks& blocks, const std::vector<EdgeUse*>& ends) {
  EdgeUse* kept = uses_.data();
  for (std::size_t i = 0; i < blocks.Count(); ++i) {
    const Block rows = blocks[i];
    EdgeUse* const begin = uses_.data() + rowStarts_[rows.begin];
    if (rows.begin == rows.end) {
      continue;
    }
    const auto gap = static_cast<Index>(begin - kept);
    if (gap != 0) {
      std::copy(begin, ends[i], kept);
      for (std::size_t row = rows.begin; row < rows.end; ++row) {
        rowStarts_[row] -= gap;
      }
    }
    kept += ends[i] - begin;
  }
  rowStarts_.back() = static_cast<Index>(kept - uses_.data());
}

EdgeTable::Counts& EdgeTable::Counts::operator+=(const Counts& other) {
  edges += other.edges;
  borders += other.borders;
  nonManifold += other.nonManifold;
  disagreeing += other.disagreeing;
  return *this;
}

// Counts the kinds of the edges of one row.
void EdgeTable::CountRow(const EdgeUse* begin, const EdgeUse* end, Counts& counts) {
  while (begin != end) {
    const EdgeUse* next = begin + 1;
    while (next != end && next->Other() == begin->Other()) {
      ++next;
    }
    const std::ptrdiff_t count = next - begin;
    ++counts.edges;
    counts.borders += count == 1 ? 1 : 0;
    counts.nonManifold += count > 2 ? 1 : 0;
    counts.disagreeing += count == 2 && !isAgreeing(begin[0], begin[1]) ? 1 : 0;
    begin = next;
  }
}

void EdgeTable::TurnPolygons(const std::vector<char>& isFlipped, std::size_t threads) {
  const Blocks blocks(RowCount(), threads);
  std::vector<Counts> counts(blocks.Count());
  blocks.Run([&](std::size_t number, const Block& rows) {
    EdgeUse* const begin = uses_.data() + rowStarts_[rows.begin];
    EdgeUse* const end = uses_.data() + rowStarts_[rows.end];
    for (EdgeUse* use = begin; use != end; ++use) {
      if (isFlipped[use->Polygon()] != 0) {
        use->Turn();
      }
    }
    for (std::size_t row = rows.begin; row < rows.end; ++row) {
      CountRow(uses_.data() + rowStarts_[row], uses_.data() + rowStarts_[row + 1], counts[number]);
    }
  });
  counts_ = Counts();
  for (const Counts& some : counts) {
    counts_ += some;
  }
}

}  // namespace dxf2d::mesh
