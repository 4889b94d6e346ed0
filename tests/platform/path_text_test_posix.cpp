#include <gtest/gtest.h>

#include "platform/path_text.h"
#include "tests/support/descriptor_limit.h"
#include "tests/support/sanitizers.h"

TEST(PathText, NeedsNoFreeDescriptor) {
  NEEDS_DESCRIPTOR_LIMITS();
  const NoMoreDescriptors none;
  EXPECT_EQ(pathToBytes(pathFromBytes("S\xC3\xBC"
                                      "d\xFF")),
            "S\xC3\xBC"
            "d\xFF");
}
