// From wide text to bytes in a code page, under the operating system's own names.
#pragma once

#include "platform/export.h"

inline namespace kt_platform {

// Stands for the code page of the calling thread. <windows.h> has it as a macro.
#if !defined(CP_THREAD_ACP)
inline constexpr unsigned CP_THREAD_ACP = 3;
#endif

// The ANSI code page of the calling thread: 1250 to 1258, 874, 932, 936, 949, 950 or 65001 (UTF-8);
// until it is set, 1252 or, on Windows, that of the thread's locale. SetThreadCodePage returns
// false, and changes nothing, for any other page.
KT_PLATFORM_API bool SetThreadCodePage(unsigned codePage);
KT_PLATFORM_API unsigned GetThreadCodePage();

// Length in UTF-16 code units of a null-terminated text; 0 for a null pointer.
KT_PLATFORM_API int lstrlenW(const char16_t* text);

// Converts `wideLength` UTF-16 units (-1: up to and including the terminating null) into `codePage`
// (CP_THREAD_ACP or one that SetThreadCodePage takes). Returns the number of bytes written; 0 on
// failure: an unknown page, `wideLength` 0, or a destination of `size` bytes that is too small.
// With `size` 0 nothing is written and the number of bytes needed is returned. Each UTF-16 unit
// that the page cannot hold becomes one `*defaultChar`, or '?' when that is null (a surrogate pair
// becomes two), and sets `*usedDefault` unless that is null. `flags` is 0. The tables are the
// operating system's (iconv). On Windows this is Windows's own function: with `flags` 0 many
// characters that a page lacks become similar ones, and a lone surrogate is U+FFFD in UTF-8.
KT_PLATFORM_API int WideCharToMultiByte(unsigned codePage, unsigned long flags,
                                        const char16_t* wide, int wideLength, char* bytes, int size,
                                        const char* defaultChar, bool* usedDefault);

}  // namespace kt_platform
