// File names: the operating system's bytes and the framework's wide text.
#pragma once

#include <string>
#include <string_view>

#include "platform/export.h"

// A file name is bytes to a POSIX system and need not be UTF-8. Each byte that is no part of valid
// UTF-8 stands as one lone surrogate U+DC80 .. U+DCFF in the wide text, so that every name survives
// the way there and back. A lone surrogate outside that range stands for no byte and becomes '?'.
KT_PLATFORM_API std::u16string PathFromBytes(std::string_view bytes);
KT_PLATFORM_API std::string PathToBytes(std::u16string_view path);
