// dxf2d_make_models DIRECTORY TRIANGLES: writes sphere.stl, terrain.stl and boxes.stl.
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "bench/models/stl_file.h"
#include "bench/models/triangle_soup.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: dxf2d_make_models DIRECTORY TRIANGLES\n");
    return 2;
  }
  try {
    const std::size_t triangleCount = std::strtoull(argv[2], nullptr, 10);
    for (const NamedModel& model : kModels) {
      writeStl(std::string(argv[1]) + "/" + model.name + ".stl", model.make(triangleCount));
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "dxf2d_make_models: %s\n", error.what());
    return 1;
  }
  return 0;
}
