// Drawings of a scene in a form that tests can ask about.
#pragma once

#include <vector>

#include "projection/scene.h"
#include "projection/section.h"
#include "projection/segment_chains.h"
#include "projection/union_outline.h"
#include "projection/visibility.h"

namespace dxf2d::projection {

struct ProjectedLine {
  PlanPoint from;
  PlanPoint to;
  Index part;
  EdgeKind kind;
};

// A scene with its candidate edges and what is visible of them.
struct ProjectedScene {
  Scene scene;
  Tolerances tolerances;
  std::vector<CandidateEdge> edges;
  VisibleLines lines;

  explicit ProjectedScene(Scene scene_, std::vector<CandidateEdge> cuts = {});

  std::vector<ProjectedLine> Visible() const;
  std::vector<ProjectedLine> Hidden() const;
  UnionOutline Outline() const;
  ProjectedLine LineOf(const EdgePiece& piece) const;
};

// Whether the point lies on one of the lines, within 1e-6.
bool isDrawn(const std::vector<ProjectedLine>& lines, double x, double y);
// How many times the outline's loops go around the point.
int windingAround(const Polylines& loops, double x, double y);
double lengthOf(const std::vector<ProjectedLine>& lines);
double areaOf(const Polylines& loops);

}  // namespace dxf2d::projection
