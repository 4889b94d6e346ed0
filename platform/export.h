// Marks what the platform library shows to other modules.
#pragma once

#if defined(_WIN32)
#if defined(KT_PLATFORM_BUILD)
#define KT_PLATFORM_API __declspec(dllexport)
#else
#define KT_PLATFORM_API __declspec(dllimport)
#endif
#else
#define KT_PLATFORM_API __attribute__((visibility("default")))
#endif
