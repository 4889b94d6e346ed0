#include "geometry/outline/edge_chains.h"

#include <algorithm>
#include <cassert>
#include <span>

#include "ktscene/kt_run_code.h"
#include "platform/prefetch.h"

namespace dxf2d {

namespace {

// Collects the points that edges use in `corners`, and stores for each, by point, the position in
// `corners` of the first one at the same place in plan.
void findPlanCorners(const std::vector<KtPoint3>& points, const std::vector<Edge>& edges,
                     ChainScratch& scratch) {
  auto& corners = scratch.corners;
  auto& planCorner = scratch.planCorner;
  planCorner.assign(points.size(), PointIndex::kNone);
  corners.clear();
  for (const Edge& edge : edges) {
    for (const int end : {edge.first, edge.second}) {
      assert(namesPoint(end, points.size()));
      const auto point = static_cast<std::uint32_t>(end);
      if (planCorner[point] == PointIndex::kNone) {
        planCorner[point] = static_cast<std::uint32_t>(corners.size());
        corners.push_back(point);
      }
    }
  }
  scratch.table.Reset(corners.size());
  struct Corner {
    std::uint64_t hash;
  };
  forEachPrefetched(
      scratch.table, corners.size(),
      [&](std::size_t i) {
        const KtPoint3& point = points[corners[i]];
        return Corner{PointIndex::Hash(point.Get0(), point.Get1())};
      },
      [&](std::size_t i, const Corner& corner) {
        const KtPoint3& point = points[corners[i]];
        planCorner[corners[i]] = scratch.table.FindOrInsert(
            corner.hash, static_cast<std::uint32_t>(i),
            [&](std::uint32_t other) { return points[corners[other]] == point; });
        return true;
      });
}

// Sorts the edges' ends by point.
void buildRows(const std::vector<Edge>& edges, std::size_t pointCount, ChainScratch& scratch) {
  auto& rows = scratch.rows;
  rows.assign(pointCount, {0, 0});
  const auto rowOf = [&](int point) -> ChainScratch::Row& {
    return rows[static_cast<std::size_t>(point)];
  };
  for (const Edge& edge : edges) {
    assert(namesPoint(edge.first, pointCount) && namesPoint(edge.second, pointCount));
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
  findPlanCorners(points, edges, scratch);
  const auto planCornerOf = [&](int point) {
    return scratch.planCorner[static_cast<std::size_t>(point)];
  };
  // Smaller corner first: a segment is the same in either direction.
  scratch.segments.Build(scratch.corners.size(), 1, [&](Block /*rows*/, auto visit) {
    for (std::uint32_t e = 0; e < edges.size(); ++e) {
      const std::uint32_t a = planCornerOf(edges[e].first);
      const std::uint32_t b = planCornerOf(edges[e].second);
      if (a != b) {
        visit(std::min(a, b), std::max(a, b), e);
      }
    }
  });
  scratch.used.assign(edges.size(), 0);
  scratch.segments.ForEachPair(
      {0, scratch.segments.RowCount()},
      [&](std::uint32_t /*a*/, std::uint32_t /*b*/, std::span<const std::uint64_t> entries) {
        scratch.used[tagOf(entries.front())] = 1;
      });
  std::size_t kept = 0;
  for (std::size_t e = 0; e < edges.size(); ++e) {
    if (scratch.used[e]) {
      edges[kept++] = edges[e];
    }
  }
  edges.resize(kept);
}

void chainEdges(const std::vector<Edge>& edges, std::size_t pointCount, std::vector<int>& indices,
                ChainScratch& scratch) {
  indices.clear();
  buildRows(edges, pointCount, scratch);
  scratch.used.assign(edges.size(), 0);
  // Rows are consumed from the front, so no edge is visited more than twice.
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
    indices.push_back(KtRunCode::kLineStrip);
  }
}

}  // namespace dxf2d
