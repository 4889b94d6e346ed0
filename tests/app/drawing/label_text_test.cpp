#include "app/drawing/label_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "app/drawing/text_decoding.h"

namespace dxf2d {
namespace {

// What a reader makes of the text.
std::string shown(std::string_view name) {
  const std::u16string text = textOfName(name);
  EXPECT_TRUE(std::ranges::all_of(text, [](char16_t c) { return c >= 0x20 && c < 0x7F; })) << name;
  return decodeText(std::string(text.begin(), text.end()), 1252);
}

std::string repeated(const std::string& piece, int times) {
  std::string text;
  for (int i = 0; i < times; ++i) {
    text += piece;
  }
  return text;
}

TEST(TextOfName, AsciiStandsAsItIs) {
  EXPECT_EQ(textOfName("Office 12 \"north\" C:\\x 100% %d"), u"Office 12 \"north\" C:\\x 100% %d");
}

TEST(TextOfName, LettersBeyondAsciiAreFourDigits) {
  EXPECT_EQ(textOfName("K\u00FCche"), u"K\\U+00FCche");
  EXPECT_EQ(textOfName("\u4E2D\u6587"), u"\\U+4E2D\\U+6587");
}

TEST(TextOfName, LettersBeyondTheBasicPlaneAreSurrogatePairs) {
  EXPECT_EQ(textOfName("\U0001F600!"), u"\\U+D83D\\U+DE00!");
}

TEST(TextOfName, ReadersShowTheNameAsItIs) {
  for (const char* name : {"K\u00FCche", "\U0001F600 chair",
                           "\\U+0041",   "\\\\U+0041",
                           "\\u+0041",   "\\M+1A0B0",
                           "\\\u00E9",   "\\",
                           "U+0041",     "%",
                           "%%",         "%%%",
                           "%%d",        "50%%%d",
                           "%%u%%065",   "100 %",
                           "a^b",        "a^ b",
                           "^^I",        "\"",
                           "\\P"}) {
    EXPECT_EQ(shown(name), name);
  }
}

TEST(TextOfName, ANotationInTheNameIsEscaped) {
  EXPECT_EQ(textOfName("\\U+0041"), u"\\U+005CU+0041");
}

TEST(TextOfName, APercentSignIsEscapedOnlyBesideAnother) {
  EXPECT_EQ(textOfName("5% 5%%d"), u"5% 5%%%%%%d");
}

TEST(TextOfName, ACaretIsFollowedByASpace) { EXPECT_EQ(textOfName("a^b"), u"a^ b"); }

TEST(TextOfName, ControlCharactersAreSpaces) {
  EXPECT_EQ(textOfName("a\nb\tc\x7F"
                       "d\u0085e"),
            u"a b c d e");
  EXPECT_EQ(textOfName(std::string_view("a\0b", 3)), u"a b");
}

TEST(TextOfName, SpacesAroundTheNameGo) {
  EXPECT_EQ(textOfName(" \t a b\r\n "), u"a b");
  EXPECT_EQ(textOfName(" \n "), u"");
  EXPECT_EQ(textOfName(""), u"");
}

TEST(TextOfName, BytesThatAreNotUtf8ShowAsReplacements) {
  EXPECT_EQ(textOfName("K\xFC"
                       "che"),
            u"K\\U+FFFDche");
  EXPECT_EQ(textOfName("a\xC3"), u"a\\U+FFFD");
  // A surrogate in UTF-8 is not a character.
  EXPECT_EQ(textOfName("\xED\xA0\xBD"), u"\\U+FFFD\\U+FFFD\\U+FFFD");
}

TEST(TextOfName, WhatFitsExactlyIsWhole) {
  const std::string name(kMaxLabelText, 'x');
  EXPECT_EQ(textOfName(name), std::u16string(kMaxLabelText, u'x'));
}

TEST(TextOfName, WhatIsTooLongEndsInAnEllipsis) {
  const std::string name(kMaxLabelText + 1, 'x');
  EXPECT_EQ(shown(name), std::string(kMaxLabelText - 3, 'x').append("..."));
}

TEST(TextOfName, ACutNeverSplitsANotation) {
  for (const char* letter : {"\u00E9", "\U0001F600", "%%", "^", "\\U+0041"}) {
    for (int before = 0; before < 15; ++before) {
      std::string name(static_cast<std::size_t>(before), 'x');
      name += repeated(letter, static_cast<int>(kMaxLabelText));
      EXPECT_LE(textOfName(name).size(), kMaxLabelText);
      const std::string text = shown(name);
      ASSERT_TRUE(text.ends_with("..."));
      EXPECT_TRUE(name.starts_with(text.substr(0, text.size() - 3))) << text;
    }
  }
}

}  // namespace
}  // namespace dxf2d
