#include <gtest/gtest.h>

#include <string>

#include "tests/dxf/written_by.h"
#include "tests/platform/numeric_locale.h"

namespace dxf2d {

namespace {

std::string headerSection() {
  return writtenBy([](DxfWriter& writer) { writer.WriteHeaderSection(); });
}

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace

TEST(HeaderSection, BeginsAndEndsAsASection) {
  const std::string header = headerSection();
  EXPECT_TRUE(header.starts_with("  0\nSECTION\n  2\nHEADER\n"));
  EXPECT_TRUE(header.ends_with("  0\nENDSEC\n"));
}

TEST(HeaderSection, HasNinetyEightVariables) {
  int variables = 0;
  for (const Group& group : groupsOf(headerSection())) {
    variables += group.code == 9 ? 1 : 0;
  }
  EXPECT_EQ(variables, 98);
}

TEST(HeaderSection, VersionIsAc1006) {
  EXPECT_TRUE(contains(headerSection(), "  9\n$ACADVER\n  1\nAC1006\n"));
}

TEST(HeaderSection, ExtentsAreFlat) {
  const std::string header = headerSection();
  EXPECT_TRUE(contains(header, "  9\n$EXTMIN\n 10\n-100.000000\n 20\n-100.000000\n  9\n"));
  EXPECT_TRUE(contains(header, "  9\n$EXTMAX\n 10\n100.000000\n 20\n100.000000\n  9\n"));
}

TEST(HeaderSection, UnsetNamesAreEmptyLines) {
  const std::string header = headerSection();
  for (const char* name : {"$DIMBLK", "$DIMPOST", "$DIMAPOST", "$DIMBLK1", "$DIMBLK2"}) {
    EXPECT_TRUE(contains(header, std::string("  9\n") + name + "\n  1\n\n  9\n")) << name;
  }
  EXPECT_TRUE(contains(header, "  9\n$UCSNAME\n  2\n\n  9\n"));
}

TEST(HeaderSection, OddGroupCodesOfNamesAndSeeds) {
  const std::string header = headerSection();
  EXPECT_TRUE(contains(header, "  9\n$TEXTSTYLE\n  7\nSTANDARD\n"));
  EXPECT_TRUE(contains(header, "  9\n$CLAYER\n  8\n0\n"));
  EXPECT_TRUE(contains(header, "  9\n$CELTYPE\n  6\nBYLAYER\n"));
  EXPECT_TRUE(contains(header, "  9\n$CECOLOR\n 62\n256\n"));
  EXPECT_TRUE(contains(header, "  9\n$HANDLING\n 70\n0\n  9\n$HANDSEED\n  5\n0\n"));
  EXPECT_TRUE(contains(header, "  9\n$MENU\n  1\nACAD\n"));
  EXPECT_TRUE(contains(header, "  9\n$LIMMAX\n 10\n410.000000\n 20\n287.000000\n"));
}

TEST(HeaderSection, DoesNotDependOnTheNumericLocale) {
  const std::string header = headerSection();
  const NumericLocale locale(kCommaLocales);
  if (!locale.Found()) {
    GTEST_SKIP() << "neither de_DE.UTF-8 nor fr_FR.UTF-8 is installed";
  }
  EXPECT_EQ(headerSection(), header);
}

TEST(HeaderSection, DoesNotDependOnTheScene) {
  const std::string opened = openedDrawing();
  HostNode leaf(u"g", u"A", u"A");
  leaf.node.matrix.SetTranslation(1e6, -1e6, 0);
  DrawingSession session;
  walkLeaf(leaf);
  session.Close();
  EXPECT_EQ(session.Written().substr(0, opened.size()), opened);
}

}  // namespace dxf2d
