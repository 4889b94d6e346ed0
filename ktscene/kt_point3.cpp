#include "ktscene/kt_point3.h"

#include <cmath>

#include "ktscene/vector3.h"

double KtPoint3::GetAngle(const KtPoint3& u, const KtPoint3& v, bool withSign) {
  const KtPoint3 zero;
  if (u == zero || v == zero) {
    return 0.0;
  }
  const dxf2d::Vector3 a = {u.x_, u.y_, u.z_};
  const dxf2d::Vector3 b = {v.x_, v.y_, v.z_};
  const dxf2d::Vector3 normal = dxf2d::cross(a, b);
  const double angle = std::atan2(dxf2d::length(normal), dxf2d::dot(a, b));
  return withSign ? std::copysign(angle, normal[2]) : angle;
}
