#include "app/model/model_source.h"

#include <assimp/scene.h>

#include "app/cli/translation.h"
#include "app/model/model_error.h"

namespace dxf2d {

Affine uprightTurn(const aiScene& model, const ModelSource& source, UpAxis asked) {
  const UpAxis up = asked == UpAxis::kAuto ? source.up : asked;
  return uprightTurn(model, source.importer, up);
}

SourceMesh sourceMesh(const aiScene& model, const ModelSource& source, unsigned mesh) {
  return SourceMesh(*model.mMeshes[mesh], source.triangles.get());
}

void requireUnchanged(const ModelSource& source) {
  if (source.triangles && !source.triangles->IsWhole()) {
    throw ModelError(
        kExitInput,
        {source.path, tr("cannot be read: it changes while it is read, or its disk fails"),
         tr("check the disk and that no program is writing the file")});
  }
}

}  // namespace dxf2d
