// A soup as the host sends it.
#pragma once

#include <string>
#include <vector>

#include "bench/models/triangle_soup.h"
#include "ktscene/kt_point3.h"

// Three points a triangle, none shared; each triangle is a run of three indices ended by -7.
struct FaceSetInput {
  std::vector<double> coords;
  std::vector<int> indices;
};

FaceSetInput faceSetInput(const TriangleSoup& soup);

// The same points as the stages of the outline take them.
std::vector<KtPoint3> pointsOf(const FaceSetInput& input);

// The seconds that the face-set callback takes with it, in an export into the file at `path`, which
// is removed. The callback alone: opening and closing are not counted.
double secondsOfFaceSet(const std::string& path, const FaceSetInput& input);
