// Makes a mesh whole: what a drawing needs and models often lack.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "mesh/edge_table.h"
#include "mesh/polygon_mesh.h"

namespace dxf2d::mesh {

// What repair did, for the user. Sums over objects by +=.
struct RepairCounts {
  std::size_t pointsWelded = 0;  // left out in favor of an earlier point
  // Polygons and lines that are gone, by reason.
  std::size_t notFinite = 0;           // a corner is infinite, not a number, or beyond 1e75
  std::size_t degeneratePolygons = 0;  // without area, or with fewer than three corners
  std::size_t duplicatePolygons = 0;
  std::size_t contactFaces = 0;        // in which two bodies touch
  std::size_t degenerateSegments = 0;  // without length
  std::size_t duplicateSegments = 0;
  std::size_t repeatedCorners = 0;  // of polygons that stay
  std::size_t tJunctionsClosed = 0;
  std::size_t bentPolygonsSplit = 0;
  std::size_t polygonsFlipped = 0;      // within pieces whose windings disagreed
  std::size_t piecesTurnedOutward = 0;  // closed pieces that faced inwards as a whole
  // What is left as it is.
  std::size_t nonOrientablePieces = 0;
  std::size_t nonManifoldEdges = 0;  // with three polygons or more
  // Border edges at which no T-junctions were sought, since there were far too many at the others.
  std::size_t edgesNotSearched = 0;

  RepairCounts& operator+=(const RepairCounts& other);
  friend bool operator==(const RepairCounts&, const RepairCounts&) = default;
};

struct RepairOptions {
  // Distance within which points coincide and T-junctions close, as a share of the diagonal of the
  // box around the points in use, not negative; 0: only points that are equal. None:
  // UsedPoints::DefaultWeldDistance.
  std::optional<double> weldShare = std::nullopt;
  // Bodies of parts that look alike and touch in a face are one body.
  Looks looks = {};
  // What the caller vouches for: no two points are equal, all are usable (isUsablePoint), and each
  // is used. Saves looking for what is not there.
  bool arePointsDistinct = false;
  // Threads that share the work; what comes out is the same with any number.
  std::size_t threads = 1;
};

// Runs, in this order,
//   1. weld              points within the distance become the earliest     mesh/weld.h
//   2. clean             no repeated corner, nothing without extent         mesh/cleaning.h
//   3. drop duplicates   one polygon for each set of corners                mesh/duplicates.h
//                        none in which two bodies touch                     mesh/contact_faces.h
//   4. close T-junctions                                                    mesh/t_junctions.h
//   5. split bent polygons                                                  mesh/bent_polygons.h
//   6. orient            consistent windings, closed pieces outwards        mesh/orientation.h
// in time linear in the mesh, but for step 4, which is n log n in its border edges; steps 3 and 4
// are repeated, a few times at most, as long as T-junctions close. A mesh that needs no repair
// keeps its lists as they are, except that points that nothing uses are left out.
struct Repaired {
  RepairCounts counts;
  // Of the repaired mesh.
  EdgeTable edges;
  // The weld distance, in units of the mesh.
  double distance = 0.0;
};
Repaired repair(PolygonMesh& mesh, const RepairOptions& options);

}  // namespace dxf2d::mesh
