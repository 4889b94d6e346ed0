#include "app/model/plan_block.h"

#include <assimp/scene.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>

#include "app/cli/translation.h"
#include "app/model/mesh_geometry.h"
#include "app/model/model_error.h"
#include "app/model/object_mesh.h"
#include "geometry/outline/outline.h"
#include "mesh/drawn_edges.h"
#include "mesh/weld.h"

namespace dxf2d {
namespace {

std::vector<KtPoint3> pointsOf(const std::vector<double>& coords) {
  std::vector<KtPoint3> points;
  points.reserve(coords.size() / 3);
  for (std::size_t i = 0; i + 2 < coords.size(); i += 3) {
    points.emplace_back(coords[i], coords[i + 1], coords[i + 2]);
  }
  return points;
}

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

bool showsInPlan(const PlanPart& part) {
  if (const auto* faces = std::get_if<std::shared_ptr<const KtFaceSet>>(&part.geometry)) {
    return showsInPlan(**faces);
  }
  return showsInPlan(*std::get<std::shared_ptr<const KtLineSet>>(part.geometry));
}

std::string outOfRange() {
  return tr("a vertex leaves the range of numbers where its node places it");
}

// Adds the geometry's points to the hull.
void addTo(HullPoints& hull, const KtSceneGeometry& geometry) {
  if (const auto* faces = std::get_if<std::shared_ptr<const KtFaceSet>>(&geometry)) {
    hull.Add((*faces)->coords, (*faces)->indices);
  } else if (const auto* lines = std::get_if<std::shared_ptr<const KtLineSet>>(&geometry)) {
    hull.Add((*lines)->coords, (*lines)->indices);
  }
}

std::size_t threadsFor(const GatheredMesh& object, const PlanOptions& options) {
  return options.threading.For(object.mesh.corners.size());
}

mesh::Repaired repairGathered(GatheredMesh& object, const PlanOptions& options,
                              const mesh::Looks& looks, MeshWork& work) {
  mesh::Repaired repaired = repair(object.mesh, {options.weldShare, looks, object.arePointsDistinct,
                                                 threadsFor(object, options)});
  repaired.counts.pointsWelded += object.joined;
  work.repair += repaired.counts;
  return repaired;
}

// Joins points that are equal, as the plug-in does.
void joinEqual(GatheredMesh& object, std::size_t threads) {
  if (!object.arePointsDistinct) {
    mesh::weld(object.mesh, mesh::UsedPoints(object.mesh, false, threads), 0.0, threads);
  }
}

// The edges of the mesh that show, once it is repaired.
mesh::DrawnEdges drawnEdges(GatheredMesh& object, const PlanOptions& options,
                            const mesh::Looks& looks, MeshWork& work) {
  mesh::EdgeOptions edgeOptions;
  edgeOptions.creaseDegrees = options.creaseDegrees;
  edgeOptions.looks = looks;
  edgeOptions.threads = threadsFor(object, options);
  if (!options.repair) {
    joinEqual(object, edgeOptions.threads);
    return findDrawnEdges(object.mesh, mesh::EdgeTable(object.mesh, edgeOptions.threads),
                          edgeOptions);
  }
  const mesh::Repaired repaired = repairGathered(object, options, looks, work);
  // Drawings have six digits after the point: rounding may bring ends nearer by that much.
  constexpr double kLastDigit = 1e-6;
  edgeOptions.planDistance = repaired.distance + kLastDigit;
  edgeOptions.dropsNoise = true;
  return findDrawnEdges(object.mesh, repaired.edges, edgeOptions);
}

}  // namespace

bool showsInPlan(const std::vector<PlanPart>& parts) {
  return std::ranges::any_of(parts, [](const PlanPart& part) { return showsInPlan(part); });
}

BlockBuilder::BlockBuilder(const aiScene& model, const ModelSource& source,
                           const PlanOptions& options, LimitChecker& limits)
    : model_(model),
      source_(source),
      options_(options),
      limits_(limits),
      contents_(model.mNumMeshes) {}

SourceMesh BlockBuilder::MeshOf(unsigned mesh) const { return sourceMesh(model_, source_, mesh); }

const MeshContent& BlockBuilder::ContentOf(unsigned mesh) {
  std::optional<MeshContent>& content = contents_[mesh];
  if (!content) {
    std::string fault;
    content = checkMesh(MeshOf(mesh), options_.threading, fault);
    if (!fault.empty()) {
      Fail(mesh, fault);
    }
  }
  return *content;
}

void BlockBuilder::CountMeshes(const std::vector<unsigned>& meshes) {
  std::size_t vertices = 0;
  std::size_t polygons = 0;
  std::size_t corners = 0;
  for (const unsigned mesh : meshes) {
    limits_.AddVertices(MeshOf(mesh).VertexCount());
    vertices += MeshOf(mesh).VertexCount();
    polygons += ContentOf(mesh).polygons;
    corners += ContentOf(mesh).polygonCorners;
  }
  if (!isWithinIndexRange(vertices, polygons, corners)) {
    throw ModelError(kExitLimit,
                     {source_.path, tr("an object of it has too many faces for one drawing"),
                      tr("split the object into several")});
  }
}

PlanBlock BlockBuilder::Build(const std::vector<unsigned>& meshes,
                              const std::array<double, 9>& residual, bool anyTurn) {
  CountMeshes(meshes);
  PlanBlock block = isDrawnAsGiven(options_) ? BuildAsGiven(meshes, residual, anyTurn)
                                             : BuildFromEdges(meshes, residual, anyTurn);
  for (const unsigned mesh : meshes) {
    block.hasContent = block.hasContent || !ContentOf(mesh).IsEmpty();
  }
  return block;
}

PlanBlock BlockBuilder::BuildAsGiven(const std::vector<unsigned>& meshes,
                                     const std::array<double, 9>& residual, bool anyTurn) {
  PlanBlock block;
  HullPoints hull(anyTurn);
  for (const unsigned mesh : meshes) {
    if (IsLeftOut(mesh, meshes)) {
      continue;
    }
    MeshGeometry geometry;
    if (!makeMeshGeometry(MeshOf(mesh), ContentOf(mesh), residual, options_.threading, geometry)) {
      Fail(mesh, outOfRange());
    }
    if (geometry.faces) {
      if (MeshOf(mesh).Triangles() != nullptr) {
        hull.AddAll(geometry.faces->coords, geometry.faces->indices);
      } else {
        hull.Add(geometry.faces->coords, geometry.faces->indices);
      }
      block.parts.push_back({std::move(geometry.faces), ColorOf(mesh), mesh});
    }
    if (geometry.lines) {
      hull.Add(geometry.lines->coords, geometry.lines->indices);
      block.parts.push_back({std::move(geometry.lines), ColorOf(mesh), mesh});
    }
  }
  block.hull = hull.Take();
  return block;
}

// Whether a mesh of an object is the edges of its faces, and these are not drawn.
bool BlockBuilder::IsLeftOut(unsigned mesh, const std::vector<unsigned>& object) {
  return options_.trueEdges == TrueEdges::kLeftOut && ContentOf(mesh).polygons == 0 &&
         std::ranges::any_of(object,
                             [&](unsigned other) { return ContentOf(other).polygons != 0; });
}

GatheredMesh BlockBuilder::Gather(const std::vector<unsigned>& meshes,
                                  const std::array<double, 9>& residual) {
  GatheredMesh object;
  if (meshes.size() == 1 && MeshOf(meshes[0]).Triangles() != nullptr) {
    const StlTriangles& triangles = *MeshOf(meshes[0]).Triangles();
    if (appendTriangles(triangles, residual, 0, options_.threading.For(3 * triangles.Count()),
                        object.mesh)) {
      object.arePointsDistinct = true;
      object.joined = 3 * triangles.Count() - object.mesh.points.size();
      return object;
    }
  }
  for (std::size_t part = 0; part < meshes.size(); ++part) {
    if (IsLeftOut(meshes[part], meshes)) {
      continue;
    }
    if (!appendMesh(MeshOf(meshes[part]), ContentOf(meshes[part]), residual,
                    static_cast<mesh::Index>(part), object.mesh)) {
      Fail(meshes[part], outOfRange());
    }
  }
  return object;
}

mesh::PolygonMesh BlockBuilder::BuildMesh(const std::vector<unsigned>& meshes,
                                          const std::array<double, 9>& residual,
                                          std::vector<mesh::DrawnEdge>* noise) {
  GatheredMesh object = Gather(meshes, residual);
  if (options_.repair) {
    const mesh::Looks looks = LooksOf(meshes);
    const mesh::Repaired repaired = repairGathered(object, options_, looks, work_);
    if (noise != nullptr) {
      *noise =
          findFacetNoise(object.mesh, repaired.edges,
                         {options_.creaseDegrees, 0.0, looks, true, threadsFor(object, options_)});
      work_.noise += noise->size();
    }
  } else {
    joinEqual(object, threadsFor(object, options_));
  }
  return std::move(object.mesh);
}

PlanBlock BlockBuilder::BuildFromEdges(const std::vector<unsigned>& meshes,
                                       const std::array<double, 9>& residual, bool anyTurn) {
  GatheredMesh gathered = Gather(meshes, residual);
  const mesh::PolygonMesh& object = gathered.mesh;
  const mesh::DrawnEdges edges = drawnEdges(gathered, options_, LooksOf(meshes), work_);
  work_.creases += edges.CountKinds()[static_cast<std::size_t>(mesh::EdgeKind::kCrease)];
  work_.noise += edges.noise;
  PlanBlock block;
  HullPoints hull(anyTurn);
  for (std::size_t part = 0; part < edges.PartCount(); ++part) {
    const std::size_t first = block.parts.size();
    if (options_.splitsKinds) {
      AddKinds(object, edges.Part(part), meshes[part], block);
    } else if (!edges.Part(part).empty()) {
      const unsigned mesh = meshes[part];
      block.parts.push_back({lineSetOf(object, edges.Part(part)), ColorOf(mesh), mesh});
    }
    for (std::size_t i = first; i < block.parts.size(); ++i) {
      addTo(hull, block.parts[i].geometry);
    }
  }
  block.shows = !block.parts.empty();
  block.hull = hull.Take();
  return block;
}

mesh::Looks BlockBuilder::LooksOf(const std::vector<unsigned>& meshes) const {
  std::map<std::pair<std::string, Color>, mesh::Index> numbers;
  mesh::Looks looks;
  for (const unsigned mesh : meshes) {
    const unsigned material = model_.mMeshes[mesh]->mMaterialIndex;
    std::string name;
    if (material < model_.mNumMaterials && model_.mMaterials[material] != nullptr) {
      name = model_.mMaterials[material]->GetName().C_Str();
    }
    const auto number = static_cast<mesh::Index>(numbers.size());
    looks.ofPart.push_back(numbers.emplace(std::pair(name, ColorOf(mesh)), number).first->second);
  }
  return looks;
}

void BlockBuilder::AddKinds(const mesh::PolygonMesh& object, std::span<const mesh::DrawnEdge> edges,
                            unsigned mesh, PlanBlock& block) const {
  for (const PartKind kind : {PartKind::kBorder, PartKind::kCrease}) {
    std::vector<mesh::DrawnEdge> chosen;
    std::ranges::copy_if(edges, std::back_inserter(chosen), [kind](const mesh::DrawnEdge& edge) {
      return (edge.kind == mesh::EdgeKind::kCrease) == (kind == PartKind::kCrease);
    });
    if (!chosen.empty()) {
      block.parts.push_back({lineSetOf(object, chosen), ColorOf(mesh), mesh, kind});
    }
  }
}

Color BlockBuilder::ColorOf(unsigned mesh) const {
  const unsigned material = model_.mMeshes[mesh]->mMaterialIndex;
  std::optional<Color> color;
  if (material < model_.mNumMaterials && model_.mMaterials[material] != nullptr) {
    color = materialColor(*model_.mMaterials[material]);
  }
  return drawnColor(color, options_.colors);
}

void BlockBuilder::Fail(unsigned mesh, const std::string& reason) const {
  throw ModelError(kExitInput,
                   {source_.path,
                    tr("in mesh %1 '%2', %3",
                       {std::to_string(mesh), model_.mMeshes[mesh]->mName.C_Str(), reason}),
                    repairFile()});
}

}  // namespace dxf2d
