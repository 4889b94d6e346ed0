#include "app/linework/crowd_thinning.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "app/linework/aligned_edge.h"

namespace dxf2d::linework {

namespace {

// Up to so many, comparing each with each is fast.
constexpr std::size_t kCrowd = 16;

struct Place {
  std::uint64_t cell;
  EdgeNumber edge;
};

std::uint64_t mixed(std::uint64_t hash, std::int64_t value) {
  hash = (hash ^ static_cast<std::uint64_t>(value)) * 0x9E3779B97F4A7C15U;
  return hash ^ (hash >> 29U);
}

class CrowdThinning {
 public:
  CrowdThinning(Graph& graph, double tolerance)
      : graph_(graph), tolerance_(tolerance), isCovered_(graph.edges.size(), 0) {}

  // Returns whether anything was taken out.
  bool Run(std::span<const EdgeNumber> suspects) {
    std::vector<Place> places;
    for (const EdgeNumber edge : suspects) {
      if (length(VectorOf(edge)) >= kLeastTolerances * tolerance_) {
        places.push_back({CellOf(edge), edge});
      }
    }
    std::ranges::sort(places, [](const Place& a, const Place& b) {
      return a.cell != b.cell ? a.cell < b.cell : a.edge < b.edge;
    });
    for (std::size_t begin = 0, end = 0; begin < places.size(); begin = end) {
      while (end < places.size() && places[end].cell == places[begin].cell) {
        ++end;
      }
      if (end - begin > kCrowd) {
        Thin(std::span(places).subspan(begin, end - begin));
      }
    }
    return RemoveCovered();
  }

 private:
  // An edge along the axis of its crowd.
  struct Span {
    EdgeNumber edge;
    double low;
    double high;
    PlanPoint lowEnd;
    PlanPoint highEnd;
  };

  // Counted from some point of the linework, which may be far from the origin.
  PlanPoint PointOf(PointNumber point) const {
    return graph_.points[point] - graph_.points.front();
  }
  PlanPoint VectorOf(EdgeNumber edge) const {
    return graph_.points[graph_.edges[edge].to] - graph_.points[graph_.edges[edge].from];
  }

  int ClassOf(EdgeNumber edge) const { return directionClassOf(directionOf(VectorOf(edge))); }

  // Edges of one direction and about one length, whose middles are in one column as wide as they
  // are long, and whose lines pass its middle at one height. Different cells may have one number.
  std::uint64_t CellOf(EdgeNumber edge) const {
    const PlanPoint vector = VectorOf(edge);
    const int number = ClassOf(edge);
    const int level = lengthLevelOf(length(vector) / (kLeastTolerances * tolerance_));
    const double width = columnWidthOf(level, tolerance_);
    const AlignedEdge aligned(PointOf(graph_.edges[edge].from), vector, axes_[number]);
    const std::int64_t column = cellOf(aligned.Middle(), width);
    const double across = aligned.AcrossColumn(column, width);
    std::uint64_t hash = mixed(static_cast<std::uint64_t>(number), level);
    hash = mixed(hash, column);
    return mixed(hash, cellOf(across, kStepTolerances * tolerance_)) | 1U;
  }

  Span SpanOf(EdgeNumber edge, PlanPoint axis) const {
    const PlanPoint from = PointOf(graph_.edges[edge].from);
    const PlanPoint to = PointOf(graph_.edges[edge].to);
    const double a = dot(axis, from);
    const double b = dot(axis, to);
    return a <= b ? Span{edge, a, b, from, to} : Span{edge, b, a, to, from};
  }

  // Whether a point lies on the span.
  bool IsOn(PlanPoint point, const Span& span) const {
    constexpr double kShare = 0.125;
    const PlanPoint vector = span.highEnd - span.lowEnd;
    const double size = length(vector);
    const PlanPoint there = point - span.lowEnd;
    const double along = dot(vector, there) / size;
    const double least = kShare * tolerance_;
    return std::abs(cross(vector, there)) <= least * size && along >= -least &&
           along <= size + least;
  }

  // Whether `covered` lies on two that overlap, `before` beginning first.
  bool IsOnBoth(const Span& covered, const Span& before, const Span& after) const {
    return after.low <= before.high && IsOn(covered.lowEnd, before) &&
           IsOn(covered.highEnd, after) && IsOn(before.highEnd, covered) &&
           IsOn(after.lowEnd, covered);
  }

  // Goes along the line: what lies on one that began before goes, and so does what lies on the two
  // before and after it.
  void Thin(std::span<const Place> crowd) {
    const PlanPoint axis = axes_[ClassOf(crowd.front().edge)];
    std::vector<Span> spans;
    spans.reserve(crowd.size());
    for (const Place& place : crowd) {
      spans.push_back(SpanOf(place.edge, axis));
    }
    std::ranges::sort(spans, [](const Span& a, const Span& b) {
      if (a.low != b.low) {
        return a.low < b.low;
      }
      return a.high != b.high ? a.high > b.high : a.edge < b.edge;
    });
    std::vector<Span> kept;
    for (const Span& span : spans) {
      if (IsOnLast(span, kept)) {
        isCovered_[span.edge] = 1;
        continue;
      }
      while (kept.size() >= 2 && IsOnBoth(kept.back(), kept[kept.size() - 2], span)) {
        isCovered_[kept.back().edge] = 1;
        kept.pop_back();
      }
      kept.push_back(span);
    }
  }

  // A few lines may lie side by side.
  bool IsOnLast(const Span& span, const std::vector<Span>& kept) const {
    constexpr std::size_t kLast = 4;
    const std::size_t count = std::min(kLast, kept.size());
    return std::any_of(
        kept.rbegin(), kept.rbegin() + static_cast<std::ptrdiff_t>(count),
        [&](const Span& other) { return IsOn(span.lowEnd, other) && IsOn(span.highEnd, other); });
  }

  bool RemoveCovered() {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < graph_.edges.size(); ++i) {
      if (isCovered_[i] == 0) {
        graph_.edges[kept++] = graph_.edges[i];
      }
    }
    const bool hasCovered = kept < graph_.edges.size();
    graph_.edges.resize(kept);
    return hasCovered;
  }

  Graph& graph_;
  double tolerance_;
  ClassAxes axes_;
  std::vector<std::uint8_t> isCovered_;
};

}  // namespace

bool thinCrowds(Graph& graph, std::span<const EdgeNumber> suspects, double tolerance) {
  return suspects.size() > kCrowd && CrowdThinning(graph, tolerance).Run(suspects);
}

}  // namespace dxf2d::linework
