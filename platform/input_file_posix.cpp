#include "platform/input_file.h"

namespace dxf2d {

std::FILE* openForReading(const std::string& path) { return std::fopen(path.c_str(), "rb"); }

}  // namespace dxf2d
