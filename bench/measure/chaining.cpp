#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <random>

#include "bench/measure/measures.h"
#include "bench/measure/report.h"
#include "geometry/outline/edge_chains.h"

using dxf2d::chainEdges;
using dxf2d::ChainScratch;
using dxf2d::Edge;
using dxf2d::removeCoincident;

namespace {

// Edges in edge order over flat points, as the stages before hand them on.
struct EdgeSet {
  std::vector<KtPoint3> points;
  std::vector<Edge> edges;
};

void addEdge(EdgeSet& set, std::size_t a, std::size_t b) {
  set.edges.push_back({static_cast<int>(std::min(a, b)), static_cast<int>(std::max(a, b))});
}

// Points on a circle, numbered along it or, `shuffled`, in any order.
EdgeSet oneLoop(std::size_t edgeCount, bool shuffled) {
  EdgeSet set;
  std::vector<std::size_t> numbers(edgeCount);
  std::iota(numbers.begin(), numbers.end(), 0);
  if (shuffled) {
    std::shuffle(numbers.begin(), numbers.end(), std::mt19937(3));
  }
  set.points.resize(edgeCount);
  for (std::size_t i = 0; i < edgeCount; ++i) {
    const double angle =
        6.283185307179586 * static_cast<double>(i) / static_cast<double>(edgeCount);
    set.points[numbers[i]].Set(1000.0 * std::cos(angle), 1000.0 * std::sin(angle), 0.0);
    addEdge(set, numbers[i], numbers[(i + 1) % edgeCount]);
  }
  std::sort(set.edges.begin(), set.edges.end());
  return set;
}

// A square grid: four edges meet at every inner point.
EdgeSet grid(std::size_t edgeCount) {
  EdgeSet set;
  const auto side = static_cast<std::size_t>(std::sqrt(static_cast<double>(edgeCount) / 2.0));
  for (std::size_t row = 0; row <= side; ++row) {
    for (std::size_t column = 0; column <= side; ++column) {
      const std::size_t point = set.points.size();
      set.points.emplace_back(static_cast<double>(column), static_cast<double>(row), 0.0);
      if (column < side) {
        addEdge(set, point, point + 1);
      }
      if (row < side) {
        addEdge(set, point, point + side + 1);
      }
    }
  }
  return set;
}

EdgeSet looseSegments(std::size_t edgeCount) {
  EdgeSet set;
  for (std::size_t i = 0; i < edgeCount; ++i) {
    const auto x = static_cast<double>(i);
    set.points.emplace_back(x, 0.0, 0.0);
    set.points.emplace_back(x, 0.5, 0.0);
    addEdge(set, 2 * i, 2 * i + 1);
  }
  return set;
}

double secondsOfChaining(const EdgeSet& set, ChainScratch& scratch) {
  std::vector<int> chains;
  return secondsOf([&] { chainEdges(set.edges, set.points.size(), chains, scratch); });
}

double secondsOfRemoving(const EdgeSet& set, ChainScratch& scratch) {
  std::vector<Edge> edges = set.edges;
  return secondsOf([&] { removeCoincident(set.points, edges, scratch); });
}

double secondsOfSorting(const std::vector<std::uint64_t>& keys, std::size_t count) {
  std::vector<std::uint64_t> sorted(keys.begin(),
                                    keys.begin() + static_cast<std::ptrdiff_t>(count));
  return secondsOf([&] { std::sort(sorted.begin(), sorted.end()); });
}

void measure(const MeasureOptions& options, const std::string& subject, const EdgeSet& set,
             const std::vector<std::uint64_t>& keys) {
  ChainScratch scratch;
  const auto sorting = [&] { return secondsOfSorting(keys, set.edges.size()); };
  report("C", subject,
         compareInTurn(
             options.repetitions, [&] { return secondsOfChaining(set, scratch); }, sorting),
         "chaining", "std::sort");
  report("C+", subject + ", removal",
         compareInTurn(
             options.repetitions, [&] { return secondsOfRemoving(set, scratch); }, sorting),
         "removeCoincident", "std::sort");
}

}  // namespace

void measureChaining(const MeasureOptions& options) {
  const std::size_t edgeCount = 1'000'000 / static_cast<std::size_t>(options.divisor);
  std::vector<std::uint64_t> keys(edgeCount);
  std::generate(keys.begin(), keys.end(), std::mt19937_64(4));
  measure(options, "one loop, numbered along", oneLoop(edgeCount, false), keys);
  measure(options, "one loop, numbered at random", oneLoop(edgeCount, true), keys);
  measure(options, "grid with branches", grid(edgeCount), keys);
  measure(options, "loose segments", looseSegments(edgeCount), keys);
}
