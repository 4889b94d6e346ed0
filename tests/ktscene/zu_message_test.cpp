#include "ktscene/zu_message.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <optional>
#include <string>

namespace {

// Puts an environment variable and LC_MESSAGES back as they were.
class German {
 public:
  German() : before_(std::setlocale(LC_MESSAGES, nullptr)) {
    if (const char* language = std::getenv("LANGUAGE")) language_ = language;
    setenv("LANGUAGE", "de", 1);
    // gettext looks at LANGUAGE under any locale but the plain "C".
    for (const char* locale : {"C.UTF-8", "de_DE.UTF-8", "en_US.UTF-8"}) {
      if (std::setlocale(LC_MESSAGES, locale) != nullptr) {
        isSet_ = true;
        break;
      }
    }
    ZuSetCatalogueDirectory(KT_SCENE_TEST_CATALOGUES);
  }
  ~German() {
    if (language_) {
      setenv("LANGUAGE", language_->c_str(), 1);
    } else {
      unsetenv("LANGUAGE");
    }
    std::setlocale(LC_MESSAGES, before_.c_str());
    ZuSetCatalogueDirectory(nullptr);
  }
  German(const German&) = delete;
  German& operator=(const German&) = delete;

  bool IsSet() const { return isSet_; }

 private:
  std::string before_;
  std::optional<std::string> language_;
  bool isSet_ = false;
};

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

TEST(ZuTranslateText, WithoutALanguageTheTextStands) {
  EXPECT_EQ(ZuTranslateText(u"DXF export error"), u"DXF export error");
}

TEST(ZuTranslateText, SpeaksGerman) {
  const German german;
  if (!german.IsSet()) GTEST_SKIP() << "the C library has no locale that allows translations";
  EXPECT_EQ(ZuTranslateText(u"DXF export error"), u"DXF-Exportfehler");
}

TEST(ZuTranslateText, UnknownTextStandsInEveryLanguage) {
  const German german;
  EXPECT_EQ(ZuTranslateText(u"Größe € 😀"), u"Größe € 😀");
}

TEST(ZuTranslateText, EmptyTextIsNotTheCataloguesHeader) {
  const German german;
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
