// Why an edge shows in a view along z.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "mesh/edge_table.h"
#include "mesh/polygon_mesh.h"
#include "mesh/vector.h"

namespace dxf2d::mesh {

// Of edges that lie on one segment in plan the first of these is told.
enum class EdgeKind : std::uint8_t {
  kBorder,      // one polygon, or parts that do not look alike
  kSilhouette,  // two polygons: one towards the viewer and one not, or both edge-on and not in line
  kNonManifold,  // three polygons or more, at which some surface ends or turns away in plan
  kCrease,       // none of these, but polygons that meet at an angle
  kLine,         // given as a line
};

inline constexpr double kDefaultCreaseDegrees = 30.0;
// No creases.
inline constexpr double kNoCreases = 180.0;

// The cosine of the angle between the normals of two faces above which their edge is a crease, for
// an angle of 0 to kNoCreases degrees.
double creaseCosine(double degrees);

// Classifies the edges of one mesh, which outlives it.
class EdgeClassifier {
 public:
  // Edges whose polygons' normals differ by more than `creaseDegrees` are creases. `threads` share
  // the work of looking at the polygons.
  EdgeClassifier(const PolygonMesh& mesh, double creaseDegrees, std::size_t threads = 1);

  // The kind of the edge from a to b, or nothing when it does not show. Polygons that run along it
  // in the same direction are taken as if one of them were reversed. With three polygons or more,
  // it shows as kNonManifold
  //   - when some, but not all of them stand edge-on, or more of them lie on one side in plan than
  //     on the other, as at an outer edge and where a sheet folds back;
  //   - when all stand edge-on, and more of them rise from it than hang below;
  // and else as a crease when the slope of some differs from that of the first.
  std::optional<EdgeKind> Kind(Index a, Index b, std::span<const EdgeUse> uses) const;

  // The unit normal of a polygon, or the zero vector for one without area.
  const Vector& Normal(Index polygon) const { return facets_[polygon].normal; }
  // Twice its area.
  double DoubledArea(Index polygon) const { return facets_[polygon].doubledArea; }
  // The normals of two neighbors, the second turned to agree with the first.
  std::array<Vector, 2> NormalsOf(const EdgeUse& first, const EdgeUse& second) const;
  // Whether two unit normals differ by more than the angle of creases.
  bool IsCrease(const Vector& u, const Vector& v) const;

 private:
  std::optional<EdgeKind> KindOfTwo(const EdgeUse& first, const EdgeUse& second) const;
  std::optional<EdgeKind> KindOfMany(Index a, Index b, std::span<const EdgeUse> uses) const;

  struct Facet {
    Vector normal;
    double doubledArea;
  };

  const PolygonMesh& mesh_;
  // By polygon.
  LargeArray<Facet> facets_;
  // The cosine of the least angle of a crease.
  double creaseCosine_;
};

}  // namespace dxf2d::mesh
