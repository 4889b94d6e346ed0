// The measures of docs/performance.md, each with its goal in bench/run.
#pragma once

#include <string>

struct MeasureOptions {
  // Where files are written; the file system that W measures.
  std::string directory = ".";
  // How often each side is timed.
  int repetitions = 7;
  // What the sizes are divided by: 1, or more for a quick look.
  int divisor = 1;
};

// W, W1: 10,000,000 polyline vertices through the line-set callback, in sets of 1,000 and in one :
// the same bytes, copied and written by 1 MiB.
void measureVertices(const MeasureOptions& options);
// F: the face-set callback on 1,000,000 triangles : assimp's reading of the same binary STL.
void measureFaceSets(const MeasureOptions& options);
// G: the exponent with which F's callback grows from 100,000 to 10,000,000 triangles.
void measureGrowth(const MeasureOptions& options);
// C: chaining 1,000,000 edges : sorting as many random 64-bit keys.
void measureChaining(const MeasureOptions& options);
// T: the reference implementation of the outline : BuildOutline, 100,000 triangles, same output.
void measureReferenceImplementation(const MeasureOptions& options);
// N: 1,000,000 instances of one block : as many insertions into a std::map by name.
void measureInstances(const MeasureOptions& options);
