// dxf2d_bench [--quick] [--repetitions N] [--directory DIR] MEASURE…: prints one line of JSON a
// result. Measures are the letters of bench/measure/measures.h.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <map>
#include <string>

#include "bench/measure/measures.h"

namespace {

const std::map<std::string, void (*)(const MeasureOptions&)> kMeasures{
    {"W", measureVertices},
    {"F", measureFaceSets},
    {"G", measureGrowth},
    {"C", measureChaining},
    {"T", measureReferenceImplementation},
    {"N", measureInstances}};

int run(int argc, char** argv) {
  MeasureOptions options;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument == "--quick") {
      options.divisor = 10;
      options.repetitions = 3;
    } else if (argument == "--repetitions" && i + 1 < argc) {
      options.repetitions = std::max(1, std::atoi(argv[++i]));
    } else if (argument == "--directory" && i + 1 < argc) {
      options.directory = argv[++i];
    } else if (const auto measure = kMeasures.find(argument); measure != kMeasures.end()) {
      measure->second(options);
    } else {
      std::fprintf(stderr, "dxf2d_bench: unknown measure '%s'; use some of W F G C T N\n",
                   argument.c_str());
      return 2;
    }
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "dxf2d_bench: %s\n", error.what());
    return 1;
  }
}
