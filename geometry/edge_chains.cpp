#include "geometry/edge_chains.h"

#include <algorithm>

#include "geometry/index_codes.h"

namespace {

// The number of the first point met at the place in plan of point `index`.
std::uint32_t planPointOf(const std::vector<KtPoint3>& points, int index, ChainScratch& scratch) {
  std::uint32_t& place = scratch.planPoint[static_cast<std::size_t>(index)];
  if (place == PointIndex::kNone) {
    const KtPoint3& point = points[static_cast<std::size_t>(index)];
    place = scratch.table.FindOrKeep(PointIndex::Hash(point.Get0(), point.Get1()),
                                     static_cast<std::uint32_t>(index),
                                     [&](std::uint32_t other) { return points[other] == point; });
  }
  return place;
}

// The segment of an edge as one key, the same from either end.
std::uint64_t segmentKey(std::uint32_t a, std::uint32_t b) {
  return static_cast<std::uint64_t>(std::min(a, b)) << 32 | std::max(a, b);
}

void buildRows(const std::vector<Edge>& edges, std::size_t pointCount, ChainScratch& scratch) {
  std::vector<ChainScratch::Row>& rows = scratch.rows;
  rows.assign(pointCount, {0, 0});
  const auto rowOf = [&](int point) -> ChainScratch::Row& {
    return rows[static_cast<std::size_t>(point)];
  };
  for (const Edge& edge : edges) {
    ++rowOf(edge.first).end;
    ++rowOf(edge.second).end;
  }
  std::uint32_t begin = 0;
  for (ChainScratch::Row& row : rows) {
    const std::uint32_t length = row.end;
    row = {begin, begin};
    begin += length;
  }
  scratch.ends.resize(edges.size() * 2);
  for (std::uint32_t e = 0; e < edges.size(); ++e) {
    scratch.ends[rowOf(edges[e].first).end++] = {e, edges[e].second};
    scratch.ends[rowOf(edges[e].second).end++] = {e, edges[e].first};
  }
}

}  // namespace

void removeCoincident(const std::vector<KtPoint3>& points, std::vector<Edge>& edges,
                      ChainScratch& scratch) {
  scratch.planPoint.assign(points.size(), PointIndex::kNone);
  scratch.table.Reset(std::min(points.size(), edges.size() * 2));
  for (const Edge& edge : edges) {
    planPointOf(points, edge.first, scratch);
    planPointOf(points, edge.second, scratch);
  }
  const auto keyOf = [&](const Edge& edge) {
    return segmentKey(scratch.planPoint[static_cast<std::size_t>(edge.first)],
                      scratch.planPoint[static_cast<std::size_t>(edge.second)]);
  };
  scratch.table.Reset(edges.size());
  std::uint32_t kept = 0;
  for (const Edge edge : edges) {
    const std::uint64_t key = keyOf(edge);
    if (key >> 32 == (key & 0xffffffffU)) {
      continue;
    }
    const std::uint32_t same =
        scratch.table.FindOrKeep(PointIndex::Hash(key), kept,
                                 [&](std::uint32_t other) { return keyOf(edges[other]) == key; });
    if (same == kept) {
      edges[kept++] = edge;
    }
  }
  edges.resize(kept);
}

void chainEdges(const std::vector<Edge>& edges, std::size_t pointCount, std::vector<int>& indices,
                ChainScratch& scratch) {
  indices.clear();
  buildRows(edges, pointCount, scratch);
  scratch.used.assign(edges.size(), 0);
  // Rows are used up from their front, so no edge is looked at more than twice.
  const auto follow = [&](int& point) {
    ChainScratch::Row& row = scratch.rows[static_cast<std::size_t>(point)];
    while (row.next < row.end) {
      const ChainScratch::EdgeEnd& candidate = scratch.ends[row.next++];
      if (!scratch.used[candidate.edge]) {
        scratch.used[candidate.edge] = 1;
        point = candidate.other;
        return true;
      }
    }
    return false;
  };
  for (std::size_t e = 0; e < edges.size(); ++e) {
    if (scratch.used[e]) {
      continue;
    }
    scratch.used[e] = 1;
    indices.push_back(edges[e].first);
    indices.push_back(edges[e].second);
    int end = edges[e].second;
    while (follow(end)) {
      indices.push_back(end);
    }
    indices.push_back(kLineStripCode);
  }
}
