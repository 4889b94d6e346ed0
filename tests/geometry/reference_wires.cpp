#include "tests/geometry/reference_wires.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <set>
#include <utility>

#include "ktscene/kt_matrix.h"

namespace dxf2d {

namespace {

using Segment = std::array<double, 4>;

void pushRunsOf(int code, const std::vector<int>& list, std::vector<int>& out) {
  std::size_t s = 0;
  for (std::size_t e = 0; e < list.size(); ++e) {
    if (list.at(e) >= 0) {
      continue;
    }
    if (list.at(e) == code) {
      for (std::size_t k = s; k < e; ++k) {
        out.push_back(list.at(k));
      }
      if (code != -5) {
        out.push_back(code);
      }
    }
    s = e + 1;
  }
}

void pushTriangleEdges(const std::vector<int>& run, bool planar, std::vector<int>& out) {
  if (run.size() % 3 != 0) {
    return;
  }
  std::set<std::pair<int, int>> edges;
  for (std::size_t k = 0; k < run.size(); ++k) {
    const int a = run.at(k);
    const int b = k % 3 == 2 ? run.at(k - 2) : run.at(k + 1);
    const auto [place, isNew] = edges.emplace(a < b ? a : b, a < b ? b : a);
    if (!isNew && planar) {
      edges.erase(place);
    }
  }
  for (const auto& [a, b] : edges) {
    out.insert(out.end(), {a, b, -1});
  }
}

void pushStripLoop(const std::vector<int>& run, std::vector<int>& out) {
  out.push_back(run.at(0));
  for (std::size_t k = 1; k < run.size(); k += 2) {
    out.push_back(run.at(k));
  }
  for (std::size_t k = run.size() - 1; k >= 2; --k) {
    if (k % 2 == 0) {
      out.push_back(run.at(k));
    }
  }
  out.insert(out.end(), {run.at(0), -6});
}

bool isNear(double a, double b) { return std::fabs(a - b) <= 0.0001; }

bool matches(const Segment& a, const Segment& b) {
  return isNear(a[0], b[0]) && isNear(a[1], b[1]) && isNear(a[2], b[2]) && isNear(a[3], b[3]);
}

class SegmentList {
 public:
  SegmentList(const std::vector<KtPoint3>& points, const KtMatrix& matrix)
      : points_(points), matrix_(matrix) {}

  void Take(int i, int j) {
    if (!CanDraw(i) || !CanDraw(j)) {
      return;
    }
    const KtPoint3& p = points_.at(static_cast<std::size_t>(i));
    const KtPoint3& q = points_.at(static_cast<std::size_t>(j));
    const Segment segment = {p.Get0(), p.Get1(), q.Get0(), q.Get1()};
    const Segment reversed = {q.Get0(), q.Get1(), p.Get0(), p.Get1()};
    for (const Segment& kept : kept_) {
      if (matches(kept, segment) || matches(kept, reversed)) {
        return;
      }
    }
    kept_.push_back(segment);
    runs_.insert(runs_.end(), {i, j, -1});
  }

  const std::vector<int>& Runs() const { return runs_; }

 private:
  static bool IsFinite(const KtPoint3& point) {
    return std::isfinite(point.Get0()) && std::isfinite(point.Get1()) &&
           std::isfinite(point.Get2());
  }

  bool CanDraw(int index) const {
    if (index < 0 || index >= static_cast<int>(points_.size())) {
      return false;
    }
    KtPoint3 point = points_.at(static_cast<std::size_t>(index));
    if (!IsFinite(point)) {
      return false;
    }
    point.Mult(matrix_);
    return IsFinite(point);
  }

  const std::vector<KtPoint3>& points_;
  KtMatrix matrix_;
  std::vector<Segment> kept_;
  std::vector<int> runs_;
};

}  // namespace

std::vector<int> referenceRegroupRuns(const std::vector<int>& coordIndex) {
  std::vector<int> out;
  pushRunsOf(-5, coordIndex, out);
  if (!out.empty()) {
    out.push_back(-5);
  }
  pushRunsOf(-4, coordIndex, out);
  pushRunsOf(-3, coordIndex, out);
  pushRunsOf(-7, coordIndex, out);
  return out;
}

std::vector<int> referenceEdgeRuns(const std::vector<int>& regrouped, bool planar) {
  std::vector<int> out;
  std::vector<int> run;
  for (const int entry : regrouped) {
    if (entry >= 0) {
      run.push_back(entry);
      continue;
    }
    if (entry == -5) {
      pushTriangleEdges(run, planar, out);
    } else if (entry == -4 && run.size() >= 3) {
      out.insert(out.end(), run.begin(), run.end());
      out.insert(out.end(), {run.at(0), -6});
    } else if (entry == -3 && run.size() >= 3) {
      pushStripLoop(run, out);
    }
    if (entry != -7) {
      run.clear();
    }
  }
  return out;
}

std::vector<int> referenceDistinctSegments(const std::vector<int>& edgeRuns,
                                           const std::vector<KtPoint3>& points,
                                           const KtMatrix& matrix) {
  SegmentList segments(points, matrix);
  for (std::size_t s = 0; s < edgeRuns.size();) {
    std::size_t e = s + 1;
    while (e < edgeRuns.size() && edgeRuns.at(e) >= 0) {
      ++e;
    }
    if (e >= edgeRuns.size()) {
      break;
    }
    if (edgeRuns.at(e) == -6) {
      segments.Take(edgeRuns.at(s), edgeRuns.at(e - 1));
    }
    for (std::size_t k = s; k + 1 < e; ++k) {
      segments.Take(edgeRuns.at(k), edgeRuns.at(k + 1));
    }
    s = e + 1;
  }
  return segments.Runs();
}

}  // namespace dxf2d
