// Standard input, output and error.
#pragma once

namespace dxf2d {

// Opens /dev/null under the number of each standard stream that this process was started without,
// so that no file opened later takes that number and receives what is printed. For the start of
// the program.
void reserveStandardStreams();

}  // namespace dxf2d
