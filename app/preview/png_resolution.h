// The size on paper of PNG pictures.
#pragma once

#include <string>

namespace dxf2d {

// Puts the resolution into a picture that says none, so that programs print it true to size.
void setPngResolution(std::string& png, int pixelsPerInch);

}  // namespace dxf2d
