#include "ktscene/kt_g.h"

#include <algorithm>
#include <cstddef>

#include "ktscene/kt_run_code.h"
#include "ktscene/vector3.h"

namespace {

using dxf2d::Vector3;

Vector3 difference(const KtPoint3& a, const KtPoint3& b) {
  return {a.Get0() - b.Get0(), a.Get1() - b.Get1(), a.Get2() - b.Get2()};
}

}  // namespace

namespace KtG {

bool ComputeNormal(const std::vector<KtPoint3>& points, const std::vector<int>& indices,
                   unsigned int first, bool orientation, KtPoint3& normal) {
  if (first >= indices.size()) {
    return false;
  }
  const auto begin = indices.begin() + static_cast<std::ptrdiff_t>(first);
  const auto end = std::find(begin, indices.end(), KtRunCode::kPolygon);
  const auto namesNoPoint = [&points](int index) {
    return index < 0 || static_cast<std::size_t>(index) >= points.size();
  };
  if (end - begin < 3 || std::any_of(begin, end, namesNoPoint)) {
    return false;
  }

  const auto point = [&points](int index) { return points[static_cast<std::size_t>(index)]; };
  const KtPoint3 origin = point(*begin);
  Vector3 sum = {0.0, 0.0, 0.0};
  for (auto k = begin + 1; k + 1 != end; ++k) {
    const Vector3 area =
        dxf2d::cross(difference(point(*k), origin), difference(point(k[1]), origin));
    for (std::size_t i = 0; i < 3; ++i) {
      sum[i] += area[i];
    }
  }
  const double sumLength = dxf2d::length(sum);
  if (!dxf2d::isUsableLength(sumLength)) {
    return false;
  }
  for (double& component : sum) {
    component /= sumLength;
    if (!orientation) {
      component = -component;
    }
  }
  normal.Set(sum[0], sum[1], sum[2]);
  return true;
}

}  // namespace KtG
