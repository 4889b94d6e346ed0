// Affine transforms of the scene.
#pragma once

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstdint>

#include "ktscene/export.h"

// A 4x4 transform as 16 doubles m[0..15] for row vectors:
//   x' = ((x m0 + y m4) + z m8) + m12, and so on; elements 12 to 14 are the translation,
//   3, 7 and 11 are 0 and 15 is 1.
// All arithmetic is IEEE double in the order written, so that one scene gives the same numbers
// everywhere; compile users of this header with -ffp-contract=off (the CMake package does).
class KT_SCENE_API KtMatrix {
 public:
  // The identity.
  KtMatrix() { Identity(); }

  // Sets all elements from `data`, 16 doubles, not null.
  void Init(const double* data) {
    assert(data != nullptr);
    std::copy_n(data, 16, m_);
  }
  // Makes this the identity.
  void Identity() {
    std::fill_n(m_, 16, 0.0);
    m_[0] = m_[5] = m_[10] = m_[15] = 1.0;
  }
  // Returns whether this is the identity bit for bit. An element of -0 does not count as 0: what it
  // adds to a product can change the sign of a zero there.
  bool IsIdentity() const {
    return std::equal(m_, m_ + 16, KtMatrix().m_, [](double a, double b) {
      return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
    });
  }
  // Writes all elements to `data`, room for 16 doubles, not null.
  void GetData(double* data) const {
    assert(data != nullptr);
    std::copy_n(m_, 16, data);
  }
  // The 16 elements; valid as long as the matrix.
  const double* Data() const { return m_; }
  // Sets the translation, elements 12 to 14.
  void SetTranslation(double x, double y, double z) {
    m_[12] = x;
    m_[13] = y;
    m_[14] = z;
  }

  // This matrix P becomes "local first, then P", so that world = parent.Mult(local).
  void Mult(const KtMatrix& local) {
    double product[16];
    for (int row = 0; row < 16; row += 4) {
      const double* l = local.m_ + row;
      for (int column = 0; column < 4; ++column) {
        const double* p = m_ + column;
        product[row + column] = ((l[0] * p[0] + l[1] * p[4]) + l[2] * p[8]) + l[3] * p[12];
      }
    }
    Init(product);
  }

  // Multiplies by the rotation of `angle` radians, counter-clockwise about the axis (made unit),
  // applied before this matrix. An axis without a finite length above 0 changes nothing.
  void Rotate(double axisX, double axisY, double axisZ, double angle);

  // The rotation part is read from the rows X, Y, Z, each divided by its length; Z is negated
  // when the rows are left-handed, so that a mirrored matrix shows as a tilt. A row whose length is
  // 0 or not finite: no rotation, and every output below is 0. The pointers must not be null.

  // Rotations in radians about x (applied first), y and z.
  void GetRotateKoef(double* aboutX, double* aboutY, double* aboutZ) const;
  // The same rotation as a unit axis and an angle in [0, pi]; all four are 0 for no rotation.
  // `order` is ignored.
  void GetRotation(double* axisX, double* axisY, double* axisZ, double* angle, int order) const;

 private:
  double m_[16];
};
