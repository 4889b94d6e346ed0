// What the operating system says about its own errors. Internal to this library.
#pragma once

#include <string>

namespace dxf2d {

// The system's sentence for an error number, without its period; empty where it has none, and on
// POSIX, whose texts follow the locale of the host and not the language of our sentences.
std::u16string osErrorText(long osError);

}  // namespace dxf2d
