// Edges that show only because of the way a curved surface was cut into facets.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "mesh/edge_table.h"
#include "mesh/polygon_mesh.h"

namespace dxf2d::mesh {

class EdgeClassifier;

// Finds noise among the edges that show. There are two kinds of it:
//
// Folds. Where surfaces of a casting flow into each other, needles of facets lean over: a needle
// faces away from the viewer, and all its neighbors face the viewer, or the reverse. Its edges are
// silhouettes that nothing ends at when the surface bends both ways around it (around what ends in
// the air, as the underside of a rod, it bends one way only) and no other silhouette leads there.
//
// Strokes. A crease parts two surfaces: it ends at borders or other creases, or closes around
// something. Creases that hang together, touch nothing else, are short (kShortShare) and lie along
// a line (kNarrow) do neither. They are noise when each bends by less than kSharp times the angle
// of creases, or bounds a needle.
//
// A needle is a polygon whose height is less than kThinShare, and that is kLeastAspect times
// longer.
//
// Whether an edge is of a stroke does not depend on the view. Time is near-linear in the edges that
// are added. Several threads may add edges at a time, each to findings of its own: what is noise
// does not depend on the order.
class FacetNoise {
 private:
  struct Silhouette;
  struct Crease;

 public:
  // Of the diagonal of the box around the mesh: the height of a needle, and the length of a stroke.
  static constexpr double kThinShare = 0.005;
  static constexpr double kShortShare = 0.06;
  // Of a needle: its least length in heights.
  static constexpr double kLeastAspect = 4.0;
  // Of the length of a stroke: how far its points are off the line through its ends.
  static constexpr double kNarrow = 1.0 / 6.0;
  static constexpr double kSharp = 1.5;

  // The mesh and the classifier outlive this. `threads` share the work of finding the strokes.
  FacetNoise(const PolygonMesh& mesh, const EdgeClassifier& classifier, double creaseDegrees,
             std::size_t threads);

  // What may be noise among some edges.
  class Findings {
   private:
    friend class FacetNoise;
    std::vector<Silhouette> silhouettes_;
    std::vector<Crease> faint_;
  };

  // Adds an edge that shows, of one polygon or of three and more.
  void AddOther(Index a, Index b);
  // Adds an edge from a to b of two polygons that is a silhouette, a crease, or both; `edge` is its
  // number in what Folds and Strokes return, less that of the first edge of the findings, or kNone.
  void AddPair(Index a, Index b, std::span<const EdgeUse> uses, Index edge, Findings& findings);
  // Adds findings, whose first edge has the number `first`. Not for several threads at a time.
  void Add(Findings findings, Index first);

  struct Fold {
    Index edge;
    // Of any kind.
    bool isCrease;
  };
  // Silhouettes around folds.
  std::vector<Fold> Folds() const;
  // Creases of strokes; they may be silhouettes nevertheless.
  std::vector<Index> Strokes() const;

 private:
  struct Silhouette {
    Fold fold;
    Index a;
    Index b;
    std::array<Index, 2> polygons;
    bool isConcave;
  };
  // Of one polygon's edges: those that are silhouettes between opposite sides, and those of them
  // at which the surface bends inwards.
  struct SilhouetteCount {
    Index all = 0;
    Index concave = 0;
  };
  struct Crease {
    Index edge;
    Index a;
    Index b;
  };

  bool IsNeedle(Index polygon) const;
  bool IsFold(Index polygon) const;
  // Whether creases with these ends, each at least once, are a stroke.
  bool IsStroke(std::span<const Index> points) const;

  const PolygonMesh& mesh_;
  const EdgeClassifier& classifier_;
  std::size_t threads_;
  double sharpCosine_;
  double diagonal_;
  std::vector<Silhouette> silhouettes_;
  // By polygon; empty until there is a silhouette.
  std::vector<SilhouetteCount> counts_;
  // Creases that may be of strokes.
  std::vector<Crease> faint_;
  // By point: whether an edge ends there that is of no stroke. Threads write it at a time.
  std::vector<std::uint8_t> isAnchor_;
};

}  // namespace dxf2d::mesh
