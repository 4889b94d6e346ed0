#include "ktscene/zu_message.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "tests/support/german_messages.h"

namespace {

struct Shown {
  void* owner = nullptr;
  std::u16string title;
  std::u16string text;
  int style = -1;
};
Shown shown;

void show(void* owner, const char16_t* title, const char16_t* text, int style) {
  shown = {owner, title, text, style};
}

std::string errorOutputOf(const char16_t* title, const char16_t* text) {
  testing::internal::CaptureStderr();
  ZuErrorBox(nullptr, title, text, 0);
  return testing::internal::GetCapturedStderr();
}

}  // namespace

TEST(ZuTranslateText, WithoutALanguageTheTextIsUnchanged) {
  EXPECT_EQ(ZuTranslateText(u"DXF export error"), u"DXF export error");
}

TEST(ZuTranslateText, TranslatesToGerman) {
  const GermanMessages german(KT_SCENE_TEST_CATALOGS);
  if (!german.IsSet()) {
    GTEST_SKIP() << "the C library has no locale that allows translations";
  }
  EXPECT_EQ(ZuTranslateText(u"DXF export error"), u"DXF-Exportfehler");
}

TEST(ZuTranslateText, FindsTheCatalogFromTheLibrary) {
  const GermanMessages german(nullptr);
  if (!german.IsSet()) {
    GTEST_SKIP() << "the C library has no locale that allows translations";
  }
  EXPECT_EQ(ZuTranslateText(u"DXF export error"), u"DXF-Exportfehler");
}

TEST(ZuTranslateText, UnknownTextIsUnchangedInEveryLanguage) {
  const GermanMessages german(KT_SCENE_TEST_CATALOGS);
  EXPECT_EQ(ZuTranslateText(u"Größe € 😀"), u"Größe € 😀");
}

TEST(ZuTranslateText, EmptyTextIsNotTheCatalogsHeader) {
  const GermanMessages german(KT_SCENE_TEST_CATALOGS);
  EXPECT_EQ(ZuTranslateText(u""), u"");
  EXPECT_EQ(ZuTranslateText(nullptr), u"");
}

TEST(ZuTranslateText, LeavesTheLocaleAlone) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  ZuTranslateText(u"DXF export error");
  EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
}

TEST(ZuErrorBox, WritesTitleAndTextToStandardError) {
  EXPECT_EQ(errorOutputOf(u"DXF-Exportfehler", u"100 % für 😀"), "DXF-Exportfehler: 100 % für 😀\n");
}

TEST(ZuErrorBox, LoneSurrogateIsWrittenAsTheReplacementCharacter) {
  const char16_t text[] = {u'a', 0xDC80, u'b', u'\0'};
  EXPECT_EQ(errorOutputOf(u"t", text), "t: a\uFFFDb\n");
}

TEST(ZuErrorBox, NullTextsAreEmpty) { EXPECT_EQ(errorOutputOf(nullptr, nullptr), ": \n"); }

TEST(ZuErrorBox, CallsTheHandlerInstead) {
  int owner = 0;
  const ZuErrorBoxHandler before = ZuSetErrorBoxHandler(show);
  testing::internal::CaptureStderr();
  ZuErrorBox(&owner, u"title", u"text", 3);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(ZuSetErrorBoxHandler(before), show);
  EXPECT_EQ(shown.owner, &owner);
  EXPECT_EQ(shown.title, u"title");
  EXPECT_EQ(shown.text, u"text");
  EXPECT_EQ(shown.style, 3);
}
