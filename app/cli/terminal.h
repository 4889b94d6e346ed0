// What a terminal shows.
#pragma once

#include <cstddef>
#include <cstdio>

namespace dxf2d {

// Whether what is printed on `stream` may be bold: it is a terminal that can, and NO_COLOR is not
// set.
bool isStyled(std::FILE* stream);

// Whether `stream` is a terminal on which a line can be erased.
bool isErasable(std::FILE* stream);

// How many characters a line of the terminal `stream` holds; of any other stream, 80.
std::size_t lineWidth(std::FILE* stream);

}  // namespace dxf2d
