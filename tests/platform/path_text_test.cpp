#include "platform/path_text.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

std::u16string escaped(std::string_view bytes) {
  std::u16string wide;
  for (const char byte : bytes) {
    wide += static_cast<char16_t>(0xDC00 + static_cast<unsigned char>(byte));
  }
  return wide;
}

}  // namespace

TEST(PathText, Utf8IsText) {
  const std::string bytes =
      "/a/S\xC3\xBC"
      "d \xE2\x82\xAC \xF0\x9F\x98\x80";
  EXPECT_EQ(pathFromBytes(bytes), u"/a/Süd € 😀");
  EXPECT_EQ(pathToBytes(u"/a/Süd € 😀"), bytes);
}

TEST(PathText, EmptyIsEmpty) {
  EXPECT_EQ(pathFromBytes(""), u"");
  EXPECT_EQ(pathToBytes(u""), "");
}

TEST(PathText, ByteOrderMarkIsKept) {
  EXPECT_EQ(pathFromBytes("\xEF\xBB\xBF"
                          "a"),
            u"\uFEFFa");
  EXPECT_EQ(pathToBytes(u"\uFEFFa"),
            "\xEF\xBB\xBF"
            "a");
}

TEST(PathText, NullsAreKept) {
  const std::string bytes("a\0b", 3);
  EXPECT_EQ(pathToBytes(pathFromBytes(bytes)), bytes);
  EXPECT_EQ(pathFromBytes(bytes).size(), 3U);
}

TEST(PathText, BytesThatAreNotUtf8AreEscapedOneByOne) {
  for (const char* bytes :
       {"\xFF", "\x80", "\xC3", "\xE2\x82", "\xF0\x9F\x98", "\xC0\x80", "\xC1\xBF", "\xE0\x80\x80",
        "\xF0\x80\x80\x80", "\xED\xA0\x80", "\xED\xBF\xBF", "\xED\xB2\x80", "\xF4\x90\x80\x80",
        "\xF8\x88\x80\x80\x80", "\xFC\x84\x80\x80\x80\x80", "\xFE\xFE"}) {
    EXPECT_EQ(pathFromBytes(bytes), escaped(bytes));
    std::u16string among = u"a";
    among += escaped(bytes);
    among += u"b";
    EXPECT_EQ(pathFromBytes(std::string("a") + bytes + "b"), among);
    EXPECT_EQ(pathToBytes(escaped(bytes)), bytes);
  }
}

TEST(PathText, ValidTextAfterABrokenSequenceIsText) {
  EXPECT_EQ(pathFromBytes("\xE2\x82\xC3\xBC"), escaped("\xE2\x82") + u"ü");
  EXPECT_EQ(pathFromBytes("\xF0\x9F\xE2\x82\xAC"), escaped("\xF0\x9F") + u"€");
}

TEST(PathText, EveryNameSurvivesARoundTrip) {
  std::mt19937 random(1);
  const std::string_view pieces[] = {"a",        "\xC3\xBC", "\xE2\x82\xAC", "\xF0\x9F\x98\x80",
                                     "\xED\xA0", "\xED\xB2", "\x80",         "\xF4\x90"};
  for (int round = 0; round < 2000; ++round) {
    std::string bytes;
    for (auto i = random() % 12; i > 0; --i) {
      const bool anyByte = random() % 3 == 0;
      bytes += anyByte ? std::string(1, static_cast<char>(random()))
                       : std::string(pieces[random() % std::size(pieces)]);
    }
    EXPECT_EQ(pathToBytes(pathFromBytes(bytes)), bytes);
  }
}

TEST(PathText, LoneSurrogateOutsideTheByteRangeBecomesAQuestionMark) {
  EXPECT_EQ(pathToBytes(std::u16string{u'a', 0xD83D, u'b', 0xDC7F, 0xDD00, 0xD83D}), "a?b???");
}

TEST(PathText, EscapedByteAfterAPairStaysApart) {
  const std::string bytes = "\xF0\x9F\x98\x80\x80";
  EXPECT_EQ(pathFromBytes(bytes).size(), 3U);
  EXPECT_EQ(pathToBytes(pathFromBytes(bytes)), bytes);
}
