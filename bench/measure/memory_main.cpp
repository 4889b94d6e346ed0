// dxf2d_bench_memory [--quick] [--directory DIR]: the memory of measures M and N, in bytes that
// operator new gave out. Prints one line of JSON a result.
#include <cstdio>
#include <exception>
#include <map>
#include <string>

#include "bench/measure/counted_memory.h"
#include "bench/measure/face_set_input.h"
#include "bench/measure/instance_scene.h"
#include "bench/measure/plugin_host.h"
#include "bench/measure/report.h"

namespace {

void measureFaceSets(const std::string& path, std::size_t triangleCount) {
  for (const NamedModel& model : kModels) {
    const FaceSetInput input = faceSetInput(model.make(triangleCount));
    const ScratchExport drawing(path);
    pluginCallbacks().openNode(nullptr);
    const double bytes =
        extraBytesOf([&] { pluginCallbacks().faceSet(input.coords, input.indices, false, true); });
    report("M", model.name, bytes * 4.0 / static_cast<double>(input.indices.size()),
           "peak beyond the input " + std::to_string(static_cast<long long>(bytes)) + " bytes");
  }
}

void measureInstances(const std::string& path, std::size_t instanceCount) {
  const std::vector<std::u16string> ids = objectIds(instanceCount);
  InstanceScene scene = instanceScene(ids);
  const double bytes = extraBytesOf([&] { exportInstances(scene, path); });
  const double mapBytes = extraBytesOf([&] {
    std::map<std::u16string, int> map;
    for (const std::u16string& id : ids) {
      map.emplace(id, 0);
    }
  });
  const auto count = static_cast<double>(instanceCount);
  report("N bytes", "each instance", bytes / count,
         "an entry of std::map " + std::to_string(static_cast<int>(mapBytes / count)) + " bytes");
}

int run(int argc, char** argv) {
  std::string directory = ".";
  std::size_t divisor = 1;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument == "--quick") {
      divisor = 10;
    } else if (argument == "--directory" && i + 1 < argc) {
      directory = argv[++i];
    } else {
      std::fprintf(stderr, "usage: dxf2d_bench_memory [--quick] [--directory DIR]\n");
      return 2;
    }
  }
  measureFaceSets(directory + "/memory.dxf", 1'000'000 / divisor);
  measureInstances(directory + "/memory.dxf", 1'000'000 / divisor);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "dxf2d_bench_memory: %s\n", error.what());
    return 1;
  }
}
