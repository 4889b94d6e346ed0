// What a terminal shows.
#pragma once

#include <cstdio>

namespace dxf2d {

// Whether what is printed on `stream` may be bold: it is a terminal that can, and NO_COLOR is not
// set.
bool isStyled(std::FILE* stream);

}  // namespace dxf2d
