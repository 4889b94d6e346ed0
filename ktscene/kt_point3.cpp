#include "ktscene/kt_point3.h"

#include <cmath>

#include "ktscene/vector3.h"

double KtPoint3::GetAngle(const KtPoint3& u, const KtPoint3& v, bool withSign) {
  const KtPoint3 zero;
  if (u == zero || v == zero) return 0.0;
  const Vector3 a = {u.x_, u.y_, u.z_};
  const Vector3 b = {v.x_, v.y_, v.z_};
  const Vector3 normal = cross(a, b);
  const double angle = std::atan2(length(normal), dot(a, b));
  return withSign ? std::copysign(angle, normal[2]) : angle;
}
