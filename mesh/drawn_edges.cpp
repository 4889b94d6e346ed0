#include "mesh/drawn_edges.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <numeric>
#include <optional>
#include <utility>

#include "mesh/facet_noise.h"
#include "mesh/plan_points.h"
#include "mesh/slot_table.h"
#include "mesh/stretches.h"
#include "platform/large_memory.h"
#include "platform/parallel.h"
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

// Goes through the edges of some rows.
class EdgeLister {
 public:
  // The arguments outlive this; `noise` may be null.
  EdgeLister(const PolygonMesh& mesh, const EdgeClassifier& classifier, const Looks& looks,
             FacetNoise* noise)
      : mesh_(mesh), classifier_(classifier), looks_(looks), noise_(noise) {}

  void Add(Index a, Index b, std::span<const EdgeUse> uses) {
    std::optional<EdgeKind> kind = classifier_.Kind(a, b, uses);
    if (!kind && isBetweenLooks(mesh_, looks_, uses)) {
      kind = EdgeKind::kBorder;
    }
    if (!kind) {
      return;
    }
    const Point& p = mesh_.points[a];
    const Point& q = mesh_.points[b];
    const bool isPoint = p[0] == q[0] && p[1] == q[1];
    if (noise_ != nullptr && uses.size() == 2 && kind != EdgeKind::kBorder) {
      noise_->AddPair(a, b, uses, isPoint ? kNone : static_cast<Index>(shown_.size()), findings_);
    } else if (noise_ != nullptr) {
      noise_->AddOther(a, b);
    }
    if (!isPoint) {
      appendLarge(shown_, DrawnEdge{a, b, mesh_.parts[uses[0].Polygon()], *kind});
    }
  }

  // Moves what was found to the ends of the lists.
  void MoveTo(Edges& shown) {
    if (noise_ != nullptr) {
      noise_->Add(std::move(findings_), static_cast<Index>(shown.size()));
    }
    if (shown.empty()) {
      shown.swap(shown_);
    } else {
      shown.insert(shown.end(), shown_.begin(), shown_.end());
    }
    shown_ = Edges();
  }
  std::size_t Count() const { return shown_.size(); }

 private:
  const PolygonMesh& mesh_;
  const EdgeClassifier& classifier_;
  const Looks& looks_;
  FacetNoise* noise_;
  Edges shown_;
  FacetNoise::Findings findings_;
};

// The edges that the object shows, and its lines, but for points in plan; `dropped`: those that are
// left out as noise.
Edges listEdges(const PolygonMesh& mesh, const EdgeTable& edges, const EdgeOptions& options,
                Edges& dropped) {
  const EdgeClassifier classifier(mesh, options.creaseDegrees, options.threads);
  std::optional<FacetNoise> noise;
  if (options.dropsNoise) {
    noise.emplace(mesh, classifier, options.creaseDegrees, options.threads);
  }
  const Blocks blocks(edges.RowCount(), options.threads);
  std::vector<EdgeLister> listers(
      blocks.Count(), EdgeLister(mesh, classifier, options.looks, noise ? &*noise : nullptr));
  blocks.Run([&](std::size_t number, const Block& rows) {
    edges.ForEachEdge(rows, [&](Index a, Index b, std::span<const EdgeUse> uses) {
      listers[number].Add(a, b, uses);
    });
  });
  std::size_t count = mesh.segments.size();
  for (const EdgeLister& lister : listers) {
    count += lister.Count();
  }
  Edges shown;
  for (EdgeLister& lister : listers) {
    lister.MoveTo(shown);
    reserveLarge(shown, count);
  }
  dropped.clear();
  if (noise) {
    dropNoise(*noise, shown, dropped);
  }
  for (const Segment& line : mesh.segments) {
    shown.push_back({line.a, line.b, line.part, EdgeKind::kLine});
  }
  return shown;
}

PlanPoints joinEnds(PolygonMesh& mesh, const Edges& edges, double distance, std::size_t threads) {
  std::vector<char> isEnd(mesh.points.size(), 0);
  for (const DrawnEdge& edge : edges) {
    isEnd[edge.a] = 1;
    isEnd[edge.b] = 1;
  }
  return joinInPlan(mesh.points, isEnd, distance, threads);
}

// Gathers the edges of a stretch that lie on one segment in plan.
class SegmentFinder {
 public:
  SegmentFinder(const Edges& edges, const PlanPoints& plan, const Block& block)
      : table_(block.end - block.begin) {
    reserveLarge(segments_, block.end - block.begin);
    forEachPrefetched(
        table_, block.end - block.begin,
        [&](std::size_t i) {
          const DrawnEdge& edge = edges[block.begin + i];
          const auto [a, b] = std::minmax(plan.first[edge.a], plan.first[edge.b]);
          const std::uint64_t ends = std::uint64_t{a} << 32U | b;
          return Candidate{ends, mixed(ends)};
        },
        [&](std::size_t i, const Candidate& candidate) {
          const auto edge = static_cast<Index>(block.begin + i);
          if (candidate.ends >> 32U != (candidate.ends & 0xffffffffU)) {
            Add({candidate.ends, edge, edges[edge].kind}, candidate.hash);
          }
          return true;
        });
  }

  // For mesh/stretches.h.
  std::size_t Count() const { return segments_.size(); }
  std::uint32_t HashOf(std::size_t i) const { return mixed(segments_[i].ends); }
  void Prefetch(std::uint32_t hash) const { table_.Prefetch(hash); }
  Index Find(std::uint32_t hash, const SegmentFinder& other, std::size_t i) const {
    return Find(hash, other.segments_[i].ends);
  }

  std::vector<PlanSegment>& Segments() { return segments_; }

 private:
  struct Candidate {
    std::uint64_t ends;
    std::uint32_t hash;
  };

  Index Find(std::uint32_t hash, std::uint64_t ends) const {
    return table_.Find(hash, [&](Index number) { return segments_[number].ends == ends; });
  }
  void Add(const PlanSegment& segment, std::uint32_t hash) {
    const Index found =
        table_.FindOrInsert(hash, static_cast<Index>(segments_.size()),
                            [&](Index number) { return segments_[number].ends == segment.ends; });
    if (found == kNone) {
      segments_.push_back(segment);
    } else {
      segments_[found].kind = std::min(segments_[found].kind, segment.kind);
    }
  }

  SlotTable table_;
  std::vector<PlanSegment> segments_;
};

// Joins the segments of all stretches: of several on one place the first stays, with the first of
// their kinds.
std::vector<PlanSegment> joinStretches(const Stretches<SegmentFinder>& stretches,
                                       std::size_t threads) {
  const std::vector<std::size_t> starts = startsOf(stretches);
  // And then the places in the joined list.
  LargeArray<Index> firsts = findFirsts(stretches, threads);
  std::iota(firsts.begin(), firsts.begin() + starts[1], Index{0});
  std::vector<PlanSegment> segments = std::move(stretches[0]->Segments());
  for (std::size_t stretch = 1; stretch < stretches.size(); ++stretch) {
    for (std::size_t i = starts[stretch]; i < starts[stretch + 1]; ++i) {
      const PlanSegment& segment = stretches[stretch]->Segments()[i - starts[stretch]];
      if (firsts[i] == i) {
        firsts[i] = static_cast<Index>(segments.size());
        appendLarge(segments, segment);
      } else {
        firsts[i] = firsts[firsts[i]];
        PlanSegment& first = segments[firsts[i]];
        first.kind = std::min(first.kind, segment.kind);
      }
    }
  }
  return segments;
}

// The segments of the edges in plan, without those that are points.
std::vector<PlanSegment> findSegments(const Edges& edges, const PlanPoints& plan,
                                      std::size_t threads) {
  const Blocks blocks = Blocks::OneForEach(edges.size(), threads);
  Stretches<SegmentFinder> stretches(blocks.Count());
  blocks.Run([&](std::size_t number, const Block& block) {
    stretches[number] = std::make_unique<SegmentFinder>(edges, plan, block);
  });
  return threads == 1 ? std::move(stretches[0]->Segments()) : joinStretches(stretches, threads);
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
  PlanPoints plan = joinEnds(mesh, shown, options.planDistance, options.threads);
  // What moved turned its polygons by a little, so that others may show now, and have ends to join.
  constexpr int kMostRounds = 16;
  for (int round = 0; plan.isMoved; ++round) {
    shown = listEdges(mesh, edges, options, noise);
    plan = joinEnds(mesh, shown, round < kMostRounds ? options.planDistance : 0.0, options.threads);
  }
  DrawnEdges drawn =
      collectEdges(shown, findSegments(shown, plan, options.threads), partCountOf(mesh));
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
