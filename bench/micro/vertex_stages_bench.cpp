// Where the time of a line set of 1,000 vertices goes: nanoseconds a vertex in each stage.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <numeric>
#include <random>
#include <vector>

#include "geometry/callbacks.h"
#include "geometry/outline/already_chained.h"
#include "platform/fixed6_lines.h"
#include "plugin/entry.h"
#include "session/callbacks.h"

namespace {

using dxf2d::Fixed6Lines;

constexpr std::size_t kVertices = 1000;
// What such a set takes in the file.
constexpr std::size_t kSetBytes = 66900;
// Written before the file is made anew, so that it stays in the page cache.
constexpr std::size_t kFileBytes = std::size_t{256} << 20U;
constexpr const char* kFile = "vertex_stages.tmp";

struct Walk {
  std::vector<double> coords;
  std::vector<int> indices;
};

// No place twice, over a site of some hundred meters.
Walk randomWalk() {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> step(-1.0, 1.0);
  Walk walk;
  double x = 500.0;
  double y = -500.0;
  for (std::size_t i = 0; i < kVertices; ++i) {
    x += step(random);
    y += step(random);
    walk.coords.insert(walk.coords.end(), {x, y, 0.0});
  }
  walk.indices.resize(kVertices);
  std::iota(walk.indices.begin(), walk.indices.end(), 0);
  walk.indices.push_back(-6);
  return walk;
}

void countVertices(benchmark::State& state, double vertices) {
  state.counters["per vertex"] = benchmark::Counter(
      vertices, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void seeThatItIsChains(benchmark::State& state) {
  const Walk walk = randomWalk();
  const KtMatrix identity;
  for (auto _ : state) {
    benchmark::DoNotOptimize(dxf2d::isAlreadyChained({walk.coords, identity}, walk.indices));
  }
  countVertices(state, kVertices);
}
BENCHMARK(seeThatItIsChains);

void makeReals(benchmark::State& state) {
  const Walk walk = randomWalk();
  Fixed6Lines reals;
  for (auto _ : state) {
    for (std::size_t begin = 0; begin < 2 * kVertices; begin += Fixed6Lines::kMost) {
      const std::size_t count = std::min(Fixed6Lines::kMost, 2 * kVertices - begin);
      for (std::size_t i = 0; i < count; ++i) {
        reals.Value(i) = walk.coords[begin + i];
      }
      reals.Make(count);
      benchmark::DoNotOptimize(reals);
    }
  }
  countVertices(state, kVertices);
}
BENCHMARK(makeReals);

// The whole callback, but for what the file system does.
void drawToNowhere(benchmark::State& state) {
  const Walk walk = randomWalk();
  DXF2dOpenFileForModel(u"/dev/null");
  DXF2dOpenNode(nullptr);
  for (auto _ : state) {
    DXF2dLineGeometry(walk.coords, walk.indices);
  }
  DXF2dCloseFileForModel();
  countVertices(state, kVertices);
}
BENCHMARK(drawToNowhere);

// write(2) alone, in pieces as callbacks hand them over or larger ones.
void writePieces(benchmark::State& state) {
  const std::vector<char> piece(static_cast<std::size_t>(state.range(0)), 'x');
  int file = -1;
  std::size_t room = 0;
  for (auto _ : state) {
    if (room < piece.size()) {
      state.PauseTiming();
      close(file);
      std::remove(kFile);
      file = open(kFile, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
      room = kFileBytes;
      state.ResumeTiming();
    }
    if (write(file, piece.data(), piece.size()) < 0) {
      state.SkipWithError("cannot write");
      break;
    }
    room -= piece.size();
  }
  close(file);
  std::remove(kFile);
  countVertices(state, static_cast<double>(piece.size()) * kVertices / kSetBytes);
}
BENCHMARK(writePieces)->Arg(kSetBytes)->Arg(1 << 16)->Arg(1 << 20);

}  // namespace
