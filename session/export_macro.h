// Marks what the plug-in exports.
#pragma once

#if defined(_WIN32)
#define DXF2D_EXPORT __declspec(dllexport)
#else
#define DXF2D_EXPORT __attribute__((visibility("default")))
#endif
