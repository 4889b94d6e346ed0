// Colors of OBJ files that assimp makes up.
#include "app/model/obj_materials.h"

#include <assimp/material.h>
#include <assimp/scene.h>
#include <gtest/gtest.h>

#include <fstream>
#include <map>

#include "app/model/model_reader.h"
#include "app/model/part_color.h"
#include "tests/support/scratch_directory.h"

namespace dxf2d {
namespace {

TEST(ObjMaterials, WithoutKdHaveNoColor) {
  EXPECT_EQ(materialsWithoutColor("newmtl a\n Kd 1 0 0\nnewmtl b c \r\nKa 1 1 1\nmap_Kd b.png\n"
                                  "# Kd 1 1 1\nnewmtl d\n\tKd\t0 0 0\r\n"),
            std::set<std::string>{"b c"});
  EXPECT_TRUE(materialsWithoutColor("Kd 1 1 1\nnewmtl").contains(""));
}

TEST(ObjMaterials, OfTheReadersOwnGrayKeepItWhereTheFileSaysSo) {
  ScratchDirectory folder;
  std::ofstream(folder / "a.mtl") << "newmtl own\nKd 0.6 0.6 0.6\nnewmtl none\nNs 10\n";
  std::ofstream(folder / "a.obj") << "mtllib a.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl own\n"
                                     "f 1 2 3\nusemtl none\nf 3 2 1\n";
  const Model model = readModel(folder / "a.obj");
  std::map<std::string, bool> hasColor;
  for (unsigned i = 0; i < model.scene->mNumMaterials; ++i) {
    const aiMaterial& material = *model.scene->mMaterials[i];
    aiString name;
    material.Get(AI_MATKEY_NAME, name);
    hasColor[name.C_Str()] = materialColor(material).has_value();
  }
  EXPECT_TRUE(hasColor.at("own"));
  EXPECT_FALSE(hasColor.at("none"));
}

}  // namespace
}  // namespace dxf2d
