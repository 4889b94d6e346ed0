#include "platform/code_page.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>
#include <string_view>
#include <thread>

#include "tests/platform/encoded_text.h"

TEST(ThreadCodePage, IsWesternEuropeanUntilSet) {
  unsigned page = 0;
  std::thread([&] { page = GetThreadCodePage(); }).join();
  EXPECT_EQ(page, 1252U);
}

TEST(ThreadCodePage, BelongsToItsThread) {
  std::thread([] {
    EXPECT_TRUE(SetThreadCodePage(1251));
    EXPECT_EQ(GetThreadCodePage(), 1251U);
    EXPECT_EQ(encode(CP_THREAD_ACP, u"Ж"), "\xC6");
  }).join();
  EXPECT_EQ(GetThreadCodePage(), 1252U);
}

TEST(ThreadCodePage, AcceptsTheAnsiPagesOnly) {
  std::thread([] {
    for (const unsigned page : kPages) {
      EXPECT_TRUE(SetThreadCodePage(page));
      EXPECT_EQ(GetThreadCodePage(), page);
    }
    for (const unsigned page : {0U, CP_THREAD_ACP, 437U, 1249U, 1259U, 65000U, 4294967295U}) {
      EXPECT_FALSE(SetThreadCodePage(page));
      EXPECT_EQ(GetThreadCodePage(), kUtf8);
    }
  }).join();
}

TEST(LstrlenW, CountsUnitsBeforeTheNull) {
  EXPECT_EQ(lstrlenW(nullptr), 0);
  EXPECT_EQ(lstrlenW(u""), 0);
  EXPECT_EQ(lstrlenW(u"a😀"), 3);
}

TEST(WideCharToMultiByte, AsciiIsTheSameInEveryPage) {
  for (const unsigned page : kPages) {
    std::u16string wide;
    std::string expected;
    for (char unit = 0; unit >= 0 && unit < 127; ++unit) {
      wide += static_cast<char16_t>(unit);
      expected += unit;
      EXPECT_EQ(encode(page, wide), expected) << page;
    }
    // Through iconv as well, behind a character that is not ASCII.
    EXPECT_TRUE(encode(page, u"é" + wide).ends_with(expected)) << page;
  }
}

TEST(WideCharToMultiByte, LengthMinusOneTakesTheNullAlong) {
  std::array<char, 8> bytes;
  bytes.fill('x');
  EXPECT_EQ(WideCharToMultiByte(1252, 0, u"äb", -1, bytes.data(), 8, nullptr, nullptr), 3);
  EXPECT_EQ(std::string_view(bytes.data(), 4), std::string_view("\xE4"
                                                                "b\0x",
                                                                4));
  EXPECT_EQ(WideCharToMultiByte(1252, 0, u"", -1, bytes.data(), 8, nullptr, nullptr), 1);
  EXPECT_EQ(bytes[0], '\0');
}

TEST(WideCharToMultiByte, PagesHoldTheirScripts) {
  EXPECT_EQ(encode(1250, u"Łódź"),
            "\xA3\xF3"
            "d\x9F");
  EXPECT_EQ(encode(1251, u"План"), "\xCF\xEB\xE0\xED");
  EXPECT_EQ(encode(1252, u"Süd – 5 €"),
            "S\xFC"
            "d \x96 5 \x80");
  EXPECT_EQ(encode(1253, u"Σχέδιο"), "\xD3\xF7\xDD\xE4\xE9\xEF");
  EXPECT_EQ(encode(1254, u"ığş"), "\xFD\xF0\xFE");
  EXPECT_EQ(encode(1255, u"שלום"), "\xF9\xEC\xE5\xED");
  EXPECT_EQ(encode(1256, u"خطة"), "\xCE\xD8\xC9");
  EXPECT_EQ(encode(1257, u"Šiauliai ą"), "\xD0iauliai \xE0");
  EXPECT_EQ(encode(874, u"แผน"), "\xE1\xBC\xB9");
  EXPECT_EQ(encode(932, u"日本"), "\x93\xFA\x96\x7B");
  EXPECT_EQ(encode(936, u"中国"), "\xD6\xD0\xB9\xFA");
  EXPECT_EQ(encode(949, u"한국"), "\xC7\xD1\xB1\xB9");
  EXPECT_EQ(encode(950, u"中國"), "\xA4\xA4\xB0\xEA");
  EXPECT_EQ(encode(kUtf8, u"ä€😀"), "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST(WideCharToMultiByte, EachUnitThatThePageLacksBecomesOneQuestionMark) {
  bool used = false;
  EXPECT_EQ(encode(1252, u"aЖb日c", &used), "a?b?c");
  EXPECT_TRUE(used);
  EXPECT_EQ(encode(1252, u"日本語"), "???");
  EXPECT_EQ(encode(1252, u"aäb", &used),
            "a\xE4"
            "b");
  EXPECT_FALSE(used);
}

TEST(WideCharToMultiByte, PairThatThePageLacksBecomesTwo) {
  EXPECT_EQ(encode(1252, u"a😀b"), "a??b");
  EXPECT_EQ(encode(932, u"😀"), "??");
}

TEST(WideCharToMultiByte, InvisibleTagCharactersAreNotDropped) {
  const std::u16string tag = {u'a', 0xDB40, 0xDC41, u'b', 0xDB40, 0xDC7F};
  EXPECT_EQ(encode(1252, tag), "a??b??");
  EXPECT_EQ(encode(932, tag), "a??b??");
  EXPECT_EQ(encode(kUtf8, tag),
            "a\xF3\xA0\x81\x81"
            "b\xF3\xA0\x81\xBF");
}

TEST(WideCharToMultiByte, DefaultCharacterIsTheCallers) {
  EXPECT_EQ(encode(1252, u"aЖ", nullptr, "_"), "a_");
}

TEST(WideCharToMultiByte, EveryUnitOfASingleBytePageGivesOneByte) {
  for (const unsigned page : {1250U, 1251U, 1252U, 1253U, 1254U, 1256U, 1257U, 874U}) {
    for (unsigned unit = 1; unit < 0x10000; ++unit) {
      const auto wide = static_cast<char16_t>(unit);
      char bytes[4] = "zzz";
      ASSERT_EQ(WideCharToMultiByte(page, 0, &wide, 1, bytes, 4, nullptr, nullptr), 1) << unit;
      ASSERT_EQ(bytes[1], 'z');
    }
  }
}

TEST(WideCharToMultiByte, TooSmallADestinationFails) {
  std::array<char, 8> bytes;
  bytes.fill('x');
  EXPECT_EQ(WideCharToMultiByte(1252, 0, u"abcde", 5, bytes.data(), 4, nullptr, nullptr), 0);
  EXPECT_EQ(WideCharToMultiByte(1252, 0, u"äbcde", 5, bytes.data(), 4, nullptr, nullptr), 0);
  EXPECT_EQ(WideCharToMultiByte(1252, 0, u"abcЖ", 4, bytes.data(), 3, nullptr, nullptr), 0);
  EXPECT_EQ(WideCharToMultiByte(kUtf8, 0, u"日本", -1, bytes.data(), 6, nullptr, nullptr), 0);
  EXPECT_EQ(bytes[6], 'x');
  EXPECT_EQ(WideCharToMultiByte(kUtf8, 0, u"日本", -1, bytes.data(), 7, nullptr, nullptr), 7);
}

TEST(WideCharToMultiByte, WrongArgumentsFail) {
  char byte = 'x';
  EXPECT_EQ(WideCharToMultiByte(437, 0, u"a", 1, &byte, 1, nullptr, nullptr), 0);
  EXPECT_EQ(WideCharToMultiByte(1252, 0, u"a", 0, &byte, 1, nullptr, nullptr), 0);
  EXPECT_EQ(WideCharToMultiByte(1252, 0, u"a", -2, &byte, 1, nullptr, nullptr), 0);
  EXPECT_EQ(WideCharToMultiByte(1252, 0, u"a", 1, &byte, -1, nullptr, nullptr), 0);
  EXPECT_EQ(WideCharToMultiByte(1252, 0, u"a", 1, nullptr, 1, nullptr, nullptr), 0);
  EXPECT_EQ(WideCharToMultiByte(1252, 0, nullptr, 1, &byte, 1, nullptr, nullptr), 0);
  EXPECT_EQ(byte, 'x');
}

TEST(WideCharToMultiByte, LongTextsAreWhole) {
  std::u16string wide;
  std::string expected;
  for (int i = 0; i < 20000; ++i) {
    wide += u"aä日";
    expected += "a\xE4?";
  }
  EXPECT_TRUE(encode(1252, wide) == expected);
  EXPECT_EQ(encode(kUtf8, wide).size(), 120000U);
}

TEST(WideCharToMultiByte, PairsAreWholeAtAnyPosition) {
  for (std::size_t before = 0; before < 300; ++before) {
    const std::u16string wide = std::u16string(before, u'ä') + u"😀" + std::u16string(before, u'ä');
    const std::string umlauts(before, '\xE4');
    EXPECT_EQ(encode(1252, wide), umlauts + "??" + umlauts);
    EXPECT_EQ(encode(kUtf8, wide).size(), 4 * before + 4);
  }
}

TEST(WideCharToMultiByte, AnyUnitsConvertInAnyPage) {
  std::mt19937 random(1);
  for (int round = 0; round < 2000; ++round) {
    std::u16string wide(1 + random() % 40, u'\0');
    for (char16_t& unit : wide) {
      unit = static_cast<char16_t>(random() % 3 == 0 ? 0xD700 + random() % 0xA00 : random());
    }
    const std::string bytes = encode(kPages[random() % kPages.size()], wide);
    EXPECT_LE(bytes.size(), wide.size() * 3);
    EXPECT_FALSE(bytes.empty());
  }
}
