// The meshes of a model as sets of a scene.
#pragma once

#include <array>
#include <memory>

#include "app/model/mesh_check.h"
#include "ktscene/kt_scene.h"
#include "platform/parallel.h"

namespace dxf2d {

// A mesh's polygons and lines, each null when there are none. They are apart because each makes a
// block of its own in a drawing.
struct MeshGeometry {
  // Where the faces are triangles that share no vertices (SourceMesh::Triangles), equal vertices
  // are one point, in the order in which they come first: what the plug-in would make of them.
  std::shared_ptr<const KtFaceSet> faces;
  std::shared_ptr<const KtLineSet> lines;
};

// `content` is what checkMesh found in this mesh, without a fault. Every vertex p becomes p *
// residual (by rows, see Affine). Returns false, with nothing in `geometry`, when that leaves the
// range of double precision.
bool makeMeshGeometry(const SourceMesh& mesh, const MeshContent& content,
                      const std::array<double, 9>& residual, const Threading& threading,
                      MeshGeometry& geometry);

}  // namespace dxf2d
