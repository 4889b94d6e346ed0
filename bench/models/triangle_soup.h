// The models that are measured: closed and round, open and rough, many and small.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

// Nine coordinates a triangle, in single precision as model files hold them; no two triangles share
// a point. Counter-clockwise seen from outside, or from above.
using Triangle = std::array<float, 9>;
using TriangleSoup = std::vector<Triangle>;

// The three models in about `triangleCount` triangles (within 1 %), the same ones at every call.

// A sphere by rings and segments, leant so that no ring is the silhouette.
TriangleSoup sphereSoup(std::size_t triangleCount);
// Hills over a square grid: open, all of it facing up.
TriangleSoup terrainSoup(std::size_t triangleCount);
// Upright boxes of many sizes, each turned about z, that do not touch: 83,500 at a million
// triangles.
TriangleSoup boxesSoup(std::size_t triangleCount);

struct NamedModel {
  std::string name;
  TriangleSoup (*make)(std::size_t triangleCount);
};

inline const std::array<NamedModel, 3> kModels{
    {{"sphere", sphereSoup}, {"terrain", terrainSoup}, {"boxes", boxesSoup}}};
