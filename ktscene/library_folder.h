// Where this library lies. Internal to it.
#pragma once

#include <string>

namespace dxf2d {

// The directory from which this library was loaded, links resolved; on Windows in UTF-8. Empty when
// the system does not say.
std::string libraryFolder();

}  // namespace dxf2d
