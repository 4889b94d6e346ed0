#include "app/cli/program_arguments.h"

namespace dxf2d {

ProgramArguments::ProgramArguments(int count, char** words) : words_(words, words + count + 1) {}

}  // namespace dxf2d
