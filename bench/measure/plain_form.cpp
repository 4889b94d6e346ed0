#include <algorithm>
#include <stdexcept>

#include "bench/measure/face_set_input.h"
#include "bench/measure/measures.h"
#include "bench/measure/report.h"
#include "geometry/outline.h"
#include "tests/geometry/plain_outline.h"

namespace {

struct Outline {
  std::vector<KtPoint3> points;
  std::vector<int> indices;
  friend bool operator==(const Outline&, const Outline&) = default;
};

// Leaves what `build` made in `result`.
double secondsOfOutline(const Outline& input,
                        bool (*build)(std::vector<KtPoint3>&, std::vector<int>&, bool, bool),
                        Outline& result) {
  result = input;
  return secondsOf([&] { build(result.points, result.indices, false, true); });
}

}  // namespace

void measurePlainForm(const MeasureOptions& options) {
  const std::size_t triangleCount = 100'000 / static_cast<std::size_t>(options.divisor);
  // The plain form takes seconds, which need no seven looks.
  const int repetitions = std::min(options.repetitions, 3);
  for (const NamedModel& model : kModels) {
    const FaceSetInput set = faceSetInput(model.make(triangleCount));
    const Outline input{pointsOf(set), set.indices};
    Outline plain;
    Outline fast;
    const Comparison comparison = compareInTurn(
        repetitions, [&] { return secondsOfOutline(input, plainOutline, plain); },
        [&] { return secondsOfOutline(input, BuildOutline, fast); });
    if (!(plain == fast)) {
      throw std::runtime_error("the outlines of the " + model.name + " differ");
    }
    report("T", model.name, comparison, "plain", "BuildOutline");
  }
}
