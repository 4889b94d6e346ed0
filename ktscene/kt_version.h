// The version of the SDK. May be included from C.
#pragma once

#include "ktscene/export.h"

// The version of these headers. Within one major version the libraries are compatible both ways:
// what was built with older headers runs on newer libraries, and what was built with newer headers
// runs on older libraries as far as it calls nothing that they lack.
#define KTSCENE_VERSION_MAJOR 1
#define KTSCENE_VERSION_MINOR 0
#define KTSCENE_VERSION_PATCH 0

// A version as one number, such as 10203 for 1.2.3.
#define KTSCENE_MAKE_VERSION(major, minor, patch) ((major)*10000 + (minor)*100 + (patch))
#define KTSCENE_VERSION \
  KTSCENE_MAKE_VERSION(KTSCENE_VERSION_MAJOR, KTSCENE_VERSION_MINOR, KTSCENE_VERSION_PATCH)

#if defined(__cplusplus)
extern "C" {
#endif

// The version of the library that is loaded, as KTSCENE_MAKE_VERSION gives it. Has C linkage, so
// that a program can look it up before it calls anything newer.
KT_SCENE_API int KtSceneVersion(void);

#if defined(__cplusplus)
}
#endif
