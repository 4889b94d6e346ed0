#include "geometry/face_wires.h"

#include <algorithm>
#include <cstddef>
#include <span>

#include "geometry/outline/edge.h"
#include "geometry/outline/runs.h"
#include "geometry/segment_grid.h"
#include "ktscene/kt_run_code.h"

namespace dxf2d {

namespace {

// Calls visit(run, code) for every run of a list in which each negative entry is a code.
template <class Visit>
void forEachRunAndCode(std::span<const int> indices, Visit visit) {
  forEachRun(indices, {}, [&](std::size_t begin, std::size_t end) {
    visit(indices.subspan(begin, end - begin), indices[end]);
    return true;
  });
}

void append(std::vector<int>& list, std::span<const int> run) {
  list.insert(list.end(), run.begin(), run.end());
}

// Every edge once, in edge order; with `planar` only those that occur an odd number of times.
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
      runs.insert(runs.end(), {begin->first, begin->second, KtRunCode::kSegment});
    }
    begin = end;
  }
}

void appendFanLoop(std::span<const int> run, std::vector<int>& runs) {
  append(runs, run);
  runs.insert(runs.end(), {run.front(), KtRunCode::kLineStrip});
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
  runs.insert(runs.end(), {run.front(), KtRunCode::kLineStrip});
}

std::vector<char> drawablePoints(const std::vector<KtPoint3>& points, const KtMatrix& matrix) {
  std::vector<char> drawable;
  drawable.reserve(points.size());
  for (const KtPoint3& point : points) {
    KtPoint3 placed = point;
    placed.Mult(matrix);
    drawable.push_back(isFinite(point) && isFinite(placed) ? 1 : 0);
  }
  return drawable;
}

}  // namespace

std::vector<int> regroupRuns(const std::vector<int>& coordIndex) {
  std::vector<int> regrouped;
  const auto appendRuns = [&](int wanted) {
    forEachRunAndCode(coordIndex, [&](std::span<const int> run, int code) {
      if (code == wanted) {
        append(regrouped, run);
        if (code != KtRunCode::kTriangles) {
          regrouped.push_back(code);
        }
      }
    });
  };
  appendRuns(KtRunCode::kTriangles);
  if (!regrouped.empty()) {
    regrouped.push_back(KtRunCode::kTriangles);
  }
  appendRuns(KtRunCode::kTriangleFan);
  appendRuns(KtRunCode::kTriangleStrip);
  appendRuns(KtRunCode::kPolygon);
  return regrouped;
}

std::vector<int> edgeRuns(const std::vector<int>& regrouped, bool planar) {
  std::vector<int> runs;
  // Polygons contribute no edges.
  forEachRunAndCode(regrouped, [&](std::span<const int> run, int code) {
    if (code == KtRunCode::kTriangles) {
      appendTriangleEdges(run, planar, runs);
    } else if (code == KtRunCode::kTriangleFan && run.size() >= 3) {
      appendFanLoop(run, runs);
    } else if (code == KtRunCode::kTriangleStrip && run.size() >= 3) {
      appendStripLoop(run, runs);
    }
  });
  return runs;
}

std::vector<int> distinctSegments(const std::vector<int>& edgeRuns,
                                  const std::vector<KtPoint3>& points, const KtMatrix& matrix) {
  const std::vector<char> drawable = drawablePoints(points, matrix);
  const auto canDraw = [&](int index) {
    return namesPoint(index, points.size()) && drawable[static_cast<std::size_t>(index)];
  };
  SegmentGrid distinct;
  std::vector<int> segments;
  const auto addIfDistinct = [&](int i, int j) {
    if (!canDraw(i) || !canDraw(j)) {
      return;
    }
    const KtPoint3& a = points[static_cast<std::size_t>(i)];
    const KtPoint3& b = points[static_cast<std::size_t>(j)];
    if (distinct.InsertIfAbsent({a.Get0(), a.Get1(), b.Get0(), b.Get1()})) {
      segments.insert(segments.end(), {i, j, KtRunCode::kSegment});
    }
  };
  forEachRunAndCode(edgeRuns, [&](std::span<const int> run, int code) {
    if (code == KtRunCode::kLineStrip) {
      addIfDistinct(run.front(), run.back());
    }
    for (std::size_t k = 0; k + 1 < run.size(); ++k) {
      addIfDistinct(run[k], run[k + 1]);
    }
  });
  return segments;
}

}  // namespace dxf2d
