// Which edges of an object a drawing shows, each once.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "mesh/edge_kinds.h"
#include "mesh/edge_table.h"
#include "mesh/polygon_mesh.h"

namespace dxf2d::mesh {

struct EdgeOptions {
  // Degrees, 0 to kNoCreases.
  double creaseDegrees = kDefaultCreaseDegrees;
  // Distance in plan, in units of the mesh, within which the ends of edges are one; 0: none.
  double planDistance = 0.0;
  // Edges at which parts meet that do not look alike are borders.
  Looks looks = {};
  // Leaves out edges that show only because of how a curved surface was cut into facets
  // (mesh/facet_noise.h).
  bool dropsNoise = false;
  // Threads that share the work; what comes out is the same with any number.
  std::size_t threads = 1;
};

struct DrawnEdge {
  Index a;
  Index b;
  Index part;
  EdgeKind kind;

  friend bool operator==(const DrawnEdge&, const DrawnEdge&) = default;
};

// The edges of an object that show: no two of them on one segment in plan, and none that is a point
// in plan.
struct DrawnEdges {
  // By part, within a part in the order of the edge table, lines last.
  std::vector<DrawnEdge> edges;
  // Part i has edges[starts[i]] .. edges[starts[i + 1] - 1].
  std::vector<Index> starts = {0};
  std::size_t PartCount() const { return starts.size() - 1; }
  std::span<const DrawnEdge> Part(std::size_t part) const {
    return {edges.data() + starts[part], edges.data() + starts[part + 1]};
  }
  // How many edges were left out as noise.
  std::size_t noise = 0;
  // How many edges of each kind there are.
  std::array<std::size_t, 5> CountKinds() const;
};

// Finds the edges of an object that show, by the object as a whole: an edge at which a part
// continues another is not a border, and one of several parts is of the one with the first polygon.
// `edges` are those of `mesh`. Of several edges on one segment in plan the first stays, with the
// first of their kinds. Moves points that are within options.planDistance of an earlier one in
// plan, and ends of edges that show, above or below it, as the plug-in tells segments apart
// exactly.
DrawnEdges findDrawnEdges(PolygonMesh& mesh, const EdgeTable& edges, const EdgeOptions& options);

// The edges that findDrawnEdges leaves out as noise, with options.dropsNoise, but for those that
// are points in plan.
std::vector<DrawnEdge> findFacetNoise(const PolygonMesh& mesh, const EdgeTable& edges,
                                      const EdgeOptions& options);

}  // namespace dxf2d::mesh
