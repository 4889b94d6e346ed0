// What the objects of a plan that share their geometry have in common.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "app/model/mesh_check.h"
#include "app/model/model_limits.h"
#include "app/model/model_source.h"
#include "app/model/part_color.h"
#include "app/model/plan_extent.h"
#include "app/model/plan_options.h"
#include "app/model/plan_source.h"
#include "ktscene/kt_scene.h"
#include "mesh/drawn_edges.h"
#include "mesh/polygon_mesh.h"
#include "mesh/repair.h"

struct aiScene;

namespace dxf2d {

// One leaf of an object: a face set or a line set, and its color.
struct PlanPart {
  KtSceneGeometry geometry;
  Color color{};
  // Number of its mesh in the model, and what its lines are.
  unsigned mesh = 0;
  PartKind kind = PartKind::kBorder;
};

struct PlanBlock {
  std::vector<PlanPart> parts;
  PlanPoints hull;
  // False when its meshes have neither faces nor lines.
  bool hasContent = false;
  // Whether an edge of it shows in plan; empty when that was not needed to build it.
  std::optional<bool> shows;
};

// True when the plug-in's outline of any part, seen along z, has an edge. What has none makes no
// block in a drawing: edges that three or more polygons share are not drawn, nor is what stands on
// end.
bool showsInPlan(const std::vector<PlanPart>& parts);

// What was done to the meshes of a model's blocks.
struct MeshWork {
  mesh::RepairCounts repair;
  std::size_t creases = 0;
  // See mesh::DrawnEdges.
  std::size_t noise = 0;
};

// The meshes of an object as one.
struct GatheredMesh {
  mesh::PolygonMesh mesh;
  // Whether points that are equal are one already, and each is used; how many more there were.
  bool arePointsDistinct = false;
  std::size_t joined = 0;
};

// Builds the blocks of a model. Refers to its arguments.
class BlockBuilder {
 public:
  BlockBuilder(const aiScene& model, const ModelSource& source, const PlanOptions& options,
               LimitChecker& limits);

  // What mesh `mesh` holds. Throws ModelError for a vertex that is not finite and for a face that
  // names no vertex.
  const MeshContent& ContentOf(unsigned mesh);

  // The block of these meshes, every vertex p at p * residual (by rows, see Affine), a part for
  // each mesh; repaired and with creases as the options want it. Its hull points hold for any turn
  // in plan with `anyTurn`, else for quarter turns. Throws ModelError for what leaves the range of
  // double precision, and above the limit of vertices.
  PlanBlock Build(const std::vector<unsigned>& meshes, const std::array<double, 9>& residual,
                  bool anyTurn);

  // The meshes as one, every vertex p at p * residual, a part for each mesh; repaired as the
  // options want it. Unless null, `noise` receives the edges of repaired meshes that are facet
  // noise. Throws as Build does.
  mesh::PolygonMesh BuildMesh(const std::vector<unsigned>& meshes,
                              const std::array<double, 9>& residual,
                              std::vector<mesh::DrawnEdge>* noise);

  // Which of the meshes look alike, by the names and colors of their materials.
  mesh::Looks LooksOf(const std::vector<unsigned>& meshes) const;

  // The color that mesh `mesh` is drawn in.
  Color ColorOf(unsigned mesh) const;

  // Of all blocks so far.
  const MeshWork& Work() const { return work_; }

 private:
  // The faces and lines as the model has them.
  PlanBlock BuildAsGiven(const std::vector<unsigned>& meshes, const std::array<double, 9>& residual,
                         bool anyTurn);
  // The edges of the object as a whole.
  PlanBlock BuildFromEdges(const std::vector<unsigned>& meshes,
                           const std::array<double, 9>& residual, bool anyTurn);
  // Adds a part for each kind of `edges`, of mesh `mesh`.
  void AddKinds(const mesh::PolygonMesh& object, std::span<const mesh::DrawnEdge> edges,
                unsigned mesh, PlanBlock& block) const;
  // Throws ModelError above the limit of vertices, and for more than one set can hold.
  void CountMeshes(const std::vector<unsigned>& meshes);
  bool IsLeftOut(unsigned mesh, const std::vector<unsigned>& object);
  GatheredMesh Gather(const std::vector<unsigned>& meshes, const std::array<double, 9>& residual);
  SourceMesh MeshOf(unsigned mesh) const;
  [[noreturn]] void Fail(unsigned mesh, const std::string& reason) const;

  const aiScene& model_;
  const ModelSource& source_;
  const PlanOptions& options_;
  LimitChecker& limits_;
  // By mesh; empty until it is looked through.
  std::vector<std::optional<MeshContent>> contents_;
  MeshWork work_;
};

}  // namespace dxf2d
