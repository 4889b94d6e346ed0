#include "ktscene/kt_version.h"

#include <string_view>

namespace {

#define KT_SCENE_TEXT_OF(number) #number
#define KT_SCENE_TEXT(number) KT_SCENE_TEXT_OF(number)

static_assert(std::string_view(KT_SCENE_PROJECT_VERSION) ==
                  KT_SCENE_TEXT(KTSCENE_VERSION_MAJOR) "." KT_SCENE_TEXT(
                      KTSCENE_VERSION_MINOR) "." KT_SCENE_TEXT(KTSCENE_VERSION_PATCH),
              "kt_version.h and the project's version differ");

}  // namespace

int KtSceneVersion() { return KTSCENE_VERSION; }
