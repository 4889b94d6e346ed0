// A plug-in that the loader keeps.
#include <gtest/gtest.h>

#include "ktscene/kt_traverser.h"

TEST(LoadedPlugin, PrivateCopyThatCannotBeUnloadedIsNotHandedOutAgain) {
  KtLoadOptions options;
  options.isPrivate = true;
  for (int i = 0; i < 3; ++i) {
    KtTraverser traverser;
    traverser.Load(STAYS_LOADED, options);
    EXPECT_TRUE(traverser.Walk(KtScene(), u"")) << i;
    EXPECT_FALSE(traverser.Walk(KtScene(), u"")) << i;
  }
}
