#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "platform/code_page.h"
#include "platform/windows_api.h"
#include "tests/platform/encoded_text.h"

TEST(ThreadCodePage, IsThatOfTheThreadsLocaleUntilSet) {
  std::thread([] {
    ASSERT_NE(SetThreadLocale(MAKELCID(MAKELANGID(LANG_RUSSIAN, SUBLANG_DEFAULT), SORT_DEFAULT)),
              FALSE);
    EXPECT_EQ(GetThreadCodePage(), 1251U);
    EXPECT_EQ(encode(CP_THREAD_ACP, u"Ж"), "\xC6");
    EXPECT_TRUE(SetThreadCodePage(1252));
    EXPECT_EQ(encode(CP_THREAD_ACP, u"Ж"), "?");
  }).join();
}

// Windows's choice of similar characters is its own.
TEST(WideCharToMultiByte, SimilarCharactersStandForSomeThatThePageLacks) {
  EXPECT_EQ(encode(1252, u"−‐ā"), "--a");
}

TEST(WideCharToMultiByte, LoneSurrogateBecomesOneInEveryPageButUtf8) {
  const std::u16string high = {u'a', 0xD83D, u'b', 0xD83D};
  for (const unsigned page : kPages) {
    if (page == kUtf8) {
      EXPECT_EQ(encode(page, high), "a\uFFFDb\uFFFD");
    } else {
      bool used = false;
      EXPECT_EQ(encode(page, high, &used), "a?b?") << page;
      EXPECT_TRUE(used);
    }
  }
}
