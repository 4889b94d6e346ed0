// The C runtime's locale under its wide name.
#pragma once

#include <clocale>

#include "platform/export.h"

inline namespace kt_platform {

// Sets or, with a null `locale`, queries the locale of `category` (LC_NUMERIC, …) for the whole
// process. Returns the name of the locale now in force, valid until the next call on this thread,
// or null when the locale is unknown; nothing has changed then. Not safe against other threads.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the C runtime's own name.
KT_PLATFORM_API const char16_t* _wsetlocale(int category, const char16_t* locale);

}  // namespace kt_platform
