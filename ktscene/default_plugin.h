// The plug-in that comes with this library.
#pragma once

#include <string>

namespace dxf2d {

// Its path: in the folder dxf2d beside this library, as it is installed, or beside the library
// itself, as it is built. Throws KtTraverserError when it is in neither.
std::string defaultPlugin();

}  // namespace dxf2d
