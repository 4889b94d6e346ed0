#include <algorithm>
#include <stdexcept>

#include "bench/measure/face_set_input.h"
#include "bench/measure/measures.h"
#include "bench/measure/report.h"
#include "geometry/outline/outline.h"
#include "tests/geometry/outline/reference_outline.h"

using dxf2d::BuildOutline;
using dxf2d::referenceOutline;

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

void measureReferenceImplementation(const MeasureOptions& options) {
  const std::size_t triangleCount = 100'000 / static_cast<std::size_t>(options.divisor);
  // The reference implementation takes seconds, which need no seven looks.
  const int repetitions = std::min(options.repetitions, 3);
  for (const NamedModel& model : kModels) {
    const FaceSetInput set = faceSetInput(model.make(triangleCount));
    const Outline input{pointsOf(set), set.indices};
    Outline reference;
    Outline fast;
    const Comparison comparison = compareInTurn(
        repetitions, [&] { return secondsOfOutline(input, referenceOutline, reference); },
        [&] { return secondsOfOutline(input, BuildOutline, fast); });
    if (!(reference == fast)) {
      throw std::runtime_error("the outlines of the " + model.name + " differ");
    }
    report("T", model.name, comparison, "reference", "BuildOutline");
  }
}
