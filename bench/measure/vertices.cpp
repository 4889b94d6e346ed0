#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <numeric>
#include <random>
#include <stdexcept>

#include "bench/measure/measures.h"
#include "bench/measure/plugin_host.h"
#include "bench/measure/report.h"
#include "ktscene/kt_run_code.h"

namespace {

struct LineSet {
  std::vector<double> coords;
  std::vector<int> indices;
};

// A walk over a site of about a kilometer: one line strip, no place twice.
LineSet randomWalk(std::size_t vertexCount, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> step(-1.0, 1.0);
  LineSet set;
  double x = 1000.0 * step(random);
  double y = 1000.0 * step(random);
  for (std::size_t i = 0; i < vertexCount; ++i) {
    x += step(random);
    y += step(random);
    set.coords.insert(set.coords.end(), {x, y, 0.0});
  }
  set.indices.resize(vertexCount);
  std::iota(set.indices.begin(), set.indices.end(), 0);
  set.indices.push_back(KtRunCode::kLineStrip);
  return set;
}

// Calls the line-set callback `callCount` times, with `sets` in turn.
void drawLines(const std::vector<LineSet>& sets, std::size_t callCount) {
  const KtCallbacks& callbacks = pluginCallbacks();
  for (std::size_t call = 0; call < callCount; ++call) {
    const LineSet& set = sets[call % sets.size()];
    callbacks.lineSet(set.coords, set.indices);
  }
}

// From opening to closing: every callback of the export.
double secondsOfExport(const std::string& path, const std::vector<LineSet>& sets,
                       std::size_t callCount) {
  std::remove(path.c_str());
  const KtCallbacks& callbacks = pluginCallbacks();
  return secondsOf([&] {
    callbacks.openFile(std::u16string(path.begin(), path.end()));
    callbacks.openNode(nullptr);
    drawLines(sets, callCount);
    callbacks.closeNode();
    callbacks.closeFile();
  });
}

std::vector<char> bytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Each block is copied first, as what an export writes has to be put together somewhere.
double secondsOfPlainWrites(const std::string& path, const std::vector<char>& bytes) {
  constexpr std::size_t kBlock = std::size_t{1} << 20;
  std::vector<char> buffer(kBlock);
  std::remove(path.c_str());
  return secondsOf([&] {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    for (std::size_t begin = 0; begin < bytes.size(); begin += kBlock) {
      const std::size_t count = std::min(kBlock, bytes.size() - begin);
      std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(begin), count, buffer.begin());
      if (write(file, buffer.data(), count) != static_cast<ssize_t>(count)) {
        throw std::runtime_error("cannot write '" + path + "'");
      }
    }
    close(file);
  });
}

void measure(const MeasureOptions& options, const std::string& key, const std::string& subject,
             const std::vector<LineSet>& sets, std::size_t callCount) {
  const std::string path = options.directory + "/vertices.dxf";
  secondsOfExport(path, sets, callCount);
  const std::vector<char> bytes = bytesOf(path);
  const Comparison comparison = compareInTurn(
      options.repetitions, [&] { return secondsOfExport(path, sets, callCount); },
      [&] { return secondsOfPlainWrites(path, bytes); });
  std::remove(path.c_str());
  report(key, subject + ", " + std::to_string(bytes.size() / 1'000'000) + " MB", comparison,
         "callbacks", "copy and write(2)");
}

}  // namespace

void measureVertices(const MeasureOptions& options) {
  const std::size_t vertexCount = 10'000'000 / static_cast<std::size_t>(options.divisor);
  constexpr std::size_t kVerticesPerSet = 1000;
  constexpr unsigned kDifferentSets = 100;
  std::vector<LineSet> sets;
  for (unsigned seed = 0; seed < kDifferentSets; ++seed) {
    sets.push_back(randomWalk(kVerticesPerSet, seed));
  }
  measure(options, "W", "line sets of 1,000 vertices", sets, vertexCount / kVerticesPerSet);
  measure(options, "W1", "one line set", {randomWalk(vertexCount, 0)}, 1);
}
