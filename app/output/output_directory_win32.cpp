#include "app/output/output_directory.h"

// Names are looked up by their paths there: a file that a program has open cannot be replaced.

namespace dxf2d {

OutputDirectory::OutputDirectory(const std::string& /*target*/) {}

}  // namespace dxf2d
