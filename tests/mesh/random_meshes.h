// Meshes of which hardly anything is right.
#pragma once

#include <random>
#include <vector>

#include "mesh/polygon_mesh.h"

namespace dxf2d::mesh {

// Points on a small grid, most a little off it, and polygons between any of them.
class RandomMeshes {
 public:
  // Of points that repair takes for one.
  static constexpr double kDistance = 0.01;

  explicit RandomMeshes(unsigned seed) : random_(seed) {}

  PolygonMesh Next() {
    PolygonMesh mesh;
    const int side = Pick(2, 5);
    const bool isNoisy = Pick(0, 1) == 1;
    for (int i = Pick(4, 60); i > 0; --i) {
      Point point;
      for (double& coordinate : point) {
        coordinate = Pick(0, side) + (isNoisy ? 0.3 * kDistance * Pick(-1, 1) : 0.0);
      }
      mesh.points.push_back(point);
    }
    const int last = static_cast<int>(mesh.points.size()) - 1;
    for (int i = Pick(1, 60); i > 0; --i) {
      std::vector<Index> corners;
      for (int k = Pick(0, 3) == 0 ? Pick(1, 6) : 3; k > 0; --k) {
        corners.push_back(static_cast<Index>(Pick(0, last)));
      }
      mesh.Add(corners, static_cast<Index>(Pick(0, 2)));
    }
    for (int i = Pick(-5, 5); i > 0; --i) {
      mesh.segments.push_back({static_cast<Index>(Pick(0, last)), static_cast<Index>(Pick(0, last)),
                               static_cast<Index>(Pick(0, 2))});
    }
    return mesh;
  }

 private:
  int Pick(int least, int greatest) {
    return std::uniform_int_distribution<int>(least, greatest)(random_);
  }

  std::mt19937 random_;
};

}  // namespace dxf2d::mesh
