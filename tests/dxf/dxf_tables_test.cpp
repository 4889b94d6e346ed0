#include <gtest/gtest.h>

#include <string>

#include "tests/dxf/written_by.h"

namespace dxf2d {

namespace {

std::string tablesSection() {
  return writtenBy([](DxfWriter& writer) { writer.WriteTablesSection(); });
}

}  // namespace

TEST(TablesSection, LinetypeIsContinuous) {
  const std::string tables = tablesSection();
  EXPECT_NE(tables.find("  0\nLTYPE\n  2\nAUSGEZOGEN\n 70\n64\n  3\nAusgezogene Linie\n 72\n65\n"
                        " 73\n0\n 40\n0.000000\n  0\nENDTAB\n"),
            std::string::npos);
  EXPECT_EQ(tables.find(" 49\n"), std::string::npos);
}

TEST(TablesSection, LayerIsWhiteAndHasTheLinetype) {
  EXPECT_NE(tablesSection().find("  0\nLAYER\n  2\n0\n 70\n64\n 62\n7\n  6\nAUSGEZOGEN\n"
                                 "  0\nENDTAB\n"),
            std::string::npos);
}

TEST(TablesSection, HasThreeTablesOfOneEntryEach) {
  std::vector<std::string> names;
  for (const Entity& entity : entitiesOf(groupsOf(tablesSection()))) {
    if (entity.type == "TABLE") {
      names.push_back(entity.Value(2).value_or(""));
      EXPECT_EQ(entity.Value(70), "1");
    }
  }
  EXPECT_EQ(names, (std::vector<std::string>{"LTYPE", "LAYER", "APPID"}));
}

TEST(TablesSection, ApplicationIsRegistered) {
  EXPECT_TRUE(tablesSection().ends_with(
      "  0\nAPPID\n  2\nTAVEN_HOLDRIK\n 70\n64\n  0\nENDTAB\n  0\nENDSEC\n"));
}

TEST(TablesSection, IsTheSameInEveryDrawingAndBlocksFollowIt) {
  const std::string opened = openedDrawing();
  EXPECT_TRUE(opened.ends_with(tablesSection() + "  0\nSECTION\n  2\nBLOCKS\n"));
  EXPECT_EQ(openedDrawing(), opened);
}

}  // namespace dxf2d
