// The program that runs.
#pragma once

#include <filesystem>

namespace dxf2d {

// This program's file, with links followed; empty where the system does not tell.
std::filesystem::path ownProgram();

}  // namespace dxf2d
