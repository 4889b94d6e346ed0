// The bytes of a label's letters.
#include <gtest/gtest.h>

#include <string>

#include "labels/label_callback.h"
#include "platform/cfile_exception.h"
#include "tests/support/code_page_setting.h"
#include "tests/support/drawing_session.h"
#include "tests/support/expected_groups.h"

namespace dxf2d {

namespace {

std::u16string labelWith(const std::u16string& line) {
  return u"T:1 1 0 0 0 0 0 X 0 0 0 0 0 \"" + line + u"\"";
}

std::string labelBlock(const std::string& bytes) {
  return blockText(1, "  0\nTEXT\n 40\n1.000000\n 62\n1\n 41\n0.800000\n  1\n" + bytes +
                          "\n  7\nSTANDARD\n  8\n0\n");
}

// A label of one line under a code page is exactly `bytes` in an otherwise unchanged drawing.
void expectLine(unsigned page, const std::u16string& line, const std::string& bytes) {
  const CodePageSetting setting(page);
  DrawingSession session;
  DXF2dOpenNode(nullptr);
  EXPECT_TRUE(writeLabelText(labelWith(line), 1)) << page;
  EXPECT_EQ(session.Body(), labelBlock(bytes)) << page;
}

}  // namespace

TEST(LabelCodePage, EachPageWritesItsOwnLetters) {
  expectLine(1250, u"\u0141\u011b\u0151", "\xA3\xEC\xF5");
  expectLine(1251, u"\u0416\u044f\u0451", "\xC6\xFF\xB8");
  expectLine(1252, u"\u00dc\u20ac\u0153", "\xDC\x80\x9C");
  expectLine(1253, u"\u03a9\u03bb\u0386", "\xD9\xEB\xA2");
  expectLine(1254, u"\u011f\u0130\u015f", "\xF0\xDD\xFE");
  expectLine(1255, u"\u05d0\u05ea", "\xE0\xFA");
  expectLine(1256, u"\u0628\u0686\u06af", "\xC8\x8D\x90");
  expectLine(1257, u"\u0101\u0173\u017e", "\xE2\xF8\xFE");
  expectLine(874, u"\u0e01\u0e5b\u20ac", "\xA1\xFB\x80");
}

TEST(LabelCodePage, LettersThatThePageLacksAreQuestionMarks) {
  // Letters that resemble none of the page: Windows writes a similar one where it knows one.
  expectLine(1250, u"a\u0416b", "a?b");
  expectLine(1251, u"a\u05d0b", "a?b");
  expectLine(1252, u"a\u0416\u4e2db", "a??b");
  expectLine(1253, u"\u0416", "?");
  expectLine(1254, u"\u0416", "?");
  expectLine(1256, u"\u0e01", "?");
  expectLine(1257, u"\u0416", "?");
  expectLine(874, u"\u0416", "?");
}

TEST(LabelCodePage, SurrogatePairIsTwoQuestionMarks) {
  expectLine(1252, u"a\U0001F600b", "a??b");
  expectLine(1251, u"\U0001F600\U0001F601", "????");
}

TEST(LabelCodePage, LoneSurrogateIsOneQuestionMark) {
  expectLine(1252, std::u16string(u"a") + char16_t(0xD83D) + u"b", "a?b");
  expectLine(1252, std::u16string(u"a") + char16_t(0xDE00), "a?");
}

TEST(LabelCodePage, TwoByteLettersAreCutToTheNumberOfUnits) {
  expectLine(932, u"\u65e5\u672c", "\x93\xFA");
  expectLine(932, u"ab\u65e5", "ab\x93");
  expectLine(936, u"\u4e2d\u6587", "\xD6\xD0");
  expectLine(936, u"\u4e2da", "\xD6\xD0");
}

TEST(LabelCodePage, CutLettersNeverTakeTheLineFeed) {
  for (const unsigned page : {932U, 936U, 949U, 950U}) {
    const CodePageSetting setting(page);
    DrawingSession session;
    DXF2dOpenNode(nullptr);
    ASSERT_TRUE(writeLabelText(labelWith(u"\u4e00"), 1)) << page;
    const std::string body = session.Body();
    EXPECT_EQ(body.size(), labelBlock("x").size()) << page;
    EXPECT_TRUE(body.ends_with("\n  7\nSTANDARD\n  8\n0\n  0\nENDBLK\n  8\n0\n")) << page;
  }
}

TEST(LabelCodePage, Utf8IsCutToTheNumberOfUnits) {
  expectLine(65001, u"\u00dcber",
             "\xC3\x9C"
             "be");
  expectLine(65001, u"\u00e9\u00e9", "\xC3\xA9");
  expectLine(65001, u"\U0001F600", "\xF0\x9F");
}

TEST(LabelCodePage, Utf8OfThreeBytesAUnitFailsAndTheNextExportIsRight) {
  const CodePageSetting setting(65001);
  {
    DrawingSession session;
    DXF2dOpenNode(nullptr);
    EXPECT_THROW(writeLabelText(labelWith(u"\u65e5\u672c\u8a9e\u65e5\u672c"), 1), CFileException);
    EXPECT_EQ(session.Body(),
              blockHeadText(1) + "  0\nTEXT\n 40\n1.000000\n 62\n1\n 41\n0.800000\n  1\n");
  }
  expectLine(65001, u"abc", "abc");
}

TEST(LabelCodePage, ControlCharactersAreSpaces) {
  for (char16_t control = 0; control <= 0x9F; ++control) {
    if (control == 0x20) {
      control = 0x7F;
    }
    expectLine(1252, std::u16string(u"a") + control + u"b", "a b");
  }
}

TEST(LabelCodePage, NoGroupComesFromALabelsText) {
  expectLine(1252, u"a\n  0\nEOF\r\n  0\u0085SECTION", "a   0 EOF    0 SECTION");
}

TEST(LabelCodePage, QuotesAndBackslashesAreUnescaped) {
  expectLine(1252, u"say \\\"a\\\\b\\\"", "say \"a\\b\"");
}

TEST(LabelCodePage, LongLineIsWrittenWhole) {
  expectLine(1252, std::u16string(100000, u'\u00fc'), std::string(100000, '\xFC'));
}

TEST(LabelCodePage, StructureOfTheDrawingIsTheSameUnderEveryPage) {
  for (const unsigned page : {1250U, 1258U, 874U, 932U, 950U, 65001U}) {
    expectLine(page, u"plain", "plain");
  }
}

}  // namespace dxf2d
