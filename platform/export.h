// Marks what the platform library shows to other modules.
//
// What it shows has the names of the Windows framework and of Windows, in an inline namespace: code
// says CFile, and the linker's symbol is that of kt_platform::CFile. A host that has a CFile of its
// own would otherwise silently replace the library's, since the dynamic linker takes the first
// symbol of a name that it finds.
#pragma once

#include "platform/abi.h"

// Marks what the library exports; of no concern to users.
#if defined(_WIN32)
#if defined(KT_PLATFORM_BUILD)
#define KT_PLATFORM_API __declspec(dllexport)
#else
#define KT_PLATFORM_API __declspec(dllimport)
#endif
#else
#define KT_PLATFORM_API __attribute__((visibility("default")))
#endif
