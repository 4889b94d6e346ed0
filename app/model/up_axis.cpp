#include "app/model/up_axis.h"

#include <assimp/scene.h>

#include <array>
#include <cstdint>
#include <optional>

namespace dxf2d {
namespace {

struct FormatAxis {
  std::string_view importer;
  // The axis that points up in the file.
  UpAxis up;
  // True when the reader has turned the model from z up to y up, by its root node.
  bool turned;
};

// Readers that are not listed deliver y up, which is assimp's own convention.
constexpr std::array kFormatAxes = std::to_array<FormatAxis>({
    // The format defines z as up, or the programs that it belongs to do; the reader turns it.
    {"Discreet 3DS Importer", UpAxis::kZ, true},
    {"ASE Importer", UpAxis::kZ, true},
    {"Drawing Interchange Format (DXF) Importer", UpAxis::kZ, true},
    {"Industry Foundation Classes (IFC) Importer", UpAxis::kZ, true},
    {"Doom 3 / MD5 Mesh Importer", UpAxis::kZ, true},
    {"Inter-Quake Model Importer", UpAxis::kZ, true},
    {"Quake II Mesh Importer", UpAxis::kZ, true},
    {"Quake III Mesh Importer", UpAxis::kZ, true},
    {"Quake Mesh / 3D GameStudio Mesh Importer", UpAxis::kZ, true},
    {"Return To Castle Wolfenstein Mesh Importer", UpAxis::kZ, true},
    // The same, and the reader leaves it as it is.
    {"3mf Importer", UpAxis::kZ, false},
    {"Additive manufacturing file format(AMF) Importer", UpAxis::kZ, false},
    {"Blender 3D Importer (http://www.blender3d.org)", UpAxis::kZ, false},
    {"CharacterStudio Motion Importer (MoCap)", UpAxis::kZ, false},
    {"3D GameStudio Heightmap (HMP) Importer", UpAxis::kZ, false},
    // A file may state another axis, which the reader drops; z is what it has when it states none.
    {"Open Game Engine Exchange", UpAxis::kZ, false},
    {"Quake III BSP Importer", UpAxis::kZ, false},
    {"Quick3D Importer", UpAxis::kZ, false},
    {"Terragen Heightmap Importer", UpAxis::kZ, false},
    {"TrueSpace Object Importer", UpAxis::kZ, false},
    {"Unreal Mesh Importer", UpAxis::kZ, false},
    {"Valve SMD Importer", UpAxis::kZ, false},
    // The format does not say. These carry parts for machines, scans and mathematical bodies, whose
    // programs draw with z up.
    {"Stereolithography (STL) Importer", UpAxis::kZ, false},
    {"Stanford Polygon Library (PLY) Importer", UpAxis::kZ, false},
    {"OFF Importer", UpAxis::kZ, false},
    {"Neutral File Format Importer", UpAxis::kZ, false},
    {"Raw Importer", UpAxis::kZ, false},
    {"XGL Importer", UpAxis::kZ, false},
    // Y up: glTF, X3D and assimp's own format define it; OBJ, LightWave, DirectX, AC3D, Blitz3D,
    // MilkShape, Irrlicht, Ogre, Nendo, Silo, MikuMikuDance and BVH files come from programs that
    // work so. Collada files state their axis and the reader turns each to y up.
});

constexpr std::string_view kFbxImporter = "Autodesk FBX Importer";

// (x, y, z) becomes (x, -z, y): what pointed along y points along z.
Affine tilt() {
  Affine turn;
  turn.linear = {1.0, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0, -1.0, 0.0};
  return turn;
}

// A direction along an axis of the file.
struct SignedAxis {
  int axis;
  double sign;
};

std::optional<SignedAxis> metadataAxis(const aiScene& scene, const char* axisKey,
                                       const char* signKey) {
  std::int32_t axis = 0;
  std::int32_t sign = 1;
  if (scene.mMetaData == nullptr || !scene.mMetaData->Get(axisKey, axis)) {
    return std::nullopt;
  }
  if (axis < 0 || axis > 2) {
    return std::nullopt;
  }
  scene.mMetaData->Get(signKey, sign);
  return SignedAxis{axis, sign < 0 ? -1.0 : 1.0};
}

// The turn for an FBX file, whose reader passes the axes on as metadata and turns nothing: its
// right-hand axis becomes x, its front (which faces the viewer of a front view) -y, its up axis z.
Affine turnFromFbx(const aiScene& scene) {
  const auto up = metadataAxis(scene, "UpAxis", "UpAxisSign");
  const auto front = metadataAxis(scene, "FrontAxis", "FrontAxisSign");
  const auto right = metadataAxis(scene, "CoordAxis", "CoordAxisSign");
  if (!up) {
    return tilt();
  }
  Affine turn;
  if (front && right) {
    turn.linear.fill(0.0);
    turn.linear[3 * static_cast<std::size_t>(right->axis)] = right->sign;
    turn.linear[3 * static_cast<std::size_t>(front->axis) + 1] = -front->sign;
    turn.linear[3 * static_cast<std::size_t>(up->axis) + 2] = up->sign;
    const std::array<double, 9>& m = turn.linear;
    const double determinant = m[0] * (m[4] * m[8] - m[5] * m[7]) -
                               m[1] * (m[3] * m[8] - m[5] * m[6]) +
                               m[2] * (m[3] * m[7] - m[4] * m[6]);
    if (determinant == 1.0) {
      return turn;
    }
  }
  // Axes that contradict each other: the up axis alone decides.
  const double sign = up->sign;
  switch (up->axis) {
    case 0:
      turn.linear = {0.0, 0.0, sign, 0.0, 1.0, 0.0, -sign, 0.0, 0.0};
      break;
    case 1:
      turn.linear = {1.0, 0.0, 0.0, 0.0, 0.0, sign, 0.0, -sign, 0.0};
      break;
    default:
      turn.linear = {1.0, 0.0, 0.0, 0.0, sign, 0.0, 0.0, 0.0, sign};
      break;
  }
  return turn;
}

}  // namespace

Affine uprightTurn(const aiScene& scene, std::string_view importer, UpAxis asked) {
  if (asked == UpAxis::kAuto && importer == kFbxImporter) {
    return turnFromFbx(scene);
  }
  FormatAxis format{importer, UpAxis::kY, false};
  for (const FormatAxis& listed : kFormatAxes) {
    if (listed.importer == importer) {
      format = listed;
    }
  }
  const UpAxis up = asked == UpAxis::kAuto ? format.up : asked;
  // The reader's turn is taken back first, so that the user's word is about the file's own axes.
  const Affine asFile = format.turned ? tilt() : Affine{};
  return up == UpAxis::kY ? compose(asFile, tilt()) : asFile;
}

}  // namespace dxf2d
