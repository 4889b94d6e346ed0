#include "tests/projection/projected_lines.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace dxf2d::projection {

ProjectedScene::ProjectedScene(Scene scene_, std::vector<CandidateEdge> cuts)
    : scene(std::move(scene_)),
      tolerances(tolerancesFor(boundsOf(scene))),
      edges(findCandidateEdges(scene, tolerances)) {
  edges.insert(edges.end(), cuts.begin(), cuts.end());
  lines = findVisibleLines(scene, edges, tolerances);
}

ProjectedLine ProjectedScene::LineOf(const EdgePiece& piece) const {
  const CandidateEdge& edge = edges[piece.edge];
  const Point& a = scene.points[edge.from];
  const Point& b = scene.points[edge.to];
  const auto at = [&](double t) {
    return PlanPoint{a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1])};
  };
  return {at(piece.begin), at(piece.end), edge.part, edge.kind};
}

std::vector<ProjectedLine> ProjectedScene::Visible() const {
  std::vector<ProjectedLine> visible;
  for (const EdgePiece& piece : lines.pieces) {
    visible.push_back(LineOf(piece));
  }
  for (const PiercingPiece& piece : lines.piercings) {
    visible.push_back({{piece.from[0], piece.from[1]},
                       {piece.to[0], piece.to[1]},
                       piece.part,
                       EdgeKind::kCrease});
  }
  return visible;
}

std::vector<ProjectedLine> ProjectedScene::Hidden() const {
  std::vector<ProjectedLine> hidden;
  for (const EdgePiece& piece : hiddenPieces(edges.size(), lines.pieces)) {
    hidden.push_back(LineOf(piece));
  }
  return hidden;
}

UnionOutline ProjectedScene::Outline() const {
  const auto parts = scene.parts.empty() ? 0 : *std::ranges::max_element(scene.parts) + 1;
  const Tolerances coarser = outlineTolerancesFor(boundsOf(scene));
  std::vector<CandidateEdge> contours = findCandidateEdges(scene, coarser);
  std::ranges::copy_if(edges, std::back_inserter(contours),
                       [](const CandidateEdge& edge) { return edge.kind == EdgeKind::kCut; });
  return findUnionOutline(scene, contours, std::vector<Index>(parts, 0), coarser);
}

bool isDrawn(const std::vector<ProjectedLine>& lines, double x, double y) {
  constexpr double kNear = 1e-6;
  return std::ranges::any_of(lines, [&](const ProjectedLine& line) {
    const double dx = line.to[0] - line.from[0];
    const double dy = line.to[1] - line.from[1];
    const double length = std::hypot(dx, dy);
    const double along = ((x - line.from[0]) * dx + (y - line.from[1]) * dy) / length;
    const double across = ((x - line.from[0]) * dy - (y - line.from[1]) * dx) / length;
    return std::abs(across) <= kNear && along >= -kNear && along <= length + kNear;
  });
}

int windingAround(const Polylines& loops, double x, double y) {
  int winding = 0;
  for (std::size_t i = 0; i < loops.Count(); ++i) {
    const auto loop = loops.At(i);
    for (std::size_t j = 0; j + 1 < loop.size(); ++j) {
      const PlanPoint& p = loop[j];
      const PlanPoint& q = loop[j + 1];
      if ((p[1] > y) != (q[1] > y) && x < p[0] + (y - p[1]) / (q[1] - p[1]) * (q[0] - p[0])) {
        winding += q[1] > p[1] ? 1 : -1;
      }
    }
  }
  return winding;
}

double lengthOf(const std::vector<ProjectedLine>& lines) {
  double sum = 0;
  for (const ProjectedLine& line : lines) {
    sum += std::hypot(line.to[0] - line.from[0], line.to[1] - line.from[1]);
  }
  return sum;
}

double areaOf(const Polylines& loops) {
  double doubled = 0;
  for (std::size_t i = 0; i < loops.Count(); ++i) {
    const auto loop = loops.At(i);
    for (std::size_t j = 0; j + 1 < loop.size(); ++j) {
      doubled += loop[j][0] * loop[j + 1][1] - loop[j][1] * loop[j + 1][0];
    }
  }
  return doubled / 2;
}

}  // namespace dxf2d::projection
