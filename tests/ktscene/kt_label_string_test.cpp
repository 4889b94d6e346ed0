#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "ktscene/kt_v.h"

namespace {

struct Label {
  bool isValid = false;
  double width = 0, height = 0, depth = 0, x = 0, y = 0, z = 0, angle = 0;
  unsigned short align = 0;
  bool frame = false;
  double red = 0, green = 0, blue = 0;
  unsigned int flags = 0;
  std::vector<std::u16string> lines;
};

Label parse(const std::u16string& text) {
  Label l;
  l.lines = {u"left over"};
  l.isValid = KtV::ParseLabelString(text, l.width, l.height, l.depth, l.x, l.y, l.z, l.angle,
                                    l.align, l.frame, l.red, l.green, l.blue, l.flags, l.lines);
  return l;
}

// A label whose first number, frame, flags or lines are what the test is about.
std::u16string withZeros(const char16_t* before, std::size_t zeros, const char16_t* after) {
  std::u16string text(before);
  text.append(zeros, u'0');
  return text.append(after);
}

Label withNumber(const std::u16string& number) {
  return parse(number + u" 2.5 0 10 20 5 30 C 0 1 0 0 0");
}
Label withAlign(const std::u16string& align) {
  return parse(u"1 2.5 0 10 20 5 30 " + align + u" 0 1 0 0 0");
}
Label withFrame(const std::u16string& frame) {
  return parse(u"1 2.5 0 10 20 5 30 C " + frame + u" 1 0 0 0");
}
Label withFlags(const std::u16string& flags) {
  return parse(u"1 2.5 0 10 20 5 30 C 0 1 0 0 " + flags);
}
Label withLines(const std::u16string& lines) { return withFlags(u"0 " + lines); }

using Lines = std::vector<std::u16string>;

}  // namespace

TEST(ParseLabelString, ReadsEveryField) {
  const Label l = parse(uR"(1 2.5 0.125 10 20 5 30 R 1 1 0.5 0.25 42 "Ab" "second line")");
  ASSERT_TRUE(l.isValid);
  EXPECT_EQ(l.width, 1);
  EXPECT_EQ(l.height, 2.5);
  EXPECT_EQ(l.depth, 0.125);
  EXPECT_EQ(l.x, 10);
  EXPECT_EQ(l.y, 20);
  EXPECT_EQ(l.z, 5);
  EXPECT_EQ(l.angle, 30);
  EXPECT_EQ(l.align, u'R');
  EXPECT_TRUE(l.frame);
  EXPECT_EQ(l.red, 1);
  EXPECT_EQ(l.green, 0.5);
  EXPECT_EQ(l.blue, 0.25);
  EXPECT_EQ(l.flags, 42u);
  EXPECT_EQ(l.lines, (Lines{u"Ab", u"second line"}));
}

TEST(ParseLabelString, NoLinesIsALabelWithoutLines) {
  EXPECT_TRUE(withFlags(u"0").isValid);
  EXPECT_TRUE(withFlags(u"0").lines.empty());
}

TEST(ParseLabelString, SpacesAroundAndBetweenMayBeMany) {
  const Label l = parse(u"  1   2.5 0 10 20 5 30  C   0 1 0 0  0   \"a\"    \" b \"  ");
  ASSERT_TRUE(l.isValid);
  EXPECT_EQ(l.lines, (Lines{u"a", u" b "}));
}

TEST(ParseLabelString, ControlCharactersCountAsSpaces) {
  std::u16string text =
      u"1\t2.5\n0\r10\x0B"
      u"20\u00855\u009F30\u007F"
      u"C\u00010 1 0 0 0 \"a\nb\"\n";
  text[1] = u'\0';
  const Label l = parse(text);
  ASSERT_TRUE(l.isValid);
  EXPECT_EQ(l.height, 2.5);
  EXPECT_EQ(l.lines, Lines{u"a b"});
}

TEST(ParseLabelString, NoBreakSpaceIsNotASpace) {
  EXPECT_FALSE(parse(u"1\u00A02.5 0 10 20 5 30 C 0 1 0 0 0").isValid);
}

TEST(ParseLabelString, MissingFieldsAreRefused) {
  EXPECT_FALSE(parse(u"").isValid);
  EXPECT_FALSE(parse(u"   ").isValid);
  EXPECT_FALSE(parse(u"1 2.5 0 10 20 5 30 C 0 1 0 0").isValid);
  EXPECT_FALSE(parse(u"1 2.5 0 10 20 5 30").isValid);
}

TEST(ParseLabelString, NumbersMayBeWrittenInManyWays) {
  const std::pair<const char16_t*, double> cases[] = {
      {u"1", 1},          {u"+1", 1},      {u"-1.5", -1.5},     {u"1.", 1},
      {u".5", 0.5},       {u"-.5", -0.5},  {u"007", 7},         {u"1e3", 1000},
      {u"1E+3", 1000},    {u"25e-1", 2.5}, {u"1.e2", 100},      {u"1e15", 1e15},
      {u"-1e15", -1e15},  {u"0.1", 0.1},   {u"0e999999999", 0}, {u"1000000000000000", 1e15},
      {u"5e-324", 5e-324}};
  for (const auto& [text, value] : cases) {
    const Label l = withNumber(text);
    EXPECT_TRUE(l.isValid) << value;
    EXPECT_EQ(l.width, value);
  }
}

TEST(ParseLabelString, AnythingElseIsNotANumber) {
  for (const char16_t* text :
       {u"x",   u"1x",    u"+",     u"-",      u".",       u"+-1",   u"--1",
        u"1e",  u"1e+",   u"e5",    u"0x10",   u"1,5",     u"inf",   u"-inf",
        u"nan", u"1.2.3", u"1e2.5", u"\u0661", u"1\u0661", u"\"1\"", u"\uFF11"}) {
    EXPECT_FALSE(withNumber(text).isValid) << std::string(text, text + std::u16string(text).size());
  }
}

TEST(ParseLabelString, NumberAbove1e15IsRefused) {
  EXPECT_FALSE(withNumber(u"1000000000000001").isValid);
  EXPECT_FALSE(withNumber(u"-1.1e15").isValid);
  EXPECT_FALSE(withNumber(u"1e400").isValid);
  EXPECT_FALSE(withNumber(u"-1e99999999999999999999999").isValid);
  EXPECT_FALSE(withNumber(withZeros(u"1", 400, u"")).isValid);
}

TEST(ParseLabelString, NumberTooSmallForADoubleIsZeroWithItsSign) {
  EXPECT_TRUE(withNumber(u"1e-400").isValid);
  EXPECT_FALSE(std::signbit(withNumber(u"1e-400").width));
  const Label l = withNumber(u"-1e-99999999999999999999");
  EXPECT_TRUE(l.isValid);
  EXPECT_EQ(l.width, 0.0);
  EXPECT_TRUE(std::signbit(l.width));
  EXPECT_TRUE(withNumber(withZeros(u"0.", 400, u"1")).isValid);
}

TEST(ParseLabelString, ExponentAndLengthMayBalance) {
  EXPECT_EQ(withNumber(withZeros(u"1", 500, u"e-500")).width, 1.0);
  EXPECT_EQ(withNumber(withZeros(u"0.", 499, u"1e500")).width, 1.0);
}

TEST(ParseLabelString, EveryNumberIsChecked) {
  const std::u16string fields[] = {u"1", u"1", u"1", u"1", u"1", u"1", u"1",
                                   u"C", u"0", u"1", u"1", u"1", u"0"};
  for (std::size_t wrong = 0; wrong < std::size(fields); ++wrong) {
    std::u16string text;
    for (std::size_t i = 0; i < std::size(fields); ++i) {
      text += (i == wrong ? u"x?" : fields[i]) + u' ';
    }
    EXPECT_FALSE(parse(text).isValid) << wrong;
  }
}

TEST(ParseLabelString, AlignIsAnyOneUnit) {
  EXPECT_EQ(withAlign(u"L").align, u'L');
  EXPECT_EQ(withAlign(u"\"").align, u'"');
  EXPECT_EQ(withAlign(u"€").align, u'€');
  EXPECT_TRUE(withAlign(std::u16string(1, char16_t{0xD800})).isValid);
  EXPECT_FALSE(withAlign(u"LL").isValid);
  EXPECT_FALSE(withAlign(u"😀").isValid);
}

TEST(ParseLabelString, FrameIsZeroOrOne) {
  EXPECT_FALSE(withFrame(u"0").frame);
  EXPECT_TRUE(withFrame(u"1").frame);
  for (const char16_t* text : {u"2", u"00", u"01", u"1.0", u"true", u"+1"}) {
    EXPECT_FALSE(withFrame(text).isValid);
  }
}

TEST(ParseLabelString, FlagsAreUpToTenDigits) {
  EXPECT_EQ(withFlags(u"4294967295").flags, 4294967295u);
  EXPECT_EQ(withFlags(u"0000000007").flags, 7u);
  for (const char16_t* text : {u"4294967296", u"9999999999", u"00000000007", u"-1", u"+1", u"1.",
                               u"0x1", u"1a", u"\u0661"}) {
    EXPECT_FALSE(withFlags(text).isValid);
  }
}

TEST(ParseLabelString, BackslashKeepsQuoteAndBackslash) {
  EXPECT_EQ(withLines(uR"("a\"b\\c" "\\\"")").lines, (Lines{u"a\"b\\c", u"\\\""}));
}

TEST(ParseLabelString, BackslashBeforeAnythingElseIsRefused) {
  EXPECT_FALSE(withLines(uR"("a\n")").isValid);
  EXPECT_FALSE(withLines(uR"("\ ")").isValid);
  EXPECT_FALSE(withLines(uR"("a\)").isValid);
}

TEST(ParseLabelString, LineWithoutItsClosingQuoteIsRefused) {
  EXPECT_FALSE(withLines(uR"("abc)").isValid);
  EXPECT_FALSE(withLines(uR"("abc\")").isValid);
  EXPECT_FALSE(withLines(uR"(")").isValid);
}

TEST(ParseLabelString, LinesNeedASpaceBetweenThem) {
  EXPECT_FALSE(withLines(uR"("a""b")").isValid);
  EXPECT_FALSE(withLines(uR"("a"b)").isValid);
  EXPECT_FALSE(withFlags(uR"(0"a")").isValid);
}

TEST(ParseLabelString, TextOutsideQuotesIsRefused) {
  EXPECT_FALSE(withLines(u"abc").isValid);
  EXPECT_FALSE(withLines(u"\"a\" b").isValid);
}

TEST(ParseLabelString, EmptyLineIsALine) {
  EXPECT_EQ(withLines(uR"("" "" "x")").lines, (Lines{u"", u"", u"x"}));
}

TEST(ParseLabelString, LoneSurrogateInALineIsKept) {
  const std::u16string lone(1, char16_t{0xDFFF});
  EXPECT_EQ(withLines(u"\"" + lone + u"\"").lines, Lines{lone});
}

TEST(ParseLabelString, ManyLinesAreReadInOrder) {
  std::u16string text;
  for (int i = 0; i < 200000; ++i) {
    text += u"\"l\" ";
  }
  const Label l = withLines(text);
  EXPECT_TRUE(l.isValid);
  EXPECT_EQ(l.lines.size(), 200000u);
}
