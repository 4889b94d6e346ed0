#include "dxf/dot_locale.h"

#include <gtest/gtest.h>

#include <clocale>
#include <initializer_list>
#include <optional>
#include <string>

#include "tests/dxf/written_by.h"
#include "tests/platform/numeric_locale.h"

namespace dxf2d {

namespace {

std::string numericLocale() { return std::setlocale(LC_NUMERIC, nullptr); }

std::string writtenReal(double value) {
  return writtenBy([&](DxfWriter& writer) { writer.WriteReal40(value); });
}

constexpr char kNoCommaLocale[] = "neither de_DE.UTF-8 nor fr_FR.UTF-8 is installed";

}  // namespace

TEST(DotLocale, RealsFollowTheHostsCommaWithoutAGuard) {
  const NumericLocale locale(kCommaLocales);
  if (!locale.Found()) {
    GTEST_SKIP() << kNoCommaLocale;
  }
  EXPECT_EQ(writtenReal(-2.5), " 40\n-2,500000\n");
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WritePoint10(nullptr, 1.5, 2, 0); }),
            " 10\n1,500000\n 20\n2,000000\n 30\n0,000000\n");
}

TEST(DotLocale, MakesRealsPointsAndRestoresTheHostsLocale) {
  const NumericLocale locale(kCommaLocales);
  if (!locale.Found()) {
    GTEST_SKIP() << kNoCommaLocale;
  }
  const std::string before = numericLocale();
  {
    const DotLocale guard;
    EXPECT_EQ(numericLocale(), "C");
    EXPECT_EQ(writtenReal(-2.5), " 40\n-2.500000\n");
  }
  EXPECT_EQ(numericLocale(), before);
  EXPECT_EQ(writtenReal(-2.5), " 40\n-2,500000\n");
}

TEST(DotLocale, NestedGuardsSaveAndRestoreOnce) {
  const NumericLocale locale(kCommaLocales);
  if (!locale.Found()) {
    GTEST_SKIP() << kNoCommaLocale;
  }
  const std::string before = numericLocale();
  {
    const DotLocale outer;
    {
      const DotLocale inner;
      EXPECT_EQ(numericLocale(), "C");
    }
    EXPECT_EQ(numericLocale(), "C");
  }
  EXPECT_EQ(numericLocale(), before);
}

TEST(DotLocale, LastOfOverlappingGuardsRestores) {
  const NumericLocale locale(kCommaLocales);
  if (!locale.Found()) {
    GTEST_SKIP() << kNoCommaLocale;
  }
  const std::string before = numericLocale();
  std::optional<DotLocale> first(std::in_place);
  std::optional<DotLocale> second(std::in_place);
  first.reset();
  EXPECT_EQ(numericLocale(), "C");
  second.reset();
  EXPECT_EQ(numericLocale(), before);
}

// Sets every category to C.UTF-8, which every C library has, until the end of the scope.
class Utf8Locale {
 public:
  Utf8Locale() : before_(std::setlocale(LC_ALL, nullptr)) {
    EXPECT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
  }
  ~Utf8Locale() { std::setlocale(LC_ALL, before_.c_str()); }
  Utf8Locale(const Utf8Locale&) = delete;
  Utf8Locale& operator=(const Utf8Locale&) = delete;

 private:
  std::string before_;
};

TEST(DotLocale, LeavesTheOtherCategoriesAlone) {
  const std::initializer_list<int> others = {LC_COLLATE, LC_CTYPE, LC_MESSAGES, LC_MONETARY,
                                             LC_TIME};
  const Utf8Locale locale;
  {
    const DotLocale guard;
    EXPECT_EQ(numericLocale(), "C");
    for (const int category : others) {
      EXPECT_STREQ(std::setlocale(category, nullptr), "C.UTF-8") << category;
    }
    ASSERT_NE(std::setlocale(LC_TIME, "C"), nullptr);
  }
  EXPECT_EQ(numericLocale(), "C.UTF-8");
  EXPECT_STREQ(std::setlocale(LC_TIME, nullptr), "C");
}

TEST(DotLocale, TheExportCreatesNone) {
  const NumericLocale locale(kCommaLocales);
  if (!locale.Found()) {
    GTEST_SKIP() << kNoCommaLocale;
  }
  HostNode leaf(u"g", u"A");
  leaf.node.matrix.SetTranslation(0.5, 0, 0);
  DrawingSession session;
  walkLeaf(leaf, false);
  EXPECT_NE(session.Close().find(" 10\n0,500000\n 20\n0,000000\n 30\n0,000000\n"),
            std::string::npos);
}

TEST(DotLocale, MakesAWholeExportPoints) {
  const NumericLocale locale(kCommaLocales);
  if (!locale.Found()) {
    GTEST_SKIP() << kNoCommaLocale;
  }
  HostNode leaf(u"g", u"A");
  leaf.node.matrix.SetTranslation(0.5, 0, 0);
  const DotLocale guard;
  DrawingSession session;
  walkLeaf(leaf);
  const std::string body = session.Close();
  EXPECT_EQ(body.find(','), std::string::npos);
  EXPECT_NE(body.find(" 10\n0.500000\n"), std::string::npos);
}

}  // namespace dxf2d
