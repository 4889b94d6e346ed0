// The unit that a model's file states.
#pragma once

#include <string>
#include <string_view>

#include "app/model/length_unit.h"

struct aiScene;

namespace dxf2d {

// The unit of the coordinates of `scene`, which assimp's reader `importer` (its name, as
// aiImporterDesc::mName has it) read from the file at `path`. Unknown where neither the format nor
// the file says.
//
// Readers of Collada and IFC apply the file's unit, and their scenes are in meters. FBX files state
// a factor that the reader hands on as metadata; glTF and X3D define the meter. What 3MF and AMF
// files state is lost in reading, so the file is looked into once more.
LengthUnit statedUnit(const aiScene& scene, std::string_view importer, const std::string& path);

}  // namespace dxf2d
