// Points and directions of the scene.
#pragma once

#include "ktscene/export.h"
#include "ktscene/kt_matrix.h"

// A point or a direction: three doubles, x, y and z, in drawing units. Plain data; the origin by
// default. Compile users of this header with -ffp-contract=off, as those of KtMatrix.
class KtPoint3 {
 public:
  // The origin.
  KtPoint3() = default;
  // The point or the direction of these coordinates.
  KtPoint3(double x, double y, double z) : x_(x), y_(y), z_(z) {}

  // Sets all three coordinates.
  void Set(double x, double y, double z) {
    x_ = x;
    y_ = y;
    z_ = z;
  }
  // Sets the third coordinate alone.
  void Set2(double z) { z_ = z; }
  // The coordinates x, y and z.
  double Get0() const { return x_; }
  double Get1() const { return y_; }
  double Get2() const { return z_; }

  // Applies `matrix` to this point, translation included.
  void Mult(const KtMatrix& matrix) {
    const double* m = matrix.Data();
    const double x = ((x_ * m[0] + y_ * m[4]) + z_ * m[8]) + m[12];
    const double y = ((x_ * m[1] + y_ * m[5]) + z_ * m[9]) + m[13];
    const double z = ((x_ * m[2] + y_ * m[6]) + z_ * m[10]) + m[14];
    Set(x, y, z);
  }

  // The angle between two directions in radians, in [0, pi]; 0 when either is the zero vector.
  // With `withSign` it carries the sign of the cross product's z.
  KT_SCENE_API static double GetAngle(const KtPoint3& u, const KtPoint3& v, bool withSign);

  // Exact; -0 equals 0.
  friend bool operator==(const KtPoint3& a, const KtPoint3& b) {
    return a.x_ == b.x_ && a.y_ == b.y_ && a.z_ == b.z_;
  }

  // Returns whether all three coordinates are finite.
  friend bool isFinite(const KtPoint3& point) {
    // One comparison for three: a product with 0 is 0 for a finite factor and NaN for any other.
    return (point.x_ * 0.0 + point.y_ * 0.0) + point.z_ * 0.0 == 0.0;
  }

 private:
  double x_ = 0.0;
  double y_ = 0.0;
  double z_ = 0.0;
};
