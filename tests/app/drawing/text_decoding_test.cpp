#include "app/drawing/text_decoding.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace dxf2d {

namespace {

TEST(TextDecoding, BytesOfWesternEurope) {
  EXPECT_EQ(decodeText("K\xFC"
                       "che \x80 \x85",
                       1252),
            "K\u00FCche \u20AC \u2026");
}

TEST(TextDecoding, SameByteInOtherPages) {
  EXPECT_EQ(decodeText("\xE6", 1250), "\u0107");
  EXPECT_EQ(decodeText("\xE6", 1251), "\u0436");
  EXPECT_EQ(decodeText("\xE6", 1253), "\u03B6");
  EXPECT_EQ(decodeText("\x93\xFA", 932), "\u65E5");
  EXPECT_EQ(decodeText("\xC3\xA6", 65001), "\u00E6");
}

TEST(TextDecoding, ByteWithoutMeaningIsAReplacement) {
  EXPECT_EQ(decodeText("a\x81z", 1252), "a\uFFFDz");
  EXPECT_EQ(decodeText("a\xC3", 65001), "a\uFFFD");
  EXPECT_EQ(decodeText("\x93", 932), "\uFFFD");
}

// The pages whose letters take marks hold each letter back until the next byte.
TEST(TextDecoding, LastLetterOfAHebrewOrVietnameseTextIsRead) {
  EXPECT_EQ(decodeText("Plan", 1258), "Plan");
  EXPECT_EQ(decodeText("a\xCC", 1258), "\u00E0");
  EXPECT_EQ(decodeText("a\xD2z", 1258), "\u1EA3z");
  EXPECT_EQ(decodeText("\xF9", 1255), "\u05E9");
}

TEST(TextDecoding, LetterBeforeAByteWithoutMeaningIsRead) {
  EXPECT_EQ(decodeText("\xF9\xFFx", 1255), "\u05E9\uFFFDx");
}

TEST(TextDecoding, UnicodeNotation) {
  EXPECT_EQ(decodeText("\\U+4E2D\\U+6587x", 1252), "\u4E2D\u6587x");
  EXPECT_EQ(decodeText("\\U+00e9", 1252), "\u00E9");
}

TEST(TextDecoding, SurrogatePairIsOneCharacter) {
  EXPECT_EQ(decodeText("\\U+D83D\\U+DE00!", 1252), "\U0001F600!");
}

TEST(TextDecoding, LoneSurrogateIsAReplacement) {
  EXPECT_EQ(decodeText("\\U+D83Dx", 1252), "\uFFFDx");
  EXPECT_EQ(decodeText("\\U+DE00", 1252), "\uFFFD");
  EXPECT_EQ(decodeText("\\U+D83D\\U+0041", 1252), "\uFFFDA");
}

TEST(TextDecoding, IncompleteNotationStands) {
  for (const char* text : {"\\U+12", "\\U+12G4", "\\U", "\\U+", "%%", "%%x", "\\", "\\U+-123"}) {
    EXPECT_EQ(decodeText(text, 1252), text);
  }
}

TEST(TextDecoding, SignsOfTheFormat) {
  EXPECT_EQ(decodeText("90%%d %%p1 %%C5 100%%%", 1252), "90\u00B0 \u00B11 \u23005 100%");
}

TEST(TextDecoding, ACaretWithASpaceIsTheCaret) {
  EXPECT_EQ(decodeText("a^ b^  c^", 1252), "a^b^ c^");
}

TEST(TextDecoding, ControlCharactersAreDropped) {
  EXPECT_EQ(decodeText(std::string_view("a\0\t\x7F"
                                        "b\\U+0007\\U+0000",
                                        19),
                       1252),
            "ab");
}

TEST(TextDecoding, OtherPagesAreRefused) {
  EXPECT_FALSE(isTextCodePage(437));
  EXPECT_THROW(decodeText("a", 437), std::invalid_argument);
}

TEST(TextDecoding, EveryKnownPageDecodes) {
  for (const unsigned page : {874U, 932U, 936U, 949U, 950U, 1250U, 1251U, 1252U, 1253U, 1254U,
                              1255U, 1256U, 1257U, 1258U, 65001U}) {
    EXPECT_TRUE(isTextCodePage(page));
    EXPECT_EQ(decodeText("Plan 1", page), "Plan 1") << page;
  }
}

}  // namespace

}  // namespace dxf2d
