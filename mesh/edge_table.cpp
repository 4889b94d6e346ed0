#include "mesh/edge_table.h"

#include <algorithm>

namespace dxf2d::mesh {

namespace {

template <class Visit>
void visitIfApart(Index from, Index to, Index polygon, Visit& visit) {
  if (from != to) {
    visit(from, to, polygon);
  }
}

// Calls visit(from, to, polygon) for every edge of every polygon.
template <class Visit>
void forEachHalfEdge(const PolygonMesh& mesh, Visit visit) {
  const auto polygonCount = static_cast<Index>(mesh.PolygonCount());
  for (Index p = 0; p < polygonCount; ++p) {
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

EdgeTable::EdgeTable(const PolygonMesh& mesh) {
  // Counted into the row after the next, so that filling, which advances the row after, leaves
  // every row's start in its own place.
  rowStarts_.assign(mesh.points.size() + 2, 0);
  forEachHalfEdge(mesh, [&](Index from, Index to, Index /*polygon*/) {
    ++rowStarts_[std::size_t{std::min(from, to)} + 2];
  });
  for (std::size_t row = 2; row < rowStarts_.size(); ++row) {
    rowStarts_[row] += rowStarts_[row - 1];
  }
  uses_.resize(rowStarts_.back(), EdgeUse(0, 0, false));
  forEachHalfEdge(mesh, [&](Index from, Index to, Index polygon) {
    const bool isForward = from < to;
    uses_[rowStarts_[std::size_t{isForward ? from : to} + 1]++] =
        EdgeUse(isForward ? to : from, polygon, isForward);
  });
  rowStarts_.pop_back();
  SortRows();
}

void EdgeTable::SortRows() {
  EdgeUse* kept = uses_.data();
  EdgeUse* begin = uses_.data();
  for (std::size_t row = 0; row + 1 < rowStarts_.size(); ++row) {
    EdgeUse* const end = uses_.data() + rowStarts_[row + 1];
    sortUses(begin, end);
    rowStarts_[row] = static_cast<Index>(kept - uses_.data());
    const EdgeUse* const first = kept;
    kept = withoutRepeats(begin, end, kept);
    CountRow(first, kept);
    begin = end;
  }
  uses_.resize(static_cast<std::size_t>(kept - uses_.data()), EdgeUse(0, 0, false));
  rowStarts_.back() = static_cast<Index>(uses_.size());
}

// Counts the kinds of the edges of one row.
void EdgeTable::CountRow(const EdgeUse* begin, const EdgeUse* end) {
  while (begin != end) {
    const EdgeUse* next = begin + 1;
    while (next != end && next->Other() == begin->Other()) {
      ++next;
    }
    const std::ptrdiff_t count = next - begin;
    ++edgeCount_;
    borderCount_ += count == 1 ? 1 : 0;
    nonManifoldCount_ += count > 2 ? 1 : 0;
    disagreeingCount_ += count == 2 && !isAgreeing(begin[0], begin[1]) ? 1 : 0;
    begin = next;
  }
}

void EdgeTable::CountKinds() {
  edgeCount_ = borderCount_ = nonManifoldCount_ = disagreeingCount_ = 0;
  for (std::size_t row = 0; row + 1 < rowStarts_.size(); ++row) {
    CountRow(uses_.data() + rowStarts_[row], uses_.data() + rowStarts_[row + 1]);
  }
}

void EdgeTable::TurnPolygons(const std::vector<char>& isFlipped) {
  for (EdgeUse& use : uses_) {
    if (isFlipped[use.Polygon()] != 0) {
      use.Turn();
    }
  }
  CountKinds();
}

}  // namespace dxf2d::mesh
