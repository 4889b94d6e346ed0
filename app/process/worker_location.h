// Where the worker program is.
#pragma once

#include <string>

namespace dxf2d {

// The file of the worker program that belongs to this program.
std::string workerProgram();

}  // namespace dxf2d
