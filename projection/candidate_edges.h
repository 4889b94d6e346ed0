// The edges that a drawing may show.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "mesh/edge_kinds.h"
#include "platform/parallel.h"
#include "projection/scene.h"

namespace dxf2d::projection {

enum class EdgeKind : std::uint8_t {
  kBorder,      // of one face, or between parts that do not look alike
  kSilhouette,  // more of its faces lie on one side of it in plan than on the other
  kCrease,      // none of these, but its faces meet at an angle; or faces pierce each other there
  kCut,         // where a section cuts the faces
  kBridge,      // across a gap of a cut: bounds what is filled there, and is not drawn
  kLine,        // a line that the model gives as such
  kNoise,       // a silhouette that is facet noise (Scene::noise): bounds faces, and is not drawn
};

// Whether edges of the kind are drawn where they can be seen.
inline bool isDrawn(EdgeKind kind) { return kind != EdgeKind::kBridge && kind != EdgeKind::kNoise; }

// An edge between two points of a scene. Which faces it belongs to need not be told: they touch it,
// and what touches an edge does not hide it.
struct CandidateEdge {
  Index from;
  Index to;
  Index part;
  EdgeKind kind;

  friend bool operator==(const CandidateEdge&, const CandidateEdge&) = default;
};

using mesh::kDefaultCreaseDegrees;
using mesh::kNoCreases;

// The borders, silhouettes, creases and lines of a scene, in order of their lower point. Faces are
// neighbors when they share two points, whatever their parts (each mesh of a scene has points of
// its own); windings do not matter. An edge between parts belongs to the lesser one. A face
// narrower in plan than `tolerances.edgeOn` is seen edge-on and lies on no side. Edges shorter in
// plan than `tolerances.plan` are left out, and so are faces without area.
//
// Edges of three faces or more are also silhouettes when some, but not all of the faces are
// edge-on, and else creases as those of two are. Together this shows the edges that
// mesh::EdgeClassifier shows, but for the edge of two faces that lie on one another. The diagonals
// of polygons are edges only where they are silhouettes: a bent polygon can turn away from the
// viewer inside. Creases lie between polygons: what matters is the slope of the whole polygon,
// since its corners may lie a little off its plane, next to each other, and its triangles be
// slivers of any slope there. For the same reason triangles narrower than a few
// `tolerances.weld` lie on the side on which their polygon would have them.
//
// Creases that are facet noise are left out.
//
// Threads share the edges out; the result is the same with any number.
//
// What else is between parts with different entries in `lookOfPart`, such as a pane that is level
// with its wall, is a border. Without that list all parts look alike.
std::vector<CandidateEdge> findCandidateEdges(const Scene& scene, const Tolerances& tolerances,
                                              double creaseDegrees = kDefaultCreaseDegrees,
                                              std::span<const Index> lookOfPart = {},
                                              const Threading& threading = {});

// The width in plan of triangle `t`: its doubled area by its longest side, both in plan.
double planWidth(const Scene& scene, std::size_t t);

}  // namespace dxf2d::projection
