#include <assimp/scene.h>

#include <assimp/Importer.hpp>
#include <cstdio>
#include <stdexcept>

#include "bench/measure/face_set_input.h"
#include "bench/measure/fresh_process.h"
#include "bench/measure/measures.h"
#include "bench/measure/plugin_host.h"
#include "bench/measure/report.h"
#include "bench/models/stl_file.h"

namespace {

double secondsOfReading(const std::string& path) {
  Assimp::Importer importer;
  const double seconds = secondsOf([&] { importer.ReadFile(path, 0); });
  if (importer.GetScene() == nullptr) {
    throw std::runtime_error(importer.GetErrorString());
  }
  return seconds;
}

}  // namespace

void measureFaceSets(const MeasureOptions& options) {
  // Loaded once, here, and not by every child.
  pluginCallbacks();
  const std::size_t triangleCount = 1'000'000 / static_cast<std::size_t>(options.divisor);
  const std::string modelPath = options.directory + "/face_set.stl";
  const std::string drawingPath = options.directory + "/face_set.dxf";
  for (const NamedModel& model : kModels) {
    const TriangleSoup soup = model.make(triangleCount);
    writeStl(modelPath, soup);
    const FaceSetInput input = faceSetInput(soup);
    const auto drawing = [&] { return secondsOfFaceSet(drawingPath, input); };
    const auto reading = [&] { return secondsOfReading(modelPath); };
    report("F", model.name,
           compareInTurn(
               options.repetitions, [&] { return inFreshProcess(drawing); },
               [&] { return inFreshProcess(reading); }),
           "callback", "assimp");
    report("F+", model.name, compareInTurn(options.repetitions, drawing, reading), "callback",
           "assimp");
  }
  std::remove(modelPath.c_str());
}
