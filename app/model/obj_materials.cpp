#include "app/model/obj_materials.h"

#include <assimp/material.h>
#include <assimp/scene.h>

#include <assimp/IOStream.hpp>
#include <assimp/IOSystem.hpp>
#include <sstream>

namespace dxf2d {
namespace {

// What cannot be read is noted by `system`.
std::string textOf(const std::string& path, Assimp::IOSystem& system) {
  Assimp::IOStream* const file = system.Open(path.c_str(), "rb");
  if (file == nullptr) {
    return {};
  }
  std::string text(file->FileSize(), '\0');
  text.resize(file->Read(text.data(), 1, text.size()));
  system.Close(file);
  return text;
}

}  // namespace

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

void dropReadersColors(const aiScene& scene, const std::vector<std::string>& paths,
                       Assimp::IOSystem& system) {
  std::set<std::string> names;
  for (const std::string& path : paths) {
    names.merge(materialsWithoutColor(textOf(path, system)));
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
