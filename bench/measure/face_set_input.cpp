#include "bench/measure/face_set_input.h"

#include "bench/measure/plugin_host.h"
#include "bench/measure/timing.h"
#include "ktscene/kt_run_code.h"

FaceSetInput faceSetInput(const TriangleSoup& soup) {
  FaceSetInput input;
  input.coords.reserve(9 * soup.size());
  input.indices.reserve(4 * soup.size());
  int index = 0;
  for (const Triangle& triangle : soup) {
    input.coords.insert(input.coords.end(), triangle.begin(), triangle.end());
    input.indices.insert(input.indices.end(), {index, index + 1, index + 2, KtRunCode::kPolygon});
    index += 3;
  }
  return input;
}

std::vector<KtPoint3> pointsOf(const FaceSetInput& input) {
  std::vector<KtPoint3> points;
  points.reserve(input.coords.size() / 3);
  for (std::size_t i = 0; i + 2 < input.coords.size(); i += 3) {
    points.emplace_back(input.coords[i], input.coords[i + 1], input.coords[i + 2]);
  }
  return points;
}

double secondsOfFaceSet(const std::string& path, const FaceSetInput& input) {
  const ScratchExport drawing(path);
  pluginCallbacks().openNode(nullptr);
  return secondsOf([&] { pluginCallbacks().faceSet(input.coords, input.indices, false, true); });
}
