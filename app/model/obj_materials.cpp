#include "app/model/obj_materials.h"

#include <assimp/material.h>
#include <assimp/scene.h>

#include <fstream>
#include <iterator>
#include <sstream>

namespace dxf2d {

std::set<std::string> materialsWithoutColor(const std::string& library) {
  std::set<std::string> names;
  std::string current;
  std::istringstream lines(library);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string keyword;
    words >> keyword;
    if (keyword == "newmtl") {
      // The reader takes the rest of the line, blanks included.
      std::getline(words >> std::ws, current);
      current.erase(current.find_last_not_of(" \t\r") + 1);
      names.insert(current);
    } else if (keyword == "Kd") {
      names.erase(current);
    }
  }
  return names;
}

void dropReadersColors(const aiScene& scene, const std::vector<std::string>& paths) {
  std::set<std::string> names;
  for (const std::string& path : paths) {
    std::ifstream file(path, std::ios::binary);
    names.merge(materialsWithoutColor(
        {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()}));
  }
  for (unsigned i = 0; i < scene.mNumMaterials; ++i) {
    aiString name;
    if (scene.mMaterials[i]->Get(AI_MATKEY_NAME, name) == AI_SUCCESS &&
        names.contains(name.C_Str())) {
      scene.mMaterials[i]->RemoveProperty(AI_MATKEY_COLOR_DIFFUSE);
    }
  }
}

}  // namespace dxf2d
