// What a program must have in common with the libraries that it links, checked at compile time:
// strings and vectors cross the boundary, so both sides must lay them out alike.
#pragma once

#if defined(__cplusplus)

#if (defined(_MSVC_LANG) ? _MSVC_LANG : __cplusplus) < 202002L
#error "KtScene needs C++20: compile with -std=c++20 or later"
#endif

// Sets the macros of the standard library.
#include <version>

#if defined(_GLIBCXX_DEBUG)
#error \
    "KtScene's libraries have no _GLIBCXX_DEBUG containers: compile without it (_GLIBCXX_ASSERTIONS is fine)"
#endif

#if defined(_GLIBCXX_USE_CXX11_ABI) && !_GLIBCXX_USE_CXX11_ABI
#error \
    "KtScene's libraries use the string ABI of C++11: compile with -D_GLIBCXX_USE_CXX11_ABI=1, the default"
#endif

#endif
