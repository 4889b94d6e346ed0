// File names: the operating system's bytes and the framework's wide text.
#pragma once

#include <string>
#include <string_view>

#include "platform/export.h"

inline namespace kt_platform {

// A file name is bytes to a POSIX system and need not be UTF-8. Each byte that is not part of
// valid UTF-8 becomes one lone surrogate U+DC80 .. U+DCFF in the wide text, so that every name
// survives a round trip. A lone surrogate outside that range does not correspond to a byte and
// becomes '?'.
KT_PLATFORM_API std::u16string pathFromBytes(std::string_view bytes);
KT_PLATFORM_API std::string pathToBytes(std::u16string_view path);

}  // namespace kt_platform
