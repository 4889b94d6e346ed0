#include "geometry/face_wires.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

#include "geometry/edge.h"
#include "geometry/index_codes.h"
#include "geometry/segment_grid.h"
#include "ktscene/kt_matrix.h"

namespace {

// Calls visit(run, code) for every run of a list in which each negative entry closes one.
template <class Visit>
void forEachRun(std::span<const int> indices, Visit visit) {
  std::size_t begin = 0;
  for (std::size_t k = 0; k < indices.size(); ++k) {
    if (indices[k] < 0) {
      visit(indices.subspan(begin, k - begin), indices[k]);
      begin = k + 1;
    }
  }
}

void append(std::vector<int>& list, std::span<const int> run) {
  list.insert(list.end(), run.begin(), run.end());
}

// Every edge once, in edge order; with `planar` only those that stand an odd number of times.
void appendTriangleEdges(std::span<const int> run, bool planar, std::vector<int>& runs) {
  if (run.size() % 3 != 0) {
    return;
  }
  std::vector<Edge> edges;
  edges.reserve(run.size());
  for (std::size_t k = 0; k < run.size(); k += 3) {
    for (const auto& [a, b] :
         {Edge{run[k], run[k + 1]}, Edge{run[k + 1], run[k + 2]}, Edge{run[k + 2], run[k]}}) {
      edges.push_back({std::min(a, b), std::max(a, b)});
    }
  }
  std::sort(edges.begin(), edges.end());
  for (auto begin = edges.begin(); begin != edges.end();) {
    const auto end = std::find_if(begin, edges.end(), [&](const Edge& e) { return e != *begin; });
    if (!planar || (end - begin) % 2 == 1) {
      runs.insert(runs.end(), {begin->first, begin->second, kSegmentCode});
    }
    begin = end;
  }
}

void appendFanLoop(std::span<const int> run, std::vector<int>& runs) {
  append(runs, run);
  runs.insert(runs.end(), {run.front(), kLineStripCode});
}

// Up one side of the strip and down the other.
void appendStripLoop(std::span<const int> run, std::vector<int>& runs) {
  runs.push_back(run.front());
  for (std::size_t k = 1; k < run.size(); k += 2) {
    runs.push_back(run[k]);
  }
  for (std::size_t k = (run.size() - 1) / 2 * 2; k >= 2; k -= 2) {
    runs.push_back(run[k]);
  }
  runs.insert(runs.end(), {run.front(), kLineStripCode});
}

bool isFinite(const KtPoint3& point) {
  return std::isfinite(point.Get0()) && std::isfinite(point.Get1()) && std::isfinite(point.Get2());
}

std::vector<char> drawablePoints(const std::vector<KtPoint3>& points, const double* matrix) {
  KtMatrix world;
  world.Init(matrix);
  std::vector<char> drawable;
  drawable.reserve(points.size());
  for (const KtPoint3& point : points) {
    KtPoint3 placed = point;
    placed.Mult(world);
    drawable.push_back(isFinite(point) && isFinite(placed) ? 1 : 0);
  }
  return drawable;
}

}  // namespace

std::vector<int> regroupRuns(const std::vector<int>& coordIndex) {
  std::vector<int> regrouped;
  const auto appendRuns = [&](int wanted) {
    forEachRun(coordIndex, [&](std::span<const int> run, int code) {
      if (code == wanted) {
        append(regrouped, run);
        if (code != kTrianglesCode) {
          regrouped.push_back(code);
        }
      }
    });
  };
  appendRuns(kTrianglesCode);
  if (!regrouped.empty()) {
    regrouped.push_back(kTrianglesCode);
  }
  appendRuns(kFanCode);
  appendRuns(kStripCode);
  appendRuns(kPolygonCode);
  return regrouped;
}

std::vector<int> edgeRuns(const std::vector<int>& regrouped, bool planar) {
  std::vector<int> runs;
  // Polygons come last and give nothing, so that a polygon's run is not advanced past has no
  // effect.
  forEachRun(regrouped, [&](std::span<const int> run, int code) {
    if (code == kTrianglesCode) {
      appendTriangleEdges(run, planar, runs);
    } else if (code == kFanCode && run.size() >= 3) {
      appendFanLoop(run, runs);
    } else if (code == kStripCode && run.size() >= 3) {
      appendStripLoop(run, runs);
    }
  });
  return runs;
}

std::vector<int> distinctSegments(const std::vector<int>& edgeRuns,
                                  const std::vector<KtPoint3>& points, const double* matrix) {
  const std::vector<char> drawable = drawablePoints(points, matrix);
  const auto canDraw = [&](int index) {
    return namesPoint(index, points.size()) && drawable[static_cast<std::size_t>(index)];
  };
  SegmentGrid kept;
  std::vector<int> segments;
  const auto keep = [&](int i, int j) {
    if (!canDraw(i) || !canDraw(j)) {
      return;
    }
    const KtPoint3& a = points[static_cast<std::size_t>(i)];
    const KtPoint3& b = points[static_cast<std::size_t>(j)];
    if (kept.KeepIfNew({a.Get0(), a.Get1(), b.Get0(), b.Get1()})) {
      segments.insert(segments.end(), {i, j, kSegmentCode});
    }
  };
  forEachRun(edgeRuns, [&](std::span<const int> run, int code) {
    if (code == kLineStripCode) {
      keep(run.front(), run.back());
    }
    for (std::size_t k = 0; k + 1 < run.size(); ++k) {
      keep(run[k], run[k + 1]);
    }
  });
  return segments;
}
