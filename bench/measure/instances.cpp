#include <algorithm>
#include <map>
#include <random>

#include "bench/measure/instance_scene.h"
#include "bench/measure/measures.h"
#include "bench/measure/report.h"

namespace {

double secondsOfInsertions(const std::vector<std::u16string>& ids) {
  std::map<std::u16string, int> map;
  return secondsOf([&] {
    for (const std::u16string& id : ids) {
      map.emplace(id, 0);
    }
  });
}

void measure(const MeasureOptions& options, const std::string& key, const std::string& subject,
             const std::vector<std::u16string>& ids) {
  const std::string path = options.directory + "/instances.dxf";
  InstanceScene scene = instanceScene(ids);
  report(key, subject,
         compareInTurn(
             options.repetitions, [&] { return secondsOf([&] { exportInstances(scene, path); }); },
             [&] { return secondsOfInsertions(ids); }),
         "export", "std::map");
}

}  // namespace

void measureInstances(const MeasureOptions& options) {
  std::vector<std::u16string> ids =
      objectIds(1'000'000 / static_cast<std::size_t>(options.divisor));
  measure(options, "N", "ids ascending", ids);
  std::shuffle(ids.begin(), ids.end(), std::mt19937(5));
  measure(options, "N", "ids at random", ids);
}
