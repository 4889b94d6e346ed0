// A surface of squares, some of which face away from the viewer.
#pragma once

#include <cstddef>
#include <vector>

// x, y, z triples of (side + 1) x (side + 1) points.
inline std::vector<double> gridCoords(int side) {
  std::vector<double> coords;
  for (int y = 0; y <= side; ++y) {
    for (int x = 0; x <= side; ++x) {
      coords.insert(coords.end(), {double(x), double(y), double((x * 7 + y * 3) % 5)});
    }
  }
  return coords;
}

// A polygon (-7) for each of its squares, every seventh turned over.
inline std::vector<int> gridIndices(int side) {
  std::vector<int> indices;
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x < side; ++x) {
      const int low = y * (side + 1) + x;
      const int high = low + side + 1;
      if ((x + y) % 7 == 0) {
        indices.insert(indices.end(), {low, high, high + 1, low + 1, -7});
      } else {
        indices.insert(indices.end(), {low, low + 1, high + 1, high, -7});
      }
    }
  }
  return indices;
}
