#include <array>
#include <cmath>
#include <cstdio>

#include "bench/measure/face_set_input.h"
#include "bench/measure/fresh_process.h"
#include "bench/measure/measures.h"
#include "bench/measure/plugin_host.h"
#include "bench/measure/report.h"

namespace {

// In memory new to the process at every size: a small set would otherwise reuse what a large one
// must ask the kernel for, and the growth would be the kernel's.
double secondsOfFirst(const std::string& path, const FaceSetInput& input) {
  return inFreshProcess([&] { return secondsOfFaceSet(path, input); });
}

}  // namespace

void measureGrowth(const MeasureOptions& options) {
  // Loaded once, here, and not by every child.
  pluginCallbacks();
  const std::size_t smallCount = 100'000 / static_cast<std::size_t>(options.divisor);
  // Several small sets in the time of a round, whose median is then steadier.
  constexpr int kSmallRuns = 9;
  const std::string path = options.directory + "/growth.dxf";
  for (const NamedModel& model : kModels) {
    const FaceSetInput small = faceSetInput(model.make(smallCount));
    const FaceSetInput large = faceSetInput(model.make(smallCount * 100));
    const Comparison comparison = compareInTurn(
        options.repetitions, [&] { return secondsOfFirst(path, large); },
        [&] {
          std::vector<double> times;
          times.reserve(kSmallRuns);
          for (int i = 0; i < kSmallRuns; ++i) {
            times.push_back(secondsOfFirst(path, small));
          }
          return medianOf(times);
        });
    const double sizes =
        static_cast<double>(large.indices.size()) / static_cast<double>(small.indices.size());
    std::array<char, 128> detail;
    std::snprintf(detail.data(), detail.size(), "%.4g ms, %.4g ms for %.1f times the triangles",
                  comparison.yardstick * 1e3, comparison.subject * 1e3, sizes);
    report("G", model.name, std::log(comparison.ratio) / std::log(sizes), detail.data());
  }
}
