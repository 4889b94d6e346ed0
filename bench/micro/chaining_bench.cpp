// Removal of duplicate and degenerate edges, and chaining, by the number of edges.
#include <benchmark/benchmark.h>

#include "geometry/outline/edge_chains.h"

namespace dxf2d {

namespace {

struct EdgeSet {
  std::vector<KtPoint3> points;
  std::vector<Edge> edges;
};

// A strip of squares: branches at nearly every point.
EdgeSet ladder(std::size_t edgeCount) {
  EdgeSet set;
  for (int rung = 0; set.edges.size() + 3 <= edgeCount; ++rung) {
    const int low = 2 * rung;
    set.points.emplace_back(rung, 0.0, 0.0);
    set.points.emplace_back(rung, 1.0, 0.0);
    set.edges.insert(set.edges.end(), {{low, low + 1}, {low, low + 2}, {low + 1, low + 3}});
  }
  const std::size_t rungs = set.points.size() / 2;
  const auto end = static_cast<double>(rungs);
  set.points.emplace_back(end, 0.0, 0.0);
  set.points.emplace_back(end, 1.0, 0.0);
  return set;
}

void chain(benchmark::State& state) {
  const EdgeSet set = ladder(static_cast<std::size_t>(state.range(0)));
  ChainScratch scratch;
  std::vector<int> chains;
  for (auto _ : state) {
    chainEdges(set.edges, set.points.size(), chains, scratch);
    benchmark::DoNotOptimize(chains.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(chain)->Arg(12)->Arg(1'000)->Arg(100'000);

void removeEdges(benchmark::State& state) {
  const EdgeSet set = ladder(static_cast<std::size_t>(state.range(0)));
  ChainScratch scratch;
  std::vector<Edge> edges;
  for (auto _ : state) {
    edges = set.edges;
    removeCoincident(set.points, edges, scratch);
    benchmark::DoNotOptimize(edges.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(removeEdges)->Arg(12)->Arg(1'000)->Arg(100'000);

}  // namespace

}  // namespace dxf2d
