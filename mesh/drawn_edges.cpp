#include "mesh/drawn_edges.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>

#include "mesh/facet_noise.h"
#include "mesh/plan_points.h"
#include "mesh/slot_table.h"
#include "platform/large_memory.h"
#include "platform/prefetch.h"

namespace dxf2d::mesh {

namespace {

// What lies on one segment in plan.
struct PlanSegment {
  // The ends, by PlanPoints::first, the lesser in the high half.
  std::uint64_t ends;
  // The edge that stays.
  Index edge;
  EdgeKind kind;
};

using Edges = std::vector<DrawnEdge>;

Index partCountOf(const PolygonMesh& mesh) {
  Index count = 0;
  for (const Index part : mesh.parts) {
    count = std::max(count, part + 1);
  }
  for (const Segment& segment : mesh.segments) {
    count = std::max(count, segment.part + 1);
  }
  return count;
}

bool isBetweenLooks(const PolygonMesh& mesh, const Looks& looks, std::span<const EdgeUse> uses) {
  const auto isOther = [&](const EdgeUse& use) {
    return !looks.AreAlike(mesh.parts[use.Polygon()], mesh.parts[uses[0].Polygon()]);
  };
  return !looks.ofPart.empty() && std::any_of(uses.begin() + 1, uses.end(), isOther);
}

// Moves the edges of `shown` that are noise to the end of `dropped`.
void dropNoise(const FacetNoise& noise, Edges& shown, Edges& dropped) {
  const std::vector<FacetNoise::Fold> folds = noise.Folds();
  const std::vector<Index> strokes = noise.Strokes();
  if (folds.empty() && strokes.empty()) {
    return;
  }
  std::vector<char> isNoise(shown.size(), 0);
  for (const FacetNoise::Fold& fold : folds) {
    shown[fold.edge].kind = EdgeKind::kCrease;
    isNoise[fold.edge] = fold.isCrease ? 0 : 1;
  }
  for (const Index i : strokes) {
    if (shown[i].kind == EdgeKind::kCrease) {
      isNoise[i] = 1;
    }
  }
  std::size_t kept = 0;
  for (std::size_t i = 0; i < shown.size(); ++i) {
    if (isNoise[i] == 0) {
      shown[kept++] = shown[i];
    } else {
      dropped.push_back(shown[i]);
    }
  }
  shown.resize(kept);
}

// The edges that the object shows, and its lines, but for points in plan; `dropped`: those that are
// left out as noise.
Edges listEdges(const PolygonMesh& mesh, const EdgeTable& edges, const EdgeOptions& options,
                Edges& dropped) {
  const EdgeClassifier classifier(mesh, options.creaseDegrees);
  std::optional<FacetNoise> noise;
  if (options.dropsNoise) {
    noise.emplace(mesh, classifier, options.creaseDegrees);
  }
  Edges shown;
  // What is not filled takes no memory.
  reserveLarge(shown, edges.EdgeCount() + mesh.segments.size());
  edges.ForEachEdge([&](Index a, Index b, std::span<const EdgeUse> uses) {
    std::optional<EdgeKind> kind = classifier.Kind(a, b, uses);
    if (!kind && isBetweenLooks(mesh, options.looks, uses)) {
      kind = EdgeKind::kBorder;
    }
    if (!kind) {
      return;
    }
    const Point& p = mesh.points[a];
    const Point& q = mesh.points[b];
    const bool isPoint = p[0] == q[0] && p[1] == q[1];
    if (noise && uses.size() == 2 && kind != EdgeKind::kBorder) {
      noise->AddPair(a, b, uses, isPoint ? kNone : static_cast<Index>(shown.size()));
    } else if (noise) {
      noise->AddOther(a, b);
    }
    if (!isPoint) {
      shown.push_back({a, b, mesh.parts[uses[0].Polygon()], *kind});
    }
  });
  dropped.clear();
  if (noise) {
    dropNoise(*noise, shown, dropped);
  }
  for (const Segment& line : mesh.segments) {
    shown.push_back({line.a, line.b, line.part, EdgeKind::kLine});
  }
  return shown;
}

PlanPoints joinEnds(PolygonMesh& mesh, const Edges& edges, double distance) {
  std::vector<char> isEnd(mesh.points.size(), 0);
  for (const DrawnEdge& edge : edges) {
    isEnd[edge.a] = 1;
    isEnd[edge.b] = 1;
  }
  return joinInPlan(mesh.points, isEnd, distance);
}

// Gathers the edges that lie on one segment in plan.
class SegmentFinder {
 public:
  explicit SegmentFinder(const Edges& edges) : edges_(edges), table_(edges.size()) {
    reserveLarge(segments_, edges.size());
  }

  void Prefetch(std::uint32_t hash) const { table_.Prefetch(hash); }

  // Adds edge i, which has these ends: those of PlanSegment in the two halves. `hash`: mixed(ends).
  void Add(Index i, std::uint64_t ends, std::uint32_t hash) {
    const Index found =
        table_.Find(hash, [&](Index number) { return segments_[number].ends == ends; });
    if (found == kNone) {
      table_.Keep(hash, static_cast<Index>(segments_.size()));
      segments_.push_back({ends, i, edges_[i].kind});
      return;
    }
    PlanSegment& segment = segments_[found];
    segment.kind = std::min(segment.kind, edges_[i].kind);
  }

  std::vector<PlanSegment> Take() { return std::move(segments_); }

 private:
  const Edges& edges_;
  SlotTable table_;
  std::vector<PlanSegment> segments_;
};

// The segments of the edges in plan, without those that are points.
std::vector<PlanSegment> findSegments(const Edges& edges, const PlanPoints& plan) {
  SegmentFinder finder(edges);
  struct Candidate {
    std::uint64_t ends;
    std::uint32_t hash;
  };
  forEachPrefetched(
      finder, edges.size(),
      [&](std::size_t i) {
        const auto [a, b] = std::minmax(plan.first[edges[i].a], plan.first[edges[i].b]);
        const std::uint64_t ends = std::uint64_t{a} << 32U | b;
        return Candidate{ends, mixed(ends)};
      },
      [&](std::size_t i, const Candidate& candidate) {
        const auto [ends, hash] = candidate;
        if (ends >> 32U != (ends & 0xffffffffU)) {
          finder.Add(static_cast<Index>(i), ends, hash);
        }
        return true;
      });
  return finder.Take();
}

// The edges that stay, sorted by part.
DrawnEdges collectEdges(const Edges& edges, const std::vector<PlanSegment>& segments,
                        Index partCount) {
  DrawnEdges drawn;
  drawn.starts.assign(std::size_t{partCount} + 1, 0);
  for (const PlanSegment& segment : segments) {
    ++drawn.starts[std::size_t{edges[segment.edge].part} + 1];
  }
  for (std::size_t part = 0; part < partCount; ++part) {
    drawn.starts[part + 1] += drawn.starts[part];
  }
  drawn.edges.resize(drawn.starts.back());
  std::vector<Index> next(drawn.starts.begin(), drawn.starts.end() - 1);
  for (const PlanSegment& segment : segments) {
    DrawnEdge edge = edges[segment.edge];
    edge.kind = segment.kind;
    drawn.edges[next[edge.part]++] = edge;
  }
  return drawn;
}

}  // namespace

std::array<std::size_t, 5> DrawnEdges::CountKinds() const {
  std::array<std::size_t, 5> counts = {};
  for (const DrawnEdge& edge : edges) {
    ++counts[static_cast<std::size_t>(edge.kind)];
  }
  return counts;
}

DrawnEdges findDrawnEdges(PolygonMesh& mesh, const EdgeTable& edges, const EdgeOptions& options) {
  Edges noise;
  Edges shown = listEdges(mesh, edges, options, noise);
  PlanPoints plan = joinEnds(mesh, shown, options.planDistance);
  // What moved turned its polygons by a little, so that others may show now, and have ends to join.
  constexpr int kMostRounds = 16;
  for (int round = 0; plan.isMoved; ++round) {
    shown = listEdges(mesh, edges, options, noise);
    plan = joinEnds(mesh, shown, round < kMostRounds ? options.planDistance : 0.0);
  }
  DrawnEdges drawn = collectEdges(shown, findSegments(shown, plan), partCountOf(mesh));
  drawn.noise = noise.size();
  return drawn;
}

std::vector<DrawnEdge> findFacetNoise(const PolygonMesh& mesh, const EdgeTable& edges,
                                      const EdgeOptions& options) {
  Edges noise;
  static_cast<void>(listEdges(mesh, edges, options, noise));
  return noise;
}

}  // namespace dxf2d::mesh
