// Which way is up in a model.
#pragma once

#include <string_view>

#include "app/model/affine.h"

struct aiScene;

namespace dxf2d {

// What the user says about a model: its y or its z axis, as the file has it, points up; or that the
// format decides.
enum class UpAxis { kAuto, kY, kZ };

// The turn that stands a model that assimp has read upright: z up after it. `importer` is the name
// of the reader, as aiImporterDesc::mName has it; `scene` gives the metadata of the formats that
// state the axis in each file.
//
// A Collada file must have been read with AI_CONFIG_IMPORT_COLLADA_IGNORE_UP_DIRECTION set exactly
// when `asked` is not kAuto.
Affine uprightTurn(const aiScene& scene, std::string_view importer, UpAxis asked);

}  // namespace dxf2d
