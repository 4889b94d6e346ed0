// Affine maps in double precision, as transforms of a model are composed before they become nodes
// of a scene.
#pragma once

#include <array>

namespace dxf2d {

// A point p becomes p * linear + shift; `linear` stands by rows, so that its rows are the images of
// the three axes.
struct Affine {
  std::array<double, 9> linear{1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0};
  std::array<double, 3> shift{};

  bool operator==(const Affine&) const = default;
};

// The map that applies `first`, then `second`.
Affine compose(const Affine& first, const Affine& second);

// Sets to 0 what a row of the linear part holds only because its file or reader kept angles in
// single precision: a right angle becomes exact, so that a wall that stands upright in the model
// stands upright in the plan and its edges fall together. For the end of a chain of maps: taken out
// of one in the middle, a small turn that is meant would be lost to what stands far from its
// origin.
void dropNoise(Affine& map);

// True when every number is finite.
bool isFinite(const Affine& map);

// The largest magnitude among the nine numbers.
double largestElement(const std::array<double, 9>& linear);

}  // namespace dxf2d
