#include "ktscene/kt_scene_error.h"

KtSceneError::~KtSceneError() = default;
