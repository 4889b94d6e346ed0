// Reals as "%f" prints them, against the C library.
#include <benchmark/benchmark.h>

#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <random>
#include <vector>

#include "platform/number_format.h"

namespace {

constexpr std::size_t kCount = 4096;

// Coordinates of a building in meters, as vertices have them.
std::vector<double> coordinates() {
  std::mt19937_64 random(1);
  std::uniform_real_distribution<double> coordinate(-200.0, 200.0);
  std::vector<double> values(kCount);
  for (double& value : values) {
    value = coordinate(random);
  }
  return values;
}

// Any magnitude: most have hundreds of digits or none.
std::vector<double> randomBits() {
  std::mt19937_64 random(2);
  std::vector<double> values(kCount);
  for (double& value : values) {
    value = std::bit_cast<double>(random());
  }
  return values;
}

std::vector<double> zeros() { return std::vector<double>(kCount, 0.0); }

template <class Format>
void formatAll(benchmark::State& state, const std::vector<double>& values, Format format) {
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(format(values[i]));
    i = (i + 1) % kCount;
  }
  state.SetItemsProcessed(state.iterations());
}

using Values = std::vector<double> (*)();

void formatWide(benchmark::State& state, Values values) {
  std::array<char16_t, kFixed6Size> text;
  formatAll(state, values(), [&](double value) { return formatFixed6(value, text.data()); });
}

void formatNarrow(benchmark::State& state, Values values) {
  std::array<char, kFixed6Size> text;
  formatAll(state, values(), [&](double value) { return formatFixed6(value, text.data()); });
}

void formatByLibrary(benchmark::State& state, Values values) {
  std::array<char, kFixed6Size> text;
  formatAll(state, values(),
            [&](double value) { return std::snprintf(text.data(), text.size(), "%f", value); });
}

BENCHMARK_CAPTURE(formatWide, coordinates, coordinates);
BENCHMARK_CAPTURE(formatNarrow, coordinates, coordinates);
BENCHMARK_CAPTURE(formatByLibrary, coordinates, coordinates);
BENCHMARK_CAPTURE(formatWide, zeros, zeros);
BENCHMARK_CAPTURE(formatByLibrary, zeros, zeros);
BENCHMARK_CAPTURE(formatWide, randomBits, randomBits);
BENCHMARK_CAPTURE(formatByLibrary, randomBits, randomBits);

}  // namespace
