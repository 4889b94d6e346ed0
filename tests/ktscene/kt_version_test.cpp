#include "ktscene/kt_version.h"

#include <gtest/gtest.h>

TEST(KtSceneVersion, IsThatOfTheHeaders) {
  EXPECT_EQ(KtSceneVersion(), KTSCENE_VERSION);
  EXPECT_EQ(KTSCENE_VERSION,
            KTSCENE_VERSION_MAJOR * 10000 + KTSCENE_VERSION_MINOR * 100 + KTSCENE_VERSION_PATCH);
}
