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
