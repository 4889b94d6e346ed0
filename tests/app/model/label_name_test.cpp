#include "app/model/label_name.h"

#include <gtest/gtest.h>

namespace dxf2d {
namespace {

TEST(ReadableName, LosesIfcIdentifiersAndClasses) {
  EXPECT_EQ(readableName("IfcWallStandardCase_Wand-Ext-1_2pk5$TMeTAfP$Cf$5S2PfR"), "Wand-Ext-1");
  EXPECT_EQ(readableName("Wand-Int-ERDG-4_2XPyKWY018sA1ygZKgQPtU"), "Wand-Int-ERDG-4");
  EXPECT_EQ(readableName("IfcDoor_Entrance"), "Entrance");
}

TEST(ReadableName, LosesAnIdentifierThatEndsInAnUnderscore) {
  EXPECT_EQ(readableName("Sparren-17_3sG$iUZAX499eUK87UfZk_"), "Sparren-17");
}

TEST(ReadableName, LosesCounters) {
  EXPECT_EQ(readableName("Chair.001"), "Chair");
  EXPECT_EQ(readableName("Table[55]"), "Table");
  EXPECT_EQ(readableName("desk_12"), "desk");
}

TEST(ReadableName, KeepsNumbersThatBelongToIt) {
  EXPECT_EQ(readableName("Room 12"), "Room 12");
  EXPECT_EQ(readableName("A380"), "A380");
  EXPECT_EQ(readableName("EG-Fenster-6"), "EG-Fenster-6");
}

TEST(ReadableName, KeepsPointsOfOmission) {
  EXPECT_EQ(readableName("Kuechenschra..._2pk5$TMeTAfP$Cf$5S2PfR"), "Kuechenschra...");
  EXPECT_EQ(readableName("Kuechenschra....001"), "Kuechenschra...");
  EXPECT_EQ(readableName("..."), "");
}

TEST(ReadableName, UnderscoresAreSpaces) {
  EXPECT_EQ(readableName("front_left_wheel"), "front left wheel");
}

TEST(ReadableName, OfWhatOnlyAnExporterWroteIsEmpty) {
  for (const char* name :
       {"", "Mesh", "Mesh.001", "nodes[55]", "IfcMappedItem", "$RelAggregates", "<STL_BINARY>",
        "Object_12", "2pk5$TMeTAfP$Cf$5S2PfR", "8a7f3c21-9d4e-4f10-8c3b-0a1b2c3d4e5f", "1234",
        "defaultobject", "_-_"}) {
    EXPECT_EQ(readableName(name), "") << name;
  }
}

TEST(ReadableName, LettersOfAnyScriptCount) {
  EXPECT_EQ(readableName("K\u00FCche.002"), "K\u00FCche");
  EXPECT_EQ(readableName("\u58C1"), "\u58C1");
}

TEST(IsHelperName, KnowsBoundsCamerasAndLights) {
  for (const char* name : {"house_bound", "Camera.001", "light_2", "Lamp", "Sun.003", "collider"}) {
    EXPECT_TRUE(isHelperName(name)) << name;
  }
  for (const char* name : {"Boundary wall", "Lighthouse", "Sunroom", "Lampshade"}) {
    EXPECT_FALSE(isHelperName(name)) << name;
  }
}

}  // namespace
}  // namespace dxf2d
