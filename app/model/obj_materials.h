// What assimp's reader of OBJ files does not keep of their materials.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace Assimp {
class IOSystem;
}
struct aiScene;

namespace dxf2d {

// The materials of a material library (.mtl) that have no color: no line `Kd`.
std::set<std::string> materialsWithoutColor(const std::string& library);

// Takes the color from the materials of `scene` that have none in the material libraries at
// `paths`, which `system` opens: the reader gives them a gray, which another material may have of
// its own.
void dropReadersColors(const aiScene& scene, const std::vector<std::string>& paths,
                       Assimp::IOSystem& system);

}  // namespace dxf2d
