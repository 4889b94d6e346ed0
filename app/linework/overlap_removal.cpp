#include "app/linework/overlap_removal.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <utility>

namespace dxf2d::linework {

namespace {

// A point on an edge at which the edge is cut, and how far along it lies.
struct Cut {
  EdgeNumber edge;
  double along;
  PointNumber point;
};

class CutSearch {
 public:
  CutSearch(const Graph& graph, double tolerance) : graph_(graph), tolerance_(tolerance) {}

  void Test(EdgeNumber shorter, EdgeNumber longer) {
    const Edge a = graph_.edges[shorter];
    const Edge b = graph_.edges[longer];
    const PlanPoint origin = graph_.points[b.from];
    const PlanPoint vector = graph_.points[b.to] - origin;
    const double size = length(vector);
    const PlanPoint axis{vector.x / size, vector.y / size};
    const PlanPoint from = graph_.points[a.from] - origin;
    const PlanPoint to = graph_.points[a.to] - origin;
    if (std::abs(cross(axis, from)) > tolerance_ || std::abs(cross(axis, to)) > tolerance_) {
      return;
    }
    const double begin = dot(axis, from);
    const double end = dot(axis, to);
    const double overlap =
        std::min(size, std::max(begin, end)) - std::max(0.0, std::min(begin, end));
    if (overlap <= tolerance_) {
      return;
    }
    Add(longer, a.from);
    Add(longer, a.to);
    Add(shorter, b.from);
    Add(shorter, b.to);
  }

  std::vector<Cut> TakeCuts() {
    const auto inOrder = [](const Cut& a, const Cut& b) {
      if (a.edge != b.edge) {
        return a.edge < b.edge;
      }
      return a.along != b.along ? a.along < b.along : a.point < b.point;
    };
    std::ranges::sort(cuts_, inOrder);
    const auto same = [](const Cut& a, const Cut& b) {
      return a.edge == b.edge && a.point == b.point;
    };
    cuts_.erase(std::unique(cuts_.begin(), cuts_.end(), same), cuts_.end());
    return std::move(cuts_);
  }

 private:
  void Add(EdgeNumber edge, PointNumber point) {
    const Edge cut = graph_.edges[edge];
    if (point == cut.from || point == cut.to) {
      return;
    }
    const PlanPoint origin = graph_.points[cut.from];
    const PlanPoint vector = graph_.points[cut.to] - origin;
    const double size = length(vector);
    const double along = dot(vector, graph_.points[point] - origin) / size;
    if (along > tolerance_ && along < size - tolerance_) {
      cuts_.push_back({edge, along, point});
    }
  }

  const Graph& graph_;
  double tolerance_;
  std::vector<Cut> cuts_;
};

// The edges kept so far, in a hash table of lists. Edges whose points are equally far apart in
// number are in a row there as their points are, so that most steps stay in the cache.
class EdgeSet {
 public:
  explicit EdgeSet(std::size_t most) {
    constexpr std::size_t kLeastLists = 16;
    first_.assign(std::bit_ceil(std::max(most, kLeastLists)), kNone);
    next_.reserve(most);
    edges_.reserve(most);
  }

  // The number of the edge, in either direction. It is the next one, and true, when it is new.
  std::pair<EdgeNumber, bool> Add(Edge edge) {
    const auto [low, high] = std::minmax(edge.from, edge.to);
    std::uint64_t hash = std::uint64_t{high - low} * 0x9E3779B97F4A7C15U;
    hash = (hash ^ hash >> 32U) + low;
    EdgeNumber& first = first_[hash & (first_.size() - 1)];
    for (EdgeNumber i = first; i != kNone; i = next_[i]) {
      if (std::minmax(edges_[i].from, edges_[i].to) == std::minmax(low, high)) {
        return {i, false};
      }
    }
    next_.push_back(first);
    first = static_cast<EdgeNumber>(edges_.size());
    edges_.push_back(edge);
    return {first, true};
  }

  std::vector<Edge> Take() { return std::move(edges_); }

 private:
  static constexpr EdgeNumber kNone = std::numeric_limits<EdgeNumber>::max();

  std::vector<Edge> edges_;
  // The next edge of the same list.
  std::vector<EdgeNumber> next_;
  std::vector<EdgeNumber> first_;
};

// Gathers the pieces of the edges of a graph.
class Pieces {
 public:
  Pieces(const Graph& graph, std::size_t most) : graph_(graph), set_(most) {
    result_.sources.reserve(most);
    result_.isPiece.reserve(most);
  }

  void Add(Edge edge, EdgeNumber source, bool isPiece) {
    const auto [number, isNew] = set_.Add(edge);
    if (isNew) {
      result_.sources.push_back(source);
      result_.isPiece.push_back(isPiece ? 1 : 0);
      return;
    }
    // The longest of the segments that lie on one another stays whole where it can.
    if (SquaredLength(source) > SquaredLength(result_.sources[number])) {
      result_.sources[number] = source;
    }
    if (isPiece) {
      result_.isPiece[number] = 1;
    }
  }

  DistinctEdges Take() {
    result_.edges = set_.Take();
    return std::move(result_);
  }

 private:
  double SquaredLength(EdgeNumber edge) const {
    const PlanPoint vector =
        graph_.points[graph_.edges[edge].to] - graph_.points[graph_.edges[edge].from];
    return dot(vector, vector);
  }

  const Graph& graph_;
  EdgeSet set_;
  DistinctEdges result_;
};

}  // namespace

DistinctEdges removeOverlaps(const Graph& graph, const PairSource& forEachPair, double tolerance) {
  CutSearch search(graph, tolerance);
  forEachPair([&](EdgeNumber shorter, EdgeNumber longer) { search.Test(shorter, longer); });
  const std::vector<Cut> cuts = search.TakeCuts();
  Pieces pieces(graph, graph.edges.size() + cuts.size());
  auto cut = cuts.begin();
  for (EdgeNumber i = 0; i < graph.edges.size(); ++i) {
    PointNumber from = graph.edges[i].from;
    bool isCut = false;
    for (; cut != cuts.end() && cut->edge == i; ++cut) {
      isCut = true;
      pieces.Add({from, cut->point}, i, true);
      from = cut->point;
    }
    pieces.Add({from, graph.edges[i].to}, i, isCut);
  }
  DistinctEdges distinct = pieces.Take();
  distinct.hasCuts = !cuts.empty();
  return distinct;
}

void removeDuplicates(Graph& graph) {
  EdgeSet distinct(graph.edges.size());
  for (const Edge edge : graph.edges) {
    distinct.Add(edge);
  }
  graph.edges = distinct.Take();
}

}  // namespace dxf2d::linework
