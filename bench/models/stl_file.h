// Binary STL.
#pragma once

#include <string>

#include "bench/models/triangle_soup.h"

// Writes `soup` with zero normals, which readers work out for themselves. Throws
// std::runtime_error when the file cannot be written.
void writeStl(const std::string& path, const TriangleSoup& soup);
