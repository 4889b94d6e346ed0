#include "app/model/up_axis.h"

#include <assimp/scene.h>
#include <gtest/gtest.h>

#include <cstdint>

namespace dxf2d {
namespace {

using Rows = std::array<double, 9>;

constexpr Rows kIdentity{1, 0, 0, 0, 1, 0, 0, 0, 1};
constexpr Rows kTilt{1, 0, 0, 0, 0, 1, 0, -1, 0};

Rows turnOf(const char* importer, UpAxis asked) {
  const aiScene scene;
  return uprightTurn(scene, importer, asked).linear;
}

// A scene as the FBX reader leaves it, with the axes in its metadata.
Rows turnOfFbx(std::int32_t up, std::int32_t upSign, std::int32_t front, std::int32_t frontSign,
               UpAxis asked = UpAxis::kAuto) {
  aiScene scene;
  scene.mMetaData = aiMetadata::Alloc(6);
  scene.mMetaData->Set(0, "UpAxis", up);
  scene.mMetaData->Set(1, "UpAxisSign", upSign);
  scene.mMetaData->Set(2, "FrontAxis", front);
  scene.mMetaData->Set(3, "FrontAxisSign", frontSign);
  scene.mMetaData->Set(4, "CoordAxis", std::int32_t{0});
  scene.mMetaData->Set(5, "CoordAxisSign", std::int32_t{1});
  return uprightTurn(scene, "Autodesk FBX Importer", asked).linear;
}

TEST(UprightTurn, FormatsWithYUpAreTilted) {
  for (const char* importer : {"glTF2 Importer", "glTF Importer", "Wavefront Object Importer",
                               "Collada Importer", "Extensible 3D(X3D) Importer"}) {
    EXPECT_EQ(turnOf(importer, UpAxis::kAuto), kTilt) << importer;
    EXPECT_EQ(turnOf(importer, UpAxis::kY), kTilt) << importer;
    EXPECT_EQ(turnOf(importer, UpAxis::kZ), kIdentity) << importer;
  }
}

TEST(UprightTurn, FormatsWithZUpStand) {
  for (const char* importer :
       {"Stereolithography (STL) Importer", "Stanford Polygon Library (PLY) Importer",
        "OFF Importer", "3mf Importer", "Blender 3D Importer (http://www.blender3d.org)"}) {
    EXPECT_EQ(turnOf(importer, UpAxis::kAuto), kIdentity) << importer;
    EXPECT_EQ(turnOf(importer, UpAxis::kZ), kIdentity) << importer;
    EXPECT_EQ(turnOf(importer, UpAxis::kY), kTilt) << importer;
  }
}

TEST(UprightTurn, TheReadersOwnTurnIsTakenBack) {
  for (const char* importer : {"Discreet 3DS Importer", "Drawing Interchange Format (DXF) Importer",
                               "Industry Foundation Classes (IFC) Importer", "ASE Importer"}) {
    EXPECT_EQ(turnOf(importer, UpAxis::kAuto), kTilt) << importer;
    // The file's own z is up, as the format has it.
    EXPECT_EQ(turnOf(importer, UpAxis::kZ), kTilt) << importer;
    // The file's own y is up: what the reader made -z.
    EXPECT_EQ(turnOf(importer, UpAxis::kY), (Rows{1, 0, 0, 0, -1, 0, 0, 0, -1})) << importer;
  }
}

TEST(UprightTurn, FbxFollowsItsMetadata) {
  EXPECT_EQ(turnOfFbx(1, 1, 2, 1), kTilt);
  EXPECT_EQ(turnOfFbx(2, 1, 1, -1), kIdentity);
  EXPECT_EQ(turnOfFbx(2, 1, 1, -1, UpAxis::kY), kTilt);
}

TEST(UprightTurn, FbxAxesThatContradictEachOtherLeaveTheUpAxis) {
  // Up and front the same axis.
  EXPECT_EQ(turnOfFbx(2, 1, 2, 1), kIdentity);
  // A left-handed frame.
  EXPECT_EQ(turnOfFbx(1, 1, 2, -1), kTilt);
  // x up, and y up turned round.
  EXPECT_EQ(turnOfFbx(0, 1, 2, 1), (Rows{0, 0, 1, 0, 1, 0, -1, 0, 0}));
  EXPECT_EQ(turnOfFbx(1, -1, 2, 1), (Rows{1, 0, 0, 0, 0, -1, 0, 1, 0}));
  EXPECT_EQ(turnOfFbx(7, 1, 2, 1), kTilt);
}

TEST(UprightTurn, FbxWithoutMetadataHasYUp) {
  EXPECT_EQ(turnOf("Autodesk FBX Importer", UpAxis::kAuto), kTilt);
}

}  // namespace
}  // namespace dxf2d
