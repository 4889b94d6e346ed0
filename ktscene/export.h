// Marks what the host scene library shows to other modules.
#pragma once

#include "platform/abi.h"

// Marks what the library exports; of no concern to users.
#if defined(_WIN32)
#if defined(KT_SCENE_BUILD)
#define KT_SCENE_API __declspec(dllexport)
#else
#define KT_SCENE_API __declspec(dllimport)
#endif
#else
#define KT_SCENE_API __attribute__((visibility("default")))
#endif
