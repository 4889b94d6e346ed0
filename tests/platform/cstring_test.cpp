#include "platform/cstring.h"

#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <string>

#include "numeric_locale.h"

namespace {

template <typename... Arguments>
std::u16string format(const char16_t* text, Arguments... arguments) {
  CString result(u"before");
  result.Format(text, arguments...);
  return std::u16string(result.View());
}

}  // namespace

TEST(CString, NullIsTheEmptyText) {
  const char16_t* null = nullptr;
  EXPECT_TRUE(CString(null).IsEmpty());
  EXPECT_EQ(CString(null).GetLength(), 0);
  EXPECT_EQ(CString(null).GetString()[0], u'\0');
}

TEST(CString, LengthCountsUnits) { EXPECT_EQ(CString(u"a😀").GetLength(), 3); }

TEST(CString, JoinsAndCompares) {
  CString text(u"GO_");
  text += CString(u"1");
  EXPECT_EQ(text, CString(u"GO_1"));
  EXPECT_EQ(text + CString(u"\n"), CString(u"GO_1\n"));
  EXPECT_LT(CString(u"GO_1"), CString(u"GO_2"));
  text.Empty();
  EXPECT_TRUE(text.IsEmpty());
}

TEST(CStringFormat, ReplacesTheText) {
  EXPECT_EQ(format(u""), u"");
  EXPECT_EQ(format(u"plain"), u"plain");
  EXPECT_EQ(format(nullptr), u"");
}

TEST(CStringFormat, RealHasSixDigits) {
  EXPECT_EQ(format(u"%f\n", -100.0), u"-100.000000\n");
  EXPECT_EQ(format(u"%f", 0.15), u"0.150000");
  EXPECT_EQ(format(u" 50\n%f\n", 1.0 / 3), u" 50\n0.333333\n");
  EXPECT_EQ(format(u"%f", -0.0), u"-0.000000");
  EXPECT_EQ(format(u"%lf%.6f", 0.5, 0.25), u"0.5000000.250000");
}

TEST(CStringFormat, IntegerHasNoPadding) {
  EXPECT_EQ(format(u" 62\n%d\n", 256), u" 62\n256\n");
  EXPECT_EQ(format(u"%d %i %d", 0, -1, INT_MAX), u"0 -1 2147483647");
  EXPECT_EQ(format(u"%d", INT_MIN), u"-2147483648");
}

TEST(CStringFormat, SizesReachTheirEnds) {
  // A long has 32 bits on Windows.
  const std::string lowest = std::to_string(LONG_MIN);
  const std::string highest = std::to_string(ULONG_MAX);
  EXPECT_EQ(format(u"%ld", LONG_MIN), std::u16string(lowest.begin(), lowest.end()));
  EXPECT_EQ(format(u"%lli", LLONG_MAX), u"9223372036854775807");
  EXPECT_EQ(format(u"%lu", ULONG_MAX), std::u16string(highest.begin(), highest.end()));
  EXPECT_EQ(format(u"%llu %u", ULLONG_MAX, UINT_MAX), u"18446744073709551615 4294967295");
  EXPECT_EQ(format(u"%x %lX", 0xdeadbeefU, 0xABCUL), u"deadbeef ABC");
}

TEST(CStringFormat, FlagsWidthAndPrecisionAreThoseOfPrintf) {
  EXPECT_EQ(format(u"[%5d|%-5d|%05d|%+d|% d|%.3d]", 42, 42, 42, 42, 42, 7),
            u"[   42|42   |00042|+42| 42|007]");
  EXPECT_EQ(format(u"[%#x|%08.3f|%-9.1f|%.0f]", 255U, -3.14159, 2.25, 2.5),
            u"[0xff|-003.142|2.2      |2]");
  EXPECT_EQ(format(u"%e %E %g %G %.2e", 12345.678, 1e-9, 1e-9, 0.5, 0.0),
            u"1.234568e+04 1.000000E-09 1e-09 0.5 0.00e+00");
  EXPECT_EQ(format(u"[%*d|%*d|%.*f|%.*f]", 4, 1, -4, 1, 2, 1.5, -1, 1.5),
            u"[   1|1   |1.50|1.500000]");
}

TEST(CStringFormat, NonFiniteRealsAreWords) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(format(u"%f %F %5f", -kInfinity, kInfinity, kInfinity), u"-inf INF   inf");
}

TEST(CStringFormat, HugeRealsAndWidthsAreWhole) {
  EXPECT_EQ(format(u"%f", 1.7976931348623157e308).size(), 316U);
  EXPECT_EQ(format(u"%.400f", 1.0).size(), 402U);
  std::u16string one = u"1.";
  one.append(1000, u'0');
  EXPECT_EQ(format(u"%.1000f", 1.0), one);
  std::u16string seven(1999, u' ');
  seven.push_back(u'7');
  EXPECT_EQ(format(u"%2000d", 7), seven);
}

TEST(CStringFormat, WidthsAndPrecisionsHaveALimit) {
  EXPECT_EQ(format(u"%99999999999d", 7).size(), 65535U);
  EXPECT_EQ(format(u"%.2147483647d", 7).size(), 65535U);
  EXPECT_EQ(format(u"%99999999999s", u"a").size(), 65535U);
  EXPECT_EQ(format(u"%*d", INT_MIN, 7).size(), 65535U);
  EXPECT_EQ(format(u"%.*d", INT_MAX, 7).size(), 65535U);
}

TEST(CStringFormat, TextsAndCharactersAreUtf16) {
  EXPECT_EQ(format(u"<%s>", u"Süd 😀"), u"<Süd 😀>");
  EXPECT_EQ(format(u"<%5s|%-5s|%.2s|%ls>", u"ab", u"ab", u"abc", u"x"), u"<   ab|ab   |ab|x>");
  EXPECT_EQ(format(u"%c%c%3c", u'a', 0x20AC, u'z'), u"a€  z");
  const char16_t* null = nullptr;
  EXPECT_EQ(format(u"%s", null), u"(null)");
}

TEST(CStringFormat, PrecisionStopsBeforeAMissingNull) {
  const char16_t units[] = {u'a', u'b'};
  EXPECT_EQ(format(u"%.2s", static_cast<const char16_t*>(units)), u"ab");
}

TEST(CStringFormat, LongTextsAreWhole) {
  const std::u16string longText(5000, u'x');
  EXPECT_EQ(format(u"a%sb%d%s", longText.c_str(), 1, longText.c_str()),
            u"a" + longText + u"b1" + longText);
  const std::u16string filling(500, u'y');
  EXPECT_EQ(format((filling + u"%f%s").c_str(), 0.5, u"z"), filling + u"0.500000z");
}

TEST(CStringFormat, PercentSignIsDoubled) { EXPECT_EQ(format(u"100%%%d%%", 1), u"100%1%"); }

TEST(CStringFormat, UnknownConversionIsCopied) {
  EXPECT_EQ(format(u"%q %5.1k %'d %", 1), u"%q %5.1k %'d %");
  EXPECT_EQ(format(u"%-+ #0"), u"%-+ #0");
  EXPECT_EQ(format(u"%q%d", 7), u"%q7");
}

TEST(CStringFormat, OwnTextMayBeAnArgument) {
  CString text(u"GO_1");
  text.Format(u"%s-%s", text.GetString(), text.GetString());
  EXPECT_EQ(text, CString(u"GO_1-GO_1"));
}

TEST(CStringFormat, CommaLocaleGivesACommaInEveryForm) {
  const NumericLocale locale(kCommaLocales);
  if (!locale.Found()) {
    GTEST_SKIP() << "Neither de_DE.UTF-8 nor fr_FR.UTF-8 is installed.";
  }
  EXPECT_EQ(format(u"%f|%.2f|%g|%d", 1.5, 1.5, 1.5, 15), u"1,500000|1,50|1,5|15");
}

TEST(CStringFormat, SeparatorOfSeveralBytesIsOneCharacter) {
  const NumericLocale locale(kWideSeparatorLocales);
  if (!locale.HasWideSeparator()) {
    GTEST_SKIP() << "No locale with such a separator is installed.";
  }
  EXPECT_EQ(format(u"%f|%.2f|%f", 1.5, 1.5, 1e300).substr(0, 14), u"1\u066B500000|1\u066B50|");
  EXPECT_EQ(format(u"%f", 1e300).substr(301), u"\u066B000000");
  EXPECT_EQ(format(u"%e", 1.5), u"1\u066B500000e+00");
}
