// Writes the triangles of a model, projected onto the sheet of a view: six doubles each, x and y of
// the three corners, in drawing units of scale 1. A line of the model is a triangle whose last two
// corners are one. assimp cuts polygons into triangles; of the program under test this one only
// asks which axis points up and how a view lies on the sheet.
//
// usage: model_triangles MODEL VIEW [--with-heights|--sides]
//
// With heights, ten doubles: the number of the triangle's node, and x, y and z of the corners; no
// lines. For the sides of the polygons, before they are cut, seven: the node, and x, y and z of
// both ends.
//
// Exit status 1, with a message, when the model cannot be read.
#include <assimp/importerdesc.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <array>
#include <assimp/Importer.hpp>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "app/model/affine.h"
#include "app/model/up_axis.h"
#include "app/model/view.h"

using dxf2d::Affine;
using dxf2d::UpAxis;

namespace {

Affine affineOf(const aiMatrix4x4& m) {
  Affine affine;
  affine.linear = {m.a1, m.b1, m.c1, m.a2, m.b2, m.c2, m.a3, m.b3, m.c3};
  affine.shift = {m.a4, m.b4, m.c4};
  return affine;
}

std::array<double, 3> placed(const aiVector3D& v, const Affine& map) {
  Affine point;
  point.shift = {v.x, v.y, v.z};
  return dxf2d::compose(point, map).shift;
}

struct Output {
  bool hasHeights = false;
  // The sides of polygons in place of triangles.
  bool isOfSides = false;
  // Of the node, counted from 0.
  double node = -1;
};

void writeSides(const aiMesh& mesh, const aiFace& face, const Affine& map, double node) {
  for (unsigned i = 0; i < face.mNumIndices && face.mNumIndices > 2; ++i) {
    std::fwrite(&node, sizeof(double), 1, stdout);
    for (const unsigned corner : {i, (i + 1) % face.mNumIndices}) {
      const std::array<double, 3> end = placed(mesh.mVertices[face.mIndices[corner]], map);
      std::fwrite(end.data(), sizeof(double), 3, stdout);
    }
  }
}

void writeMesh(const aiMesh& mesh, const Affine& map, const Output& output) {
  for (unsigned f = 0; f < mesh.mNumFaces; ++f) {
    const aiFace& face = mesh.mFaces[f];
    if (output.isOfSides) {
      writeSides(mesh, face, map, output.node);
      continue;
    }
    const bool isLine = face.mNumIndices == 2 && !output.hasHeights;
    if (face.mNumIndices != 3 && !isLine) {
      continue;
    }
    if (output.hasHeights) {
      std::fwrite(&output.node, sizeof(double), 1, stdout);
    }
    for (const unsigned i : {0U, 1U, isLine ? 1U : 2U}) {
      const std::array<double, 3> corner = placed(mesh.mVertices[face.mIndices[i]], map);
      std::fwrite(corner.data(), sizeof(double), output.hasHeights ? 3 : 2, stdout);
    }
  }
}

void writeNode(const aiScene& model, const aiNode& node, const Affine& parent, Output& output) {
  ++output.node;
  const Affine map = dxf2d::compose(affineOf(node.mTransformation), parent);
  for (unsigned i = 0; i < node.mNumMeshes; ++i) {
    writeMesh(*model.mMeshes[node.mMeshes[i]], map, output);
  }
  for (unsigned i = 0; i < node.mNumChildren; ++i) {
    if (node.mChildren[i] != nullptr) {
      writeNode(model, *node.mChildren[i], map, output);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  Output output;
  output.hasHeights = argc == 4 && std::strcmp(argv[3], "--with-heights") == 0;
  output.isOfSides = argc == 4 && std::strcmp(argv[3], "--sides") == 0;
  if ((argc != 3 && !output.hasHeights && !output.isOfSides) || !dxf2d::parseView(argv[2])) {
    std::fprintf(stderr, "usage: model_triangles MODEL VIEW [--with-heights|--sides]\n");
    return 2;
  }
  Assimp::Importer importer;
  const aiScene* model = importer.ReadFile(argv[1], output.isOfSides ? 0U : aiProcess_Triangulate);
  if (model == nullptr) {
    std::fprintf(stderr, "model_triangles: %s\n", importer.GetErrorString());
    return 1;
  }
  const int index = importer.GetPropertyInteger("importerIndex", -1);
  const char* reader =
      index < 0 ? "" : importer.GetImporterInfo(static_cast<std::size_t>(index))->mName;
  writeNode(
      *model, *model->mRootNode,
      dxf2d::compose(dxf2d::uprightTurn(*model, reader, UpAxis::kAuto), *dxf2d::parseView(argv[2])),
      output);
  std::fflush(stdout);
  // Not exit(): some of assimp's readers lose memory, which the leak checker would hold against
  // this program.
  std::_Exit(0);
}
