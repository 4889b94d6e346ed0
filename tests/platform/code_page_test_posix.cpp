#include <gtest/gtest.h>

#include "platform/code_page.h"
#include "tests/platform/encoded_text.h"

TEST(WideCharToMultiByte, NothingIsTransliterated) { EXPECT_EQ(encode(1252, u"−ﬁ①ā"), "????"); }

TEST(WideCharToMultiByte, LoneSurrogateBecomesOneInEveryPage) {
  const std::u16string high = {u'a', 0xD83D, u'b', 0xD83D};
  const std::u16string low = {0xDE00, u'a', 0xDE00, 0xD83D};
  for (const unsigned page : kPages) {
    bool used = false;
    EXPECT_EQ(encode(page, high, &used), "a?b?") << page;
    EXPECT_TRUE(used);
    EXPECT_EQ(encode(page, low), "?a??") << page;
  }
}
