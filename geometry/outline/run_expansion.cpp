#include "geometry/outline/run_expansion.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "geometry/outline/runs.h"
#include "ktscene/kt_run_code.h"
#include "platform/large_memory.h"
#include "platform/parallel.h"

namespace dxf2d {

namespace {

// A polygon has at least this many entries.
constexpr std::size_t kLeastPolygon = 3;

// Expands the runs of one list. `begin`, `end` and other positions refer to that list.
class RunExpander {
 public:
  RunExpander(const std::vector<int>& indices, std::size_t pointCount, ExpandedRuns& runs)
      : indices_(indices), pointCount_(pointCount), runs_(runs) {}

  // Expands the run at [begin, end), whose terminator is at `end`.
  void Expand(std::size_t begin, std::size_t end, SegmentRuns segmentRuns) {
    const std::size_t length = end - begin;
    switch (indices_[end]) {
      case KtRunCode::kPolygon:
        if (length >= kLeastPolygon) {
          AddPolygon(begin, end);
        }
        break;
      case KtRunCode::kLineStrip:
        AddStrip(begin, end);
        break;
      case KtRunCode::kTriangles:
        AddTriangles(begin, end);
        break;
      case KtRunCode::kTriangleFan:
        for (std::size_t k = 0; k + 2 < length; ++k) {
          AddTriangle(begin, begin + k + 1, begin + k + 2);
        }
        break;
      case KtRunCode::kTriangleStrip:
        // Every other triangle swaps its last two points, so that all have the same winding.
        for (std::size_t k = 0; k + 2 < length; ++k) {
          AddTriangle(begin + k, begin + k + (k & 1) + 1, begin + k + ((k + 1) & 1) + 1);
        }
        break;
      case KtRunCode::kSegment:
        if (length == 2 || segmentRuns == SegmentRuns::kStrips) {
          AddStrip(begin, end);
        }
        break;
      default:
        break;
    }
  }

 private:
  void AddPolygon(std::size_t begin, std::size_t end) {
    runs_.polygons.insert(runs_.polygons.end(),
                          indices_.begin() + static_cast<std::ptrdiff_t>(begin),
                          indices_.begin() + static_cast<std::ptrdiff_t>(end));
    runs_.polygons.push_back(KtRunCode::kPolygon);
  }

  void AddTriangle(std::size_t a, std::size_t b, std::size_t c) {
    runs_.polygons.insert(runs_.polygons.end(),
                          {indices_[a], indices_[b], indices_[c], KtRunCode::kPolygon});
  }

  // A last group of fewer than three entries takes those that follow as well, including the run's
  // own terminator, up to the end of the index list.
  void AddTriangles(std::size_t begin, std::size_t end) {
    if (end - begin < 3) {
      return;
    }
    for (std::size_t k = begin; k < end; k += 3) {
      AddPolygon(k, std::min(k + 3, indices_.size()));
    }
  }

  void AddStrip(std::size_t begin, std::size_t end) {
    for (std::size_t k = begin; k + 1 < end; ++k) {
      if (namesPoint(indices_[k], pointCount_) && namesPoint(indices_[k + 1], pointCount_)) {
        runs_.edges.push_back({indices_[k], indices_[k + 1]});
      }
    }
  }

  const std::vector<int>& indices_;
  std::size_t pointCount_;
  ExpandedRuns& runs_;
};

// What the list of triangles looks like in a block of them.
TriangleRuns triangleRunsIn(const int* indices, Block triangles) {
  // So many at a time: a list of something else mostly begins with it.
  constexpr std::size_t kBatch = 1024;
  std::uint32_t shared = 0;
  for (std::size_t begin = triangles.begin; begin < triangles.end; begin += kBatch) {
    std::uint32_t other = 0;
    const std::size_t end = std::min(begin + kBatch, triangles.end);
    for (std::size_t i = begin; i < end; ++i) {
      const int* const run = indices + kTriangleRun * i;
      for (std::uint32_t corner = 0; corner < 3; ++corner) {
        const auto point = static_cast<std::uint32_t>(run[corner]);
        other |= point >> 31U;
        shared |= point ^ (3 * static_cast<std::uint32_t>(i) + corner);
      }
      other |= static_cast<std::uint32_t>(run[3] ^ KtRunCode::kPolygon);
    }
    if (other != 0) {
      return TriangleRuns::kOther;
    }
  }
  return shared == 0 ? TriangleRuns::kSeparate : TriangleRuns::kAny;
}

// Deliberately two: every run is taken to have two entries at least, so the two after a code are
// never taken for codes. Only the list's first run may be shorter.
constexpr RunScan kTwoEntriesAtLeast{.skippedInFirst = 0, .skippedInLater = 2};

}  // namespace

void expandRuns(const std::vector<int>& indices, std::size_t pointCount, SegmentRuns segmentRuns,
                ExpandedRuns& runs) {
  runs.polygons.clear();
  runs.edges.clear();
  // Enough for polygons and for lists of triangles, the most frequent runs.
  reserveLarge(runs.polygons, indices.size());
  RunExpander expander(indices, pointCount, runs);
  forEachRun(indices, kTwoEntriesAtLeast, [&](std::size_t begin, std::size_t end) {
    expander.Expand(begin, end, segmentRuns);
    return true;
  });
}

TriangleRuns triangleRunsOf(const std::vector<int>& indices, std::size_t threads) {
  if (indices.empty() || indices.size() % kTriangleRun != 0) {
    return TriangleRuns::kOther;
  }
  const Blocks blocks(indices.size() / kTriangleRun, threads);
  std::vector<TriangleRuns> runs(blocks.Count());
  blocks.Run([&](std::size_t number, Block block) {
    runs[number] = triangleRunsIn(indices.data(), block);
  });
  return *std::min_element(runs.begin(), runs.end());
}

bool isPolygonList(const std::vector<int>& indices) {
  std::size_t next = 0;
  forEachRun(indices, kTwoEntriesAtLeast, [&](std::size_t begin, std::size_t end) {
    const bool isPolygon = indices[end] == KtRunCode::kPolygon && end - begin >= kLeastPolygon;
    next = isPolygon ? end + 1 : next;
    return isPolygon;
  });
  return next == indices.size();
}

}  // namespace dxf2d
