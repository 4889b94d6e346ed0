// Writes the sample drawings: DIRECTORY/r2000.dxf, r2004.dxf and empty.dxf.
//
// usage: release_samples DIRECTORY
#include <cstdio>
#include <fstream>
#include <string>

#include "tests/app/release/sample_drawing.h"

int main(int argc, char** argv) {
  using dxf2d::Drawing;
  using dxf2d::Release;
  using dxf2d::release::sampleDrawing;
  using dxf2d::release::written;
  if (argc != 2) {
    std::fprintf(stderr, "usage: release_samples DIRECTORY\n");
    return 2;
  }
  const std::string directory = std::string(argv[1]) + "/";
  Drawing empty;
  empty.release = Release::kR2000;
  std::ofstream(directory + "r2000.dxf") << written(sampleDrawing(Release::kR2000));
  std::ofstream(directory + "r2004.dxf") << written(sampleDrawing(Release::kR2004));
  std::ofstream(directory + "empty.dxf") << written(empty);
  return 0;
}
