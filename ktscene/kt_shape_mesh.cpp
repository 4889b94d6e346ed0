#include "ktscene/kt_scene.h"

#include <cmath>

#include "ktscene/kt_run_code.h"

namespace {

constexpr int kSides = 32;

void addPoint(KtFaceSet& mesh, double x, double y, double z) {
  mesh.coords.insert(mesh.coords.end(), {x, y, z});
}

}  // namespace

KtFaceSet MakeBoxMesh(const KtBox& box) {
  const double x = box.a / 2;
  const double y = box.b / 2;
  KtFaceSet mesh;
  for (const double z : {0.0, box.c}) {
    addPoint(mesh, -x, -y, z);
    addPoint(mesh, x, -y, z);
    addPoint(mesh, x, y, z);
    addPoint(mesh, -x, y, z);
  }
  mesh.indices = {3, 2, 1, 0, KtRunCode::kPolygon, 4, 5, 6, 7, KtRunCode::kPolygon,
                  0, 1, 5, 4, KtRunCode::kPolygon, 1, 2, 6, 5, KtRunCode::kPolygon,
                  2, 3, 7, 6, KtRunCode::kPolygon, 3, 0, 4, 7, KtRunCode::kPolygon};
  return mesh;
}

KtFaceSet MakeCylinderMesh(const KtCylinder& cylinder) {
  constexpr double kFullTurn = 6.283185307179586;
  KtFaceSet mesh;
  for (const double z : {0.0, cylinder.height}) {
    for (int i = 0; i < kSides; ++i) {
      const double phi = kFullTurn * i / kSides;
      addPoint(mesh, cylinder.radius * std::cos(phi), cylinder.radius * std::sin(phi), z);
    }
  }
  for (int i = kSides - 1; i >= 0; --i) {
    mesh.indices.push_back(i);
  }
  mesh.indices.push_back(KtRunCode::kPolygon);
  for (int i = 0; i < kSides; ++i) {
    mesh.indices.push_back(kSides + i);
  }
  mesh.indices.push_back(KtRunCode::kPolygon);
  for (int i = 0; i < kSides; ++i) {
    const int next = (i + 1) % kSides;
    mesh.indices.insert(mesh.indices.end(),
                        {i, next, kSides + next, kSides + i, KtRunCode::kPolygon});
  }
  return mesh;
}
