#include "app/model/plan_visibility.h"

#include "geometry/outline.h"

namespace {

std::vector<KtPoint3> pointsOf(const std::vector<double>& coords) {
  std::vector<KtPoint3> points;
  points.reserve(coords.size() / 3);
  for (std::size_t i = 0; i + 2 < coords.size(); i += 3) {
    points.emplace_back(coords[i], coords[i + 1], coords[i + 2]);
  }
  return points;
}

}  // namespace

bool showsInPlan(const KtFaceSet& faces) {
  std::vector<KtPoint3> points = pointsOf(faces.coords);
  std::vector<int> indices = faces.indices;
  return BuildOutline(points, indices, faces.reverseOrientation, faces.closedSurface);
}

bool showsInPlan(const KtLineSet& lines) {
  std::vector<KtPoint3> points = pointsOf(lines.coords);
  std::vector<int> indices = lines.indices;
  return BuildLineOutline(points, indices);
}
