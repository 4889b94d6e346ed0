// The stages of the outline one by one, and all of them.
#include <benchmark/benchmark.h>

#include "bench/measure/face_set_input.h"
#include "geometry/outline/edge_table.h"
#include "geometry/outline/outline.h"
#include "geometry/outline/run_expansion.h"
#include "geometry/outline/weld.h"

namespace dxf2d {

namespace {

struct Set {
  std::vector<KtPoint3> points;
  std::vector<int> indices;
};

Set setOf(const benchmark::State& state) {
  const FaceSetInput input = faceSetInput(kModels[static_cast<std::size_t>(state.range(0))].make(
      static_cast<std::size_t>(state.range(1))));
  return {pointsOf(input), input.indices};
}

void countTriangles(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * state.range(1));
  state.SetLabel(kModels[static_cast<std::size_t>(state.range(0))].name);
}

// Every model, small enough for the caches and not.
void models(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgsProduct({{0, 1, 2}, {1'000, 100'000}})->ArgNames({"model", "triangles"});
}

// The copy that each round takes, to be subtracted from what changes its input.
void copySet(benchmark::State& state) {
  const Set input = setOf(state);
  Set set;
  for (auto _ : state) {
    set = input;
    benchmark::DoNotOptimize(set.points.data());
  }
  countTriangles(state);
}
BENCHMARK(copySet)->Apply(models);

void weld(benchmark::State& state) {
  const Set input = setOf(state);
  Set set;
  WeldScratch scratch;
  for (auto _ : state) {
    set = input;
    weldPoints(set.points, set.indices, scratch);
  }
  countTriangles(state);
}
BENCHMARK(weld)->Apply(models);

void expand(benchmark::State& state) {
  Set set = setOf(state);
  WeldScratch weldScratch;
  weldPoints(set.points, set.indices, weldScratch);
  ExpandedRuns runs;
  for (auto _ : state) {
    expandRuns(set.indices, set.points.size(), SegmentRuns::kExactlyTwo, runs);
  }
  countTriangles(state);
}
BENCHMARK(expand)->Apply(models);

void findNeighbors(benchmark::State& state) {
  Set set = setOf(state);
  WeldScratch weldScratch;
  weldPoints(set.points, set.indices, weldScratch);
  ExpandedRuns runs;
  expandRuns(set.indices, set.points.size(), SegmentRuns::kExactlyTwo, runs);
  EdgeTable table;
  std::vector<Edge> edges;
  std::size_t borders = 0;
  for (auto _ : state) {
    table.Build(runs.polygons, set.points.size(), 1);
    table.ChooseEdges(
        1, [](const Edge& /*edge*/, const auto& users) { return users.size() == 1; }, edges);
    borders += edges.size();
  }
  benchmark::DoNotOptimize(borders);
  countTriangles(state);
}
BENCHMARK(findNeighbors)->Apply(models);

void wholeOutline(benchmark::State& state) {
  const Set input = setOf(state);
  Set set;
  for (auto _ : state) {
    set = input;
    BuildOutline(set.points, set.indices, false, true);
  }
  countTriangles(state);
}
BENCHMARK(wholeOutline)->Apply(models);

}  // namespace

}  // namespace dxf2d
