#include "mesh/repair.h"

#include <vector>

#include "mesh/bent_polygons.h"
#include "mesh/cleaning.h"
#include "mesh/contact_faces.h"
#include "mesh/duplicates.h"
#include "mesh/orientation.h"
#include "mesh/t_junctions.h"
#include "mesh/weld.h"

namespace dxf2d::mesh {

namespace {

// Of the doubled polygons those both of whose parts look the same.
std::vector<Index> ofOneLook(const PolygonMesh& mesh, const std::vector<DoubledPolygon>& doubled,
                             const RepairOptions& options) {
  std::vector<Index> polygons;
  for (const DoubledPolygon& twice : doubled) {
    if (options.looks.AreAlike(mesh.parts[twice.polygon], twice.otherPart)) {
      polygons.push_back(twice.polygon);
    }
  }
  return polygons;
}

EdgeTable dropDuplicates(PolygonMesh& mesh, const RepairOptions& options, RepairCounts& counts) {
  EdgeTable edges(mesh, options.threads);
  const Duplicates duplicates = dropDuplicatePolygons(mesh, edges, options.threads);
  if (duplicates.dropped == 0) {
    return edges;
  }
  counts.duplicatePolygons += duplicates.dropped;
  edges = EdgeTable(mesh, options.threads);
  const std::size_t contacts =
      dropContactFaces(mesh, edges, ofOneLook(mesh, duplicates.doubled, options));
  if (contacts != 0) {
    counts.contactFaces += contacts;
    edges = EdgeTable(mesh, options.threads);
  }
  return edges;
}

// Steps 3 and 4. Returns the edges of what they leave.
EdgeTable closeSurface(PolygonMesh& mesh, double distance, const RepairOptions& options,
                       RepairCounts& counts) {
  // Closing may uncover a duplicate, whose removal may uncover a T-junction; more rounds than a few
  // only meshes made for it take.
  constexpr int kMostRounds = 4;
  EdgeTable edges = dropDuplicates(mesh, options, counts);
  for (int round = 0; round < kMostRounds; ++round) {
    const TJunctionCounts closed = closeTJunctions(mesh, edges, distance);
    counts.edgesNotSearched = closed.edgesNotSearched;
    if (closed.pointsInserted == 0) {
      break;
    }
    counts.tJunctionsClosed += closed.pointsInserted;
    edges = dropDuplicates(mesh, options, counts);
  }
  return edges;
}

}  // namespace

RepairCounts& RepairCounts::operator+=(const RepairCounts& other) {
  pointsWelded += other.pointsWelded;
  notFinite += other.notFinite;
  degeneratePolygons += other.degeneratePolygons;
  duplicatePolygons += other.duplicatePolygons;
  contactFaces += other.contactFaces;
  degenerateSegments += other.degenerateSegments;
  duplicateSegments += other.duplicateSegments;
  repeatedCorners += other.repeatedCorners;
  tJunctionsClosed += other.tJunctionsClosed;
  bentPolygonsSplit += other.bentPolygonsSplit;
  polygonsFlipped += other.polygonsFlipped;
  piecesTurnedOutward += other.piecesTurnedOutward;
  nonOrientablePieces += other.nonOrientablePieces;
  nonManifoldEdges += other.nonManifoldEdges;
  edgesNotSearched += other.edgesNotSearched;
  return *this;
}

Repaired repair(PolygonMesh& mesh, const RepairOptions& options) {
  Repaired repaired;
  RepairCounts& counts = repaired.counts;
  UsedPoints used(mesh, options.arePointsDistinct, options.threads);
  if (!used.areUsable) {
    counts.notFinite = dropNotFinite(mesh);
    used = UsedPoints(mesh, false, options.threads);
  }
  repaired.distance =
      options.weldShare ? used.WeldDistance(*options.weldShare) : used.DefaultWeldDistance();
  counts.pointsWelded = weld(mesh, used, repaired.distance, options.threads);
  const CleaningCounts cleaned = dropDegenerate(mesh, repaired.distance, options.threads);
  counts.repeatedCorners = cleaned.repeatedCorners;
  counts.degeneratePolygons = cleaned.degeneratePolygons;
  counts.degenerateSegments = cleaned.degenerateSegments;
  if (counts.degeneratePolygons + counts.degenerateSegments != 0) {
    dropUnusedPoints(mesh);
  }
  counts.duplicateSegments = dropDuplicateSegments(mesh);
  repaired.edges = closeSurface(mesh, repaired.distance, options, counts);
  counts.bentPolygonsSplit = splitBentPolygons(mesh, repaired.distance, options.threads);
  if (counts.bentPolygonsSplit != 0) {
    // Triangles may be where others are.
    repaired.edges = closeSurface(mesh, repaired.distance, options, counts);
  }
  counts.nonManifoldEdges = repaired.edges.NonManifoldCount();
  const OrientationCounts oriented = orient(mesh, repaired.edges, options.threads);
  counts.polygonsFlipped = oriented.polygonsFlipped;
  counts.piecesTurnedOutward = oriented.piecesTurnedOutward;
  counts.nonOrientablePieces = oriented.nonOrientablePieces;
  return repaired;
}

}  // namespace dxf2d::mesh
