#include "geometry/run_expansion.h"

#include <algorithm>
#include <cstddef>

#include "geometry/index_codes.h"
#include "platform/large_memory.h"

namespace {

// Entries that a polygon has at least.
constexpr std::size_t kLeastPolygon = 3;

// Expands one list; positions are positions in it.
class RunExpander {
 public:
  RunExpander(const std::vector<int>& indices, std::size_t pointCount, ExpandedRuns& runs)
      : indices_(indices), pointCount_(pointCount), runs_(runs) {}

  // The run at [begin, end) is closed by the code at `end`.
  void Expand(std::size_t begin, std::size_t end, SegmentRuns segmentRuns) {
    const std::size_t length = end - begin;
    switch (indices_[end]) {
      case kPolygonCode:
        if (length >= kLeastPolygon) {
          addPolygon(begin, end);
        }
        break;
      case kLineStripCode:
        addStrip(begin, end);
        break;
      case kTrianglesCode:
        addTriangles(begin, end);
        break;
      case kFanCode:
        for (std::size_t k = 0; k + 2 < length; ++k) {
          addTriangle(begin, begin + k + 1, begin + k + 2);
        }
        break;
      case kStripCode:
        // Every other triangle swaps its last two points, so that all wind the same way.
        for (std::size_t k = 0; k + 2 < length; ++k) {
          addTriangle(begin + k, begin + k + (k & 1) + 1, begin + k + ((k + 1) & 1) + 1);
        }
        break;
      case kSegmentCode:
        if (length == 2 || segmentRuns == SegmentRuns::kStrips) {
          addStrip(begin, end);
        }
        break;
      default:
        break;
    }
  }

 private:
  void addPolygon(std::size_t begin, std::size_t end) {
    runs_.polygons.insert(runs_.polygons.end(),
                          indices_.begin() + static_cast<std::ptrdiff_t>(begin),
                          indices_.begin() + static_cast<std::ptrdiff_t>(end));
    runs_.polygons.push_back(kPolygonCode);
  }

  void addTriangle(std::size_t a, std::size_t b, std::size_t c) {
    runs_.polygons.insert(runs_.polygons.end(),
                          {indices_[a], indices_[b], indices_[c], kPolygonCode});
  }

  // A last group of fewer than three takes the entries that follow as they stand, the list's own
  // code included, as far as the index list goes.
  void addTriangles(std::size_t begin, std::size_t end) {
    if (end - begin < 3) {
      return;
    }
    for (std::size_t k = begin; k < end; k += 3) {
      addPolygon(k, std::min(k + 3, indices_.size()));
    }
  }

  void addStrip(std::size_t begin, std::size_t end) {
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

// Calls visit(begin, end) for each run [begin, end), whose code is at `end`, until it answers
// false.
template <class Visit>
void forEachRun(const std::vector<int>& indices, Visit visit) {
  std::size_t begin = 0;
  std::size_t cursor = 0;
  while (cursor < indices.size()) {
    if (indices[cursor] >= 0) {
      ++cursor;
      continue;
    }
    if (!visit(begin, cursor)) {
      return;
    }
    begin = cursor + 1;
    // Deliberately three and not one: every run is taken to have two entries at least, so the two
    // after a code are never looked at as codes.
    cursor += 3;
  }
}

}  // namespace

void expandRuns(const std::vector<int>& indices, std::size_t pointCount, SegmentRuns segmentRuns,
                ExpandedRuns& runs) {
  runs.polygons.clear();
  runs.edges.clear();
  // Enough for polygons and triangles, which are nearly all there is.
  ReserveLarge(runs.polygons, indices.size());
  RunExpander expander(indices, pointCount, runs);
  forEachRun(indices, [&](std::size_t begin, std::size_t end) {
    expander.Expand(begin, end, segmentRuns);
    return true;
  });
}

bool isPolygonList(const std::vector<int>& indices) {
  std::size_t next = 0;
  forEachRun(indices, [&](std::size_t begin, std::size_t end) {
    const bool counts = indices[end] == kPolygonCode && end - begin >= kLeastPolygon;
    next = counts ? end + 1 : next;
    return counts;
  });
  return next == indices.size();
}
