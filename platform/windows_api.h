// <windows.h> without what it would add to every name here. Internal to the files for Windows.
#pragma once

#define WIN32_LEAN_AND_MEAN
// The C++ library of mingw defines it too.
#if !defined(NOMINMAX)
#define NOMINMAX 1
#endif
#include <windows.h>
